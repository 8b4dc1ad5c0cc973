#pragma once

#include <exception>

#include "platform/message_box.h"
#include "platform/program.h"

namespace quillan {

/// Runs `action` for a slot, which no exception may leave: the user is shown what went wrong
/// instead.
template <typename Action>
void RunGuarded(MessageBox& messages, Action action) {
  try {
    action();
  } catch (const std::exception& error) {
    messages.Show(error.what(), kDisplayName, MessageButtons::kOk, MessageIcon::kExclamation);
  }
}

}  // namespace quillan
