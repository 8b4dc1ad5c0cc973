#pragma once

#include <string_view>

namespace quillan {

enum class MessageIcon { kNone, kCritical, kQuestion, kExclamation };
enum class MessageButtons { kOk, kYesNo, kYesNoCancel };
enum class MessageAnswer { kOk, kCancel, kYes, kNo };

/// Shows the user a text and waits for the answer; the only way to ask the user a question.
class MessageBox {
 public:
  virtual ~MessageBox() = default;
  /// Shows `text` (UTF-8; CR, LF and CR LF all break the line) under `title`. Closing the box
  /// without a button answers kOk, kNo or kCancel, the most cautious of `buttons`.
  virtual MessageAnswer Show(std::string_view text, std::string_view title, MessageButtons buttons,
                             MessageIcon icon) = 0;
};

}  // namespace quillan
