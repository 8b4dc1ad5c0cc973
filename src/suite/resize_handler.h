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

/// What a window's owner learns of it. Each member does nothing unless it is overridden.
class ResizeListener {
 public:
  virtual ~ResizeListener() = default;
  /// The user starts to move or size the window.
  virtual void OnEnterSizeMove() {}
  /// The user ends moving or sizing it.
  virtual void OnExitSizeMove() {}
  /// The window becomes active; `clicked` when by a mouse click.
  virtual void OnActivate(bool /*clicked*/) {}
  /// The window stops being active.
  virtual void OnDeactivate() {}
  /// The window is being moved to `bounds`; it goes where the listener changes them to.
  virtual void OnMoving(WindowBounds& /*bounds*/) {}
  /// The same for sizing. Also called after the window has taken another size by itself; changes to
  /// `bounds` are then ignored where the platform tells such a size from the user's, and where the
  /// window has no choice (maximised, minimised, full screen).
  virtual void OnSizing(WindowBounds& /*bounds*/) {}
};

/// Watches one window, lets its owner constrain where it is moved and how it is sized, and can
/// switch off the system's full-window dragging while the window is active.
class ResizeHandler final : public ISubclass {
 public:
  /// Both must outlive the object.
  ResizeHandler(WindowMessages& messages, FullWindowDrag& full_drag)
      : messages_(messages), full_drag_(full_drag) {}
  ~ResizeHandler() override { Detach(); }
  ResizeHandler(const ResizeHandler&) = delete;
  ResizeHandler& operator=(const ResizeHandler&) = delete;

  /// Who learns of the window; may be null.
  void SetListener(ResizeListener* listener) { listener_ = listener; }

  /// Whether full-window dragging is to be off while the window is active. Takes effect at once;
  /// a setting that is off already is neither touched nor switched on later.
  bool NoFullDrag() const { return no_full_drag_; }
  void SetNoFullDrag(bool no_full_drag);
  /// Whether the window is active, as its last activation message said.
  bool Active() const { return active_; }

  /// Watches `window`, and the one watched before no more.
  void Attach(WindowHandle window);
  /// Stops watching and puts full-window dragging back; harmless when nothing is watched.
  void Detach();

  /// Always 1: the window acts on what the handler leaves. Writing it changes nothing.
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
  bool full_drag_switched_off_ = false;  // By this object, which must switch it on again.
  bool no_full_drag_ = false;
  bool active_ = false;
  bool in_size_move_ = false;
};

}  // namespace quillan
