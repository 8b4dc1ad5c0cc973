#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <QApplication>
#include <QProcess>
#include <QTest>
#include <QWidget>

#include "platform/qt/window_messages.h"
#include "suite/resize_handler.h"

namespace quillan {
namespace {

using testing::Each;
using testing::ElementsAre;

/// A watched window under a window manager, with a mouse of the test's own.
class WindowHookTest : public testing::Test, public ResizeListener {
 protected:
  WindowHookTest() {
    handler_.SetListener(this);
    handler_.Attach(QtWindowMessages::HandleOf(window_));
    window_.setGeometry(100, 100, 300, 200);
    other_.setGeometry(600, 100, 300, 200);
    for (QWidget* widget : {&window_, &other_}) {
      widget->show();
      EXPECT_TRUE(QTest::qWaitForWindowExposed(widget));
    }
    other_.activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &other_; }));
    events_.clear();
  }

  void OnEnterSizeMove() override { events_.push_back("enter"); }
  void OnExitSizeMove() override { events_.push_back("exit"); }
  void OnActivate(bool clicked) override { events_.push_back(clicked ? "clicked" : "active"); }
  void OnDeactivate() override { events_.push_back("inactive"); }
  void OnMoving(WindowBounds& /*bounds*/) override { events_.push_back("moving"); }
  void OnSizing(WindowBounds& /*bounds*/) override { events_.push_back("sizing"); }

  static void ClickAt(QPoint place) {
    QProcess mouse;
    mouse.start(QStringLiteral("xdotool"),
                {QStringLiteral("mousemove"), QString::number(place.x()),
                 QString::number(place.y()), QStringLiteral("click"), QStringLiteral("1")});
    EXPECT_TRUE(mouse.waitForFinished());
    EXPECT_EQ(mouse.exitCode(), 0);
  }

  std::vector<std::string> events_;
  QtWindowMessages messages_;
  FullWindowDrag no_setting_;
  QWidget window_;
  QWidget other_;
  ResizeHandler handler_{messages_, no_setting_};
};

TEST_F(WindowHookTest, AClickIsAPlainActivationAndAMoveHasNoLoopAroundIt) {
  ClickAt(window_.geometry().center());
  EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window_; }));
  EXPECT_THAT(events_, ElementsAre("active"));
  EXPECT_TRUE(handler_.Active());

  events_.clear();
  window_.move(150, 160);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !events_.empty(); }));
  EXPECT_THAT(events_, Each("moving"));
}

}  // namespace
}  // namespace quillan
