#pragma once

#include <string_view>

namespace quillan {

/// What a list asks of the window that it stands in.
class ListHost {
 public:
  virtual ~ListHost() = default;
  /// Shows the busy mouse pointer, or the usual one again.
  virtual void ShowBusyPointer() = 0;
  virtual void ShowDefaultPointer() = 0;
  /// The title of message boxes.
  virtual std::string_view Title() const = 0;
};

}  // namespace quillan
