#include "platform/qt/window_messages.h"

#include <gmock/gmock.h>

#include <memory>

#include <QApplication>
#include <QTest>
#include <QWidget>

#include "suite/resize_handler.h"

namespace quillan {
namespace {

using testing::ElementsAre;

class ScriptedFullDrag : public FullWindowDrag {
 public:
  std::optional<bool> IsOn() const override { return on; }
  void Set(bool value) override { on = value; }
  bool on = true;
};

/// A resize handler that is attached to a real window.
class QtWindowMessagesTest : public testing::Test, public ResizeListener {
 protected:
  QtWindowMessagesTest() {
    window_->setGeometry(100, 100, 400, 300);
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    handler_->SetListener(this);
    handler_->Attach(handle_);
    Events();
  }

  void OnEnterSizeMove() override { events_.push_back("enter"); }
  void OnExitSizeMove() override { events_.push_back("exit"); }
  void OnActivate(bool clicked) override { events_.push_back(clicked ? "clicked" : "active"); }
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
  static void Activate(QWidget& window) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  // What a window system may send besides what Qt reports.
  void Send(WindowMessage message, std::uint32_t w_param = 0) {
    EXPECT_EQ(handler_->WindowProc(handle_, message, w_param, nullptr), 0);
  }

  std::vector<std::string> events_;
  QtWindowMessages messages_;
  ScriptedFullDrag drag_;
  std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
  WindowHandle handle_ = QtWindowMessages::HandleOf(*window_);
  std::unique_ptr<ResizeHandler> handler_ = std::make_unique<ResizeHandler>(messages_, drag_);
};

TEST_F(QtWindowMessagesTest, MovingAndSizingAreToldApartAndConstrained) {
  window_->move(-20, 80);
  EXPECT_THAT(Events(), ElementsAre("moving"));
  EXPECT_EQ(window_->pos(), QPoint(50, 80));
  EXPECT_EQ(window_->size(), QSize(400, 300));
  window_->resize(120, 250);
  EXPECT_THAT(Events(), ElementsAre("sizing"));
  EXPECT_EQ(window_->frameGeometry().width(), 300);
  EXPECT_EQ(window_->height(), 250);
  using enum WindowMessage;
  for (const auto message : {kEnterSizeMove, kSize, kExitSizeMove, kSize}) Send(message);
  EXPECT_THAT(Events(), ElementsAre("enter", "exit", "sizing"));
}

TEST_F(QtWindowMessagesTest, ActivationIsReported) {
  Activate(*window_);
  Events();
  QWidget other;
  Activate(other);
  EXPECT_THAT(Events(), ElementsAre("inactive"));
  Activate(*window_);
  EXPECT_THAT(Events(), ElementsAre("active"));
  Send(WindowMessage::kActivate, 2);
  EXPECT_THAT(Events(), ElementsAre("clicked"));
}

TEST_F(QtWindowMessagesTest, ADetachedOrDestroyedWindowIsSilent) {
  EXPECT_TRUE(messages_.GetWindowRect(handle_));
  handler_->Detach();
  window_->resize(100, 100);
  EXPECT_THAT(Events(), testing::IsEmpty());
  EXPECT_EQ(window_->width(), 100);

  handler_->Attach(handle_);
  window_.reset();
  EXPECT_FALSE(messages_.GetWindowRect(handle_));
}

TEST_F(QtWindowMessagesTest, FullDragIsOffWhileTheWindowIsActiveUnlessItWasOffBefore) {
  const std::function<void()> ends[] = {
      [this] { Send(WindowMessage::kActivate, 0); }, [this] { Send(WindowMessage::kDestroy); },
      [this] { handler_->SetNoFullDrag(false); }, [this] { handler_.reset(); }};
  for (const auto& end : ends) {
    for (const bool before : {false, true}) {
      handler_ = std::make_unique<ResizeHandler>(messages_, drag_);
      drag_.on = before;
      handler_->SetNoFullDrag(true);
      handler_->Attach(handle_);
      Send(WindowMessage::kActivate, 1);
      EXPECT_FALSE(drag_.on);
      end();
      EXPECT_EQ(drag_.on, before);
    }
  }
}

}  // namespace
}  // namespace quillan
