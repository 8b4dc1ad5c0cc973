#include "platform/qt/input_blocker.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

namespace quillan {
namespace {

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::ToolTip:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

// Whether `watched` is the widget, its window in the window system, or a part of it.
bool Belongs(const QObject* watched, const QWidget& widget) {
  if (watched->isWindowType()) return watched == widget.window()->windowHandle();
  for (; watched != nullptr; watched = watched->parent()) {
    if (watched == &widget) return true;
  }
  return false;
}

}  // namespace

InputBlocker::InputBlocker(QWidget* exempt)
    : outermost_(!active), exempt_(exempt), modal_(QApplication::activeModalWidget()) {
  if (!outermost_) return;
  active = true;
  qApp->installEventFilter(this);
}

InputBlocker::~InputBlocker() {
  if (!outermost_) return;
  QCoreApplication::processEvents();
  active = false;
}

void InputBlocker::ProcessEvents() {
  if (qApp == nullptr) return;
  if (active) {
    QCoreApplication::processEvents();
  } else {
    const InputBlocker blocker;
  }
}

bool InputBlocker::eventFilter(QObject* watched, QEvent* event) {
  if (!IsInput(event->type()) || Takes(watched, *event)) return false;
  // To accept an override keeps the key from running a shortcut; a close event must be refused.
  event->setAccepted(event->type() != QEvent::Close);
  return true;
}

bool InputBlocker::Takes(const QObject* watched, const QEvent& event) const {
  if (event.type() == QEvent::Close && !event.spontaneous()) return true;
  const QWidget* modal = QApplication::activeModalWidget();
  if (modal != nullptr && modal != modal_) return Belongs(watched, *modal);
  if (exempt_ == nullptr || !exempt_->isVisible() || !Belongs(watched, *exempt_)) return false;
  if (!watched->isWindowType()) return true;
  if (event.isPointerEvent()) {
    const auto& pointer = static_cast<const QPointerEvent&>(event);
    const QPoint place = pointer.points().front().globalPosition().toPoint();
    return exempt_->rect().contains(exempt_->mapFromGlobal(place));
  }
  return exempt_->hasFocus();
}

}  // namespace quillan
