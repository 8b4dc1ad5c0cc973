#pragma once

#include <exception>
#include <string_view>

#include <QWidget>

#include "lists/refusal.h"
#include "platform/message_box.h"

namespace quillan {

/// Tells the user what went wrong.
void ShowFailure(MessageBox& messages, std::string_view message);

/// Tells the user why an entry of `window` is refused, and gives the control to correct the focus.
void ShowRefusal(MessageBox& messages, const QWidget& window, const Refusal& refusal);

/// Runs `action` for a slot, which no exception may leave: its message is shown instead.
template <typename Action>
void RunGuarded(MessageBox& messages, Action action) {
  try {
    action();
  } catch (const std::exception& error) {
    ShowFailure(messages, error.what());
  }
}

}  // namespace quillan
