#include <cstdio>

#include <QApplication>
#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>

namespace quillan {
namespace {

void Print(const QString& line) {
  std::printf("%s\n", line.toUtf8().constData());
  std::fflush(stdout);
}

// Closes every window of the program as soon as it is shown, and prints its name and text; prints
// "running" if the message loop still runs a while after that.
class WindowCloser final : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Show || !watched->isWidgetType()) return false;
    auto* window = static_cast<QWidget*>(watched);
    if (!window->isWindow()) return false;
    QTimer::singleShot(0, window, [this, window] {
      Print(QStringLiteral("%1: %2").arg(window->windowTitle(),
                                         window->property("text").toString().simplified()));
      QTimer::singleShot(300, this, [] { Print(QStringLiteral("running")); });
      window->close();
    });
    return false;
  }
};

}  // namespace

// A plugin that executable_test.cpp has Qt load into the program.
class CloseWindowsPlugin final : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "close_windows.json")

 public:
  QObject* create(const QString& /*key*/, const QString& /*name*/) override {
    auto* closer = new WindowCloser;  // Qt deletes what a plugin creates.
    qApp->installEventFilter(closer);
    return closer;
  }
};

}  // namespace quillan

#include "close_windows.moc"
