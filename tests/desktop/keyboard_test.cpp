#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

class KeyboardTest : public test::DialogTest {
 protected:
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(form_->windowHandle(), key, modifiers);
  }
  void Type(const char* text) {
    for (; *text != '\0'; ++text) QTest::keyClick(form_->windowHandle(), *text);
  }
};

TEST_F(KeyboardTest, EveryReachablePageIsEditedAndSavedWithoutAMouse) {
  FillEveryPage();
  Open();
  Press(Qt::Key_A, Qt::ControlModifier);
  Type("9996");
  Press(Qt::Key_Tab, Qt::ControlModifier);
  Press(Qt::Key_Down);
  Press(Qt::Key_Space);  // The interface on.
  Press(Qt::Key_Tab, Qt::ControlModifier);
  Press(Qt::Key_Down);
  Press(Qt::Key_Minus);  // Port 80 off.
  Press(Qt::Key_Tab, Qt::ControlModifier);
  Press(Qt::Key_Down);
  Press(Qt::Key_Space);  // The group off.
  // To OK, as far as it is.
  constexpr int kManyControls = 30;
  const auto* ok = Find<QPushButton>("cmdOK");
  for (int i = 0; i < kManyControls && !ok->hasFocus(); ++i) Press(Qt::Key_Tab);
  ASSERT_TRUE(ok->hasFocus());
  Press(Qt::Key_Space);
  EXPECT_FALSE(form_->isVisible());
  ExpectEveryPageSaved();
}

}  // namespace
}  // namespace quillan
