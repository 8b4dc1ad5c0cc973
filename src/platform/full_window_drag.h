#pragma once

#include <optional>

namespace quillan {

/// The system's setting of whether a window's content is shown while it is dragged. This base
/// stands for a system without such a setting.
class FullWindowDrag {
 public:
  virtual ~FullWindowDrag() = default;
  /// Whether it is on; nothing when the system does not say.
  virtual std::optional<bool> IsOn() const { return std::nullopt; }
  /// Switches it, for all programs at once.
  virtual void Set(bool /*on*/) {}
};

}  // namespace quillan
