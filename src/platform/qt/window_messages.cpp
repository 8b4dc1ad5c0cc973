#include "platform/qt/window_messages.h"

#include <algorithm>

#include <QEvent>
#include <QResizeEvent>

namespace quillan {
namespace {

WindowRect RectOf(const QWidget& window) {
  const QRect frame = window.frameGeometry();
  return {frame.x(), frame.y(), frame.x() + frame.width(), frame.y() + frame.height()};
}

// Places the window so that its frame takes `rectangle`.
void Place(QWidget& window, const WindowRect& rectangle) {
  const QRect frame = window.frameGeometry();
  const QRect inner = window.geometry();
  const QMargins margins(inner.left() - frame.left(), inner.top() - frame.top(),
                         frame.right() - inner.right(), frame.bottom() - inner.bottom());
  const QRect target(rectangle.left, rectangle.top, rectangle.right - rectangle.left,
                     rectangle.bottom - rectangle.top);
  window.setGeometry(target.marginsRemoved(margins));
}

}  // namespace

void QtWindowMessages::AttachMessage(ISubclass& handler, WindowHandle window,
                                     WindowMessage message) {
  auto found = watches_.find(window);
  if (found == watches_.end()) {
    QWidget* const widget = QWidget::find(window);
    if (widget == nullptr) return;
    found = watches_.emplace(window, Watch{}).first;
    Watch& watch = found->second;
    watch.window = widget;
    if (widget->isVisible()) watch.geometry = widget->geometry();
    watch.destroyed =
        connect(widget, &QObject::destroyed, this, [this, window] { OnDestroyed(window); });
    widget->installEventFilter(this);
  }
  auto& attachments = found->second.attachments;
  const Attachment attachment(&handler, message);
  if (std::find(attachments.begin(), attachments.end(), attachment) == attachments.end()) {
    attachments.push_back(attachment);
  }
}

void QtWindowMessages::DetachMessage(ISubclass& handler, WindowHandle window,
                                     WindowMessage message) {
  const auto found = watches_.find(window);
  if (found == watches_.end()) return;
  std::erase(found->second.attachments, Attachment(&handler, message));
  if (!found->second.attachments.empty()) return;
  disconnect(found->second.destroyed);
  if (found->second.window) found->second.window->removeEventFilter(this);
  watches_.erase(found);
}

std::optional<WindowRect> QtWindowMessages::GetWindowRect(WindowHandle window) const {
  const auto found = watches_.find(window);
  const QWidget* const widget =
      found != watches_.end() ? found->second.window.data() : QWidget::find(window);
  if (widget == nullptr) return std::nullopt;
  return RectOf(*widget);
}

bool QtWindowMessages::eventFilter(QObject* watched, QEvent* event) {
  const auto found = std::find_if(watches_.begin(), watches_.end(), [watched](const auto& entry) {
    return entry.second.window == watched;
  });
  if (found == watches_.end()) return false;
  const WindowHandle handle = found->first;
  Watch& watch = found->second;
  const QWidget& window = *watch.window;
  switch (event->type()) {
    case QEvent::Move:
      OnGeometry(handle, watch);
      break;
    case QEvent::Resize:
      OnGeometry(handle, watch);
      // A size that a handler has replaced is old news: the window has heard of the new one.
      return window.size() != static_cast<QResizeEvent*>(event)->size();
    case QEvent::WindowActivate:
      Send(handle, WindowMessage::kActivate, 1);
      break;
    case QEvent::WindowDeactivate:
      Send(handle, WindowMessage::kActivate, 0);
      break;
    default:
      break;
  }
  return false;
}

void QtWindowMessages::Send(WindowHandle handle, WindowMessage message, std::uint32_t w_param,
                            WindowRect* rectangle) {
  // Handlers may attach and detach while they are called.
  const auto found = watches_.find(handle);
  if (found == watches_.end()) return;
  const std::vector<Attachment> attachments = found->second.attachments;
  for (const Attachment& attachment : attachments) {
    if (attachment.second != message) continue;
    const auto watch = watches_.find(handle);
    if (watch == watches_.end()) return;
    const auto& current = watch->second.attachments;
    if (std::find(current.begin(), current.end(), attachment) == current.end()) continue;
    attachment.first->WindowProc(handle, message, w_param, rectangle);
  }
}

void QtWindowMessages::OnGeometry(WindowHandle handle, Watch& watch) {
  QWidget& window = *watch.window;
  if (applying_ || window.geometry() == watch.geometry) return;
  const bool sized = window.size() != watch.geometry.size();
  const bool has_own_size =
      !window.isMinimized() && !window.isMaximized() && !window.isFullScreen();
  watch.geometry = window.geometry();
  if (has_own_size) {
    SendRectangle(handle, sized ? WindowMessage::kSizing : WindowMessage::kMoving, window);
  } else if (sized) {
    Send(handle, WindowMessage::kSize);
  }
}

void QtWindowMessages::SendRectangle(WindowHandle handle, WindowMessage message, QWidget& window) {
  const WindowRect before = RectOf(window);
  WindowRect after = before;
  Send(handle, message, 0, &after);
  if (after == before) return;
  applying_ = true;
  Place(window, after);
  applying_ = false;
  // The handlers may have detached themselves.
  if (const auto found = watches_.find(handle); found != watches_.end()) {
    found->second.geometry = window.geometry();
  }
}

void QtWindowMessages::OnDestroyed(WindowHandle handle) {
  Send(handle, WindowMessage::kDestroy);
  watches_.erase(handle);
}

}  // namespace quillan
