// Linked into a program, ends it as soon as its first window has been painted: with status 0 when
// that is the window named FIRST_WINDOW, else with 1.

#include <cstdlib>

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

namespace quillan::bench {
namespace {

class FirstPaint final : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && watched->isWidgetType() && !painted_) {
      painted_ = true;
      const QWidget* window = static_cast<QWidget*>(watched)->window();
      const bool expected = window->objectName() == QLatin1String(FIRST_WINDOW);
      // The window is painted in one go; when events are handled again, all of it stands.
      QTimer::singleShot(0, this, [expected] { std::_Exit(expected ? 0 : 1); });
    }
    return false;
  }

 private:
  bool painted_ = false;
};

void Watch() {
  QCoreApplication* application = QCoreApplication::instance();
  application->installEventFilter(new FirstPaint(application));
}

}  // namespace
}  // namespace quillan::bench

static void WatchFirstPaint() { quillan::bench::Watch(); }
Q_COREAPP_STARTUP_FUNCTION(WatchFirstPaint)
