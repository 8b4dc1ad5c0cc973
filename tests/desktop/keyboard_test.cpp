#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

using testing::ElementsAre;

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
  program_.suite.Run(
      "insert into ServicePorts values (80, 'http', 1, 1), (443, 'https', 1, 1);"
      "insert into IPAddressGroups values (1, 10000000000, 10000255255, 'big', 1, 1);"
      "insert into Nodes values (1, 'node'); insert into Interfaces values (10, 1, 'a')");
  Open();
  Press(Qt::Key_A, Qt::ControlModifier);
  Type("9996");
  Press(Qt::Key_Tab, Qt::ControlModifier);
  Press(Qt::Key_Down);
  Press(Qt::Key_Space);  // Accepts the interface.
  Press(Qt::Key_Tab, Qt::ControlModifier);
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  Press(Qt::Key_Minus);  // 443 off.
  Press(Qt::Key_Tab, Qt::ControlModifier);
  Press(Qt::Key_Down);
  Press(Qt::Key_F2);
  Press(Qt::Key_A, Qt::ControlModifier);
  Type("small");
  Press(Qt::Key_Return);
  // To OK, as far as it is.
  constexpr int kManyControls = 30;
  const auto* ok = Find<QPushButton>("cmdOK");
  for (int i = 0; i < kManyControls && !ok->hasFocus(); ++i) Press(Qt::Key_Tab);
  ASSERT_TRUE(ok->hasFocus());
  Press(Qt::Key_Space);
  EXPECT_FALSE(form_->isVisible());
  EXPECT_THAT(program_.suite.Rows("select NetFlowPort from FlowEngines"), ElementsAre("9996"));
  EXPECT_THAT(program_.suite.Rows("select InterfaceID from NetFlowSources"), ElementsAre("10"));
  EXPECT_THAT(program_.suite.Rows("select Port from ServicePorts where Enabled = 1"),
              ElementsAre("80"));
  EXPECT_THAT(program_.suite.Rows("select IPAddressGroupName from IPAddressGroups"),
              ElementsAre("small"));
}

}  // namespace
}  // namespace quillan
