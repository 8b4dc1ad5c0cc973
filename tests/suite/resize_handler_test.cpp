#include "suite/resize_handler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillan {
namespace {

using testing::ElementsAre;

constexpr WindowHandle kWindow = 7;

class FixedWindows : public WindowMessages {
 public:
  void AttachMessage(ISubclass&, WindowHandle, WindowMessage) override {}
  void DetachMessage(ISubclass&, WindowHandle, WindowMessage) override {}
  std::optional<WindowRect> GetWindowRect(WindowHandle) const override {
    return WindowRect{10, 20, 110, 70};
  }
};

class ScriptedFullDrag : public FullWindowDrag {
 public:
  std::optional<bool> IsOn() const override { return on; }
  void Set(bool value) override { on = value; }
  std::optional<bool> on = true;
};

class ResizeHandlerTest : public testing::Test, public ResizeListener {
 protected:
  ResizeHandlerTest() {
    handler_->SetListener(this);
    handler_->Attach(kWindow);
  }
  void OnEnterSizeMove() override { events_.push_back("enter"); }
  void OnExitSizeMove() override { events_.push_back("exit"); }
  void OnActivate(bool clicked) override { events_.push_back(clicked ? "clicked" : "active"); }
  void OnDeactivate() override { events_.push_back("inactive"); }
  void OnMoving(WindowBounds& bounds) override { Constrain("moving", bounds); }
  void OnSizing(WindowBounds& bounds) override { Constrain("sizing", bounds); }
  void Constrain(const char* event, WindowBounds& bounds) {
    events_.push_back(event + (" " + std::to_string(bounds.left)) + "," +
                      std::to_string(bounds.top) + "," + std::to_string(bounds.width) + "," +
                      std::to_string(bounds.height));
    bounds.width = std::max(bounds.width, 300);
    bounds.top = std::max(bounds.top, 0);
  }
  void Send(WindowMessage message, std::uint32_t w_param = 0, WindowRect* rectangle = nullptr) {
    EXPECT_EQ(handler_->WindowProc(kWindow, message, w_param, rectangle), 0);
  }

  FixedWindows messages_;
  ScriptedFullDrag drag_;
  std::unique_ptr<ResizeHandler> handler_ = std::make_unique<ResizeHandler>(messages_, drag_);
  std::vector<std::string> events_;
};

TEST_F(ResizeHandlerTest, ListenersConstrainTheRectangle) {
  WindowRect rectangle{10, -5, 210, 95};
  Send(WindowMessage::kEnterSizeMove);
  Send(WindowMessage::kSizing, 0, &rectangle);
  EXPECT_EQ(rectangle, (WindowRect{10, 0, 310, 100}));
  Send(WindowMessage::kMoving, 0, &rectangle);
  Send(WindowMessage::kSize);
  Send(WindowMessage::kExitSizeMove);
  Send(WindowMessage::kSize);
  EXPECT_THAT(events_, ElementsAre("enter", "sizing 10,-5,200,100", "moving 10,0,300,100", "exit",
                                   "sizing 10,20,100,50"));
}

TEST_F(ResizeHandlerTest, ListenersLearnHowTheWindowWasActivated) {
  for (const std::uint32_t parameter : {1U, 2U, 0U}) Send(WindowMessage::kActivate, parameter);
  EXPECT_THAT(events_, ElementsAre("active", "clicked", "inactive"));
}

TEST_F(ResizeHandlerTest, FullDragIsOffWhileTheWindowIsActiveUnlessItWasOffBefore) {
  const std::function<void()> ends[] = {
      [this] { Send(WindowMessage::kActivate, 0); }, [this] { Send(WindowMessage::kDestroy); },
      [this] { handler_->SetNoFullDrag(false); }, [this] { handler_.reset(); }};
  for (const auto& end : ends) {
    handler_->SetNoFullDrag(true);
    handler_->Attach(kWindow);
    Send(WindowMessage::kActivate, 1);
    EXPECT_EQ(drag_.on, false);
    end();
    EXPECT_EQ(drag_.on, true);
  }
}

TEST_F(ResizeHandlerTest, AFullDragSettingThatIsOffIsLeftAlone) {
  handler_->SetNoFullDrag(true);
  drag_.on = false;
  for (const std::uint32_t active : {1U, 0U}) Send(WindowMessage::kActivate, active);
  EXPECT_EQ(drag_.on, false);
}

}  // namespace
}  // namespace quillan
