#pragma once

#include "platform/desktop.h"

namespace quillan {

/// The desktop with the screen that Qt knows.
class QtDesktop final : public PosixDesktop {
 public:
  int ColorDepth() const override;
};

}  // namespace quillan
