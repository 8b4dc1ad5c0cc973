#pragma once

#include <cstdint>
#include <optional>

namespace quillan {

/// Identifies a window of the toolkit; 0 is none.
using WindowHandle = std::uintptr_t;

/// The messages of a window that can be watched. Source: the WM_ numbers of Windows.
enum class WindowMessage : std::uint32_t {
  kDestroy = 2,          ///< The window is destroyed.
  kSize = 5,             ///< Its size has changed.
  kActivate = 6,         ///< It becomes active (w_param 1; 2 by a click) or inactive (0).
  kSizing = 532,         ///< It is being sized.
  kMoving = 534,         ///< It is being moved.
  kEnterSizeMove = 561,  ///< The user starts to move or size it.
  kExitSizeMove = 562,   ///< The user stops moving or sizing it.
};

/// A window with its frame, in screen pixels; right and bottom lie just outside it.
struct WindowRect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;

  bool operator==(const WindowRect&) const = default;
};

/// Receives the messages of a window. Its members are called on the thread of the window; they must
/// not throw and must not delete the window.
class ISubclass {
 public:
  virtual ~ISubclass() = default;
  /// How the handler responds to messages. The only answer used is 1: the handler is called before
  /// the window acts on the message, and the window then goes on with what the handler has left.
  virtual std::int32_t MsgResponse() const = 0;
  virtual void SetMsgResponse(std::int32_t response) = 0;
  /// Handles one message. `rectangle` is set for kMoving and kSizing only; the handler may change
  /// it and the window then takes it.
  virtual std::int32_t WindowProc(WindowHandle window, WindowMessage message, std::uint32_t w_param,
                                  WindowRect* rectangle) = 0;
};

/// Passes the messages of windows to handlers.
class WindowMessages {
 public:
  virtual ~WindowMessages() = default;
  /// Passes `message` of `window` to `handler` from now on; once, however often it is attached. A
  /// window that does not exist is ignored.
  virtual void AttachMessage(ISubclass& handler, WindowHandle window, WindowMessage message) = 0;
  /// Ends that; harmless where it is not attached or the window is gone. Handlers detach what they
  /// have attached before they end.
  virtual void DetachMessage(ISubclass& handler, WindowHandle window, WindowMessage message) = 0;
  /// The position of the window; nothing when it does not exist.
  virtual std::optional<WindowRect> GetWindowRect(WindowHandle window) const = 0;
};

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
