#include "platform/qt/qt_desktop.h"

#include <QGuiApplication>
#include <QScreen>

namespace quillan {

int QtDesktop::ColorDepth() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->depth() : 0;
}

}  // namespace quillan
