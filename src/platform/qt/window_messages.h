#pragma once

#include <map>
#include <utility>
#include <vector>

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include "platform/window_messages.h"

namespace quillan {

/// Turns what happens to real windows into their messages.
///
/// On X11 and Wayland the frame belongs to the window manager. A window is told after the fact that
/// it was moved or sized, by the user or the program, and neither when the user takes the frame nor
/// when the user lets it go; nor is it told whether it became active by a click. So
/// - each move or change of size is a kMoving or kSizing, whose rectangle is given to the window
///   where a handler has changed it;
/// - a window that is minimised, maximised or shown in full screen has no choice of its size: it
///   sends kSize alone;
/// - kEnterSizeMove and kExitSizeMove are never sent, and kActivate says 1 or 0, never 2.
/// Pixels are the toolkit's, which a scaled screen shows larger.
class QtWindowMessages final : public QObject, public WindowMessages {
 public:
  explicit QtWindowMessages(QObject* parent = nullptr) : QObject(parent) {}

  /// The handle of `window`; it holds until the window ends.
  static WindowHandle HandleOf(const QWidget& window) { return window.winId(); }

  void AttachMessage(ISubclass& handler, WindowHandle window, WindowMessage message) override;
  void DetachMessage(ISubclass& handler, WindowHandle window, WindowMessage message) override;
  std::optional<WindowRect> GetWindowRect(WindowHandle window) const override;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Attachment = std::pair<ISubclass*, WindowMessage>;

  struct Watch {
    QPointer<QWidget> window;
    QMetaObject::Connection destroyed;
    std::vector<Attachment> attachments;
    QRect geometry;  // As last told to the handlers; null before the window is shown.
  };

  void Send(WindowHandle handle, WindowMessage message, std::uint32_t w_param = 0,
            WindowRect* rectangle = nullptr);
  void OnGeometry(WindowHandle handle, Watch& watch);
  void SendRectangle(WindowHandle handle, WindowMessage message, QWidget& window);
  void OnDestroyed(WindowHandle handle);

  std::map<WindowHandle, Watch> watches_;
  bool applying_ = false;  // A handler's rectangle is being given to a window.
};

}  // namespace quillan
