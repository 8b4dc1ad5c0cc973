#include <QScrollBar>

#include "dialog/dialog_fixture.h"
#include "platform/qt/qt_message_box.h"

namespace quillan {
namespace {

using testing::IsEmpty;

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

/// The settings dialog with real message boxes, under a window manager.
class DeletionTest : public test::DialogTest {
 protected:
  MessageBox& Messages() override { return boxes_; }

  QtMessageBox boxes_;
};

TEST_F(DeletionTest, LeavesNoRowSelectedThatTheUserHasNotChosen) {
  for (int port = 1; port <= 60; ++port) {
    program_.suite.Run("insert into ServicePorts values (" + std::to_string(port) + ", 'x', 0, 1)");
  }
  Open();
  SelectPage(1);
  GridView* table = Table("PortList");
  ClickCell(table, 60, 1);
  const int scrolled = table->verticalScrollBar()->value();
  EXPECT_GT(scrolled, 0);
  InNextDialog([](QDialog* box) { QTest::keyClick(box->focusWidget(), Qt::Key_Return); });
  Click("cmdDeletePort");
  form_->activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == form_.get(); }));
  EXPECT_TRUE(table->hasFocus());

  EXPECT_THAT(table->selectionModel()->selectedRows(), IsEmpty());
  EXPECT_FALSE(table->currentIndex().isValid());
  EXPECT_FALSE(Find<QPushButton>("cmdDeletePort")->isEnabled());
  EXPECT_EQ(table->verticalScrollBar()->value(), scrolled);
  QTest::keyClick(table, Qt::Key_Space);
  Click("cmdOK");
  EXPECT_EQ(program_.suite.Rows("select Port from ServicePorts").size(), 59U);
  EXPECT_THAT(program_.suite.Rows("select Port from ServicePorts where Enabled = 0"), IsEmpty());
}

}  // namespace
}  // namespace quillan
