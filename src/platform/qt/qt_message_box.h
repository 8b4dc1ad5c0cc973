#pragma once

#include "platform/message_box.h"

namespace quillan {

/// Message boxes over the window in use, modal.
class QtMessageBox final : public MessageBox {
 public:
  MessageAnswer Show(std::string_view text, std::string_view title, MessageButtons buttons,
                     MessageIcon icon) override;
};

}  // namespace quillan
