#include "suite/resize_handler.h"

#include <array>

namespace quillan {
namespace {

using Messages = std::array<WindowMessage, 7>;

constexpr std::uint32_t kClickActive = 2;
constexpr Messages kAttached = {WindowMessage::kEnterSizeMove, WindowMessage::kExitSizeMove,
                                WindowMessage::kDestroy,       WindowMessage::kMoving,
                                WindowMessage::kSizing,        WindowMessage::kActivate,
                                WindowMessage::kSize};
constexpr Messages kDetached = {WindowMessage::kEnterSizeMove, WindowMessage::kExitSizeMove,
                                WindowMessage::kDestroy,       WindowMessage::kMoving,
                                WindowMessage::kSizing,        WindowMessage::kSize,
                                WindowMessage::kActivate};

WindowBounds ToBounds(const WindowRect& rectangle) {
  return {rectangle.left, rectangle.top, rectangle.right - rectangle.left,
          rectangle.bottom - rectangle.top};
}

}  // namespace

void ResizeHandler::SetNoFullDrag(bool no_full_drag) {
  no_full_drag_ = no_full_drag;
  if (!no_full_drag) {
    RestoreFullDrag();
  } else if (active_ && attached_) {
    SwitchOffFullDrag();
  }
}

void ResizeHandler::Attach(WindowHandle window) {
  Detach();
  // Whether another window is active is not known yet.
  if (window != window_) active_ = false;
  window_ = window;
  attached_ = true;
  for (const WindowMessage message : kAttached) messages_.AttachMessage(*this, window, message);
  if (active_) SwitchOffFullDrag();
}

void ResizeHandler::Detach() {
  RestoreFullDrag();
  attached_ = false;
  in_size_move_ = false;
  if (window_ == 0) return;
  for (const WindowMessage message : kDetached) messages_.DetachMessage(*this, window_, message);
}

std::int32_t ResizeHandler::WindowProc(WindowHandle window, WindowMessage message,
                                       std::uint32_t w_param, WindowRect* rectangle) {
  switch (message) {
    case WindowMessage::kEnterSizeMove:
      in_size_move_ = true;
      if (listener_ != nullptr) listener_->OnEnterSizeMove();
      break;
    case WindowMessage::kExitSizeMove:
      if (listener_ != nullptr) listener_->OnExitSizeMove();
      in_size_move_ = false;
      break;
    case WindowMessage::kMoving:
    case WindowMessage::kSizing:
      if (rectangle != nullptr) OnRectangle(message, *rectangle);
      break;
    case WindowMessage::kSize:
      if (!in_size_move_) OnSize(window);
      break;
    case WindowMessage::kActivate:
      OnActivation(w_param);
      break;
    case WindowMessage::kDestroy:
      Detach();
      break;
  }
  return 0;
}

void ResizeHandler::OnRectangle(WindowMessage message, WindowRect& rectangle) {
  if (listener_ == nullptr) return;
  WindowBounds bounds = ToBounds(rectangle);
  if (message == WindowMessage::kMoving) {
    listener_->OnMoving(bounds);
  } else {
    listener_->OnSizing(bounds);
  }
  rectangle = {bounds.left, bounds.top, bounds.left + bounds.width, bounds.top + bounds.height};
}

void ResizeHandler::OnSize(WindowHandle window) {
  const std::optional<WindowRect> rectangle = messages_.GetWindowRect(window);
  if (!rectangle || listener_ == nullptr) return;
  WindowBounds bounds = ToBounds(*rectangle);
  listener_->OnSizing(bounds);
}

void ResizeHandler::OnActivation(std::uint32_t w_param) {
  active_ = w_param != 0;
  if (active_) {
    SwitchOffFullDrag();
    if (listener_ != nullptr) listener_->OnActivate(w_param == kClickActive);
  } else {
    RestoreFullDrag();
    if (listener_ != nullptr) listener_->OnDeactivate();
  }
}

void ResizeHandler::SwitchOffFullDrag() {
  if (!no_full_drag_ || !full_drag_.IsOn().value_or(false)) return;
  full_drag_switched_off_ = true;
  full_drag_.Set(false);
}

void ResizeHandler::RestoreFullDrag() {
  if (!full_drag_switched_off_) return;
  full_drag_.Set(true);
  full_drag_switched_off_ = false;
}

}  // namespace quillan
