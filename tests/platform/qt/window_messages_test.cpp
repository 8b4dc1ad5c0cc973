#include "platform/qt/window_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include <QApplication>
#include <QTest>
#include <QWidget>

#include "suite/resize_handler.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QtWindowMessagesTest : public testing::Test, public ResizeListener {
 protected:
  QtWindowMessagesTest() {
    window_->setGeometry(100, 100, 400, 300);
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    handler_.SetListener(this);
    handler_.Attach(QtWindowMessages::HandleOf(*window_));
  }

  void OnEnterSizeMove() override { events_.push_back("enter"); }
  void OnExitSizeMove() override { events_.push_back("exit"); }
  void OnActivate(bool /*clicked*/) override { events_.push_back("active"); }
  void OnDeactivate() override { events_.push_back("inactive"); }
  void OnMoving(WindowBounds& bounds) override {
    events_.push_back("moving");
    bounds.left = std::max(bounds.left, 50);
  }
  void OnSizing(WindowBounds& bounds) override {
    events_.push_back("sizing");
    bounds.width = std::max(bounds.width, 300);
  }
  std::vector<std::string> Events() {
    QApplication::processEvents();
    return std::exchange(events_, {});
  }

  std::vector<std::string> events_;
  QtWindowMessages messages_;
  FullWindowDrag no_setting_;
  std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
  ResizeHandler handler_{messages_, no_setting_};
};

TEST_F(QtWindowMessagesTest, MovingAndSizingAreToldApartAndConstrained) {
  Events();
  window_->move(-20, 80);
  EXPECT_THAT(Events(), ElementsAre("moving"));
  EXPECT_EQ(window_->pos(), QPoint(50, 80));
  EXPECT_EQ(window_->size(), QSize(400, 300));
  window_->resize(120, 250);
  EXPECT_THAT(Events(), ElementsAre("sizing"));
  EXPECT_EQ(window_->frameGeometry().width(), 300);
  EXPECT_EQ(window_->height(), 250);
}

TEST_F(QtWindowMessagesTest, ActivationIsReported) {
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  Events();
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_THAT(Events(), ElementsAre("inactive"));
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  EXPECT_THAT(Events(), ElementsAre("active"));
}

TEST_F(QtWindowMessagesTest, ADetachedOrDestroyedWindowIsSilent) {
  const WindowHandle handle = QtWindowMessages::HandleOf(*window_);
  EXPECT_TRUE(messages_.GetWindowRect(handle));
  Events();
  handler_.Detach();
  window_->resize(100, 100);
  EXPECT_THAT(Events(), IsEmpty());
  EXPECT_EQ(window_->width(), 100);

  handler_.Attach(handle);
  window_.reset();
  EXPECT_FALSE(messages_.GetWindowRect(handle));
}

}  // namespace
}  // namespace quillan
