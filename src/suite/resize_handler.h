#pragma once

#include <cstdint>

#include "platform/window_messages.h"

namespace quillan {

/// A window with its frame, in screen pixels.
struct WindowBounds {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

/// Receives the events of a window. Each member does nothing unless it is overridden.
class ResizeListener {
 public:
  virtual ~ResizeListener() = default;
  /// The user starts to move or size the window.
  virtual void OnEnterSizeMove() {}
  /// The user has finished moving or sizing the window.
  virtual void OnExitSizeMove() {}
  /// The window becomes active; `clicked` when by a mouse click.
  virtual void OnActivate(bool /*clicked*/) {}
  /// The window stops being active.
  virtual void OnDeactivate() {}
  /// The user moves the window to `bounds`; the listener may change them.
  virtual void OnMoving(WindowBounds& /*bounds*/) {}
  /// The same for sizing. Also called after the size has changed without the user; changes to
  /// `bounds` are then ignored if the platform can tell the two apart, and always if the window is
  /// maximised, minimised or full-screen.
  virtual void OnSizing(WindowBounds& /*bounds*/) {}
};

/// Watches one window, lets its owner constrain its position and size, and can switch off the
/// system's full-window dragging while the window is active.
class ResizeHandler final : public ISubclass {
 public:
  /// Both must outlive the object.
  ResizeHandler(WindowMessages& messages, FullWindowDrag& full_drag)
      : messages_(messages), full_drag_(full_drag) {}
  ~ResizeHandler() override { Detach(); }
  ResizeHandler(const ResizeHandler&) = delete;
  ResizeHandler& operator=(const ResizeHandler&) = delete;

  /// The receiver of the events; may be null.
  void SetListener(ResizeListener* listener) { listener_ = listener; }

  /// Whether full-window dragging is off while the window is active. Takes effect at once. A system
  /// setting that is already off is neither changed nor switched on later.
  bool NoFullDrag() const { return no_full_drag_; }
  void SetNoFullDrag(bool no_full_drag);
  /// Whether the window is active, according to its last activation message.
  bool Active() const { return active_; }

  /// Watches `window` instead of the one watched before.
  void Attach(WindowHandle window);
  /// Stops watching and restores full-window dragging; does nothing if no window is watched.
  void Detach();

  /// Always 1: the window processes the message after the handler. Setting it has no effect.
  std::int32_t MsgResponse() const override { return 1; }
  void SetMsgResponse(std::int32_t /*response*/) override {}
  /// Turns a message of the window into a call of the listener; always 0.
  std::int32_t WindowProc(WindowHandle window, WindowMessage message, std::uint32_t w_param,
                          WindowRect* rectangle) override;

 private:
  void OnRectangle(WindowMessage message, WindowRect& rectangle);
  void OnSize(WindowHandle window);
  void OnActivation(std::uint32_t w_param);
  void SwitchOffFullDrag();
  void RestoreFullDrag();

  WindowMessages& messages_;
  FullWindowDrag& full_drag_;
  ResizeListener* listener_ = nullptr;
  WindowHandle window_ = 0;  // The last one attached, even after it is detached.
  bool attached_ = false;
  bool full_drag_switched_off_ = false;  // By this object, which must restore it.
  bool no_full_drag_ = false;
  bool active_ = false;
  bool in_size_move_ = false;
};

}  // namespace quillan
