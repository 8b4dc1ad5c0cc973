#include <QScrollBar>

#include "dialog/dialog_fixture.h"
#include "platform/qt/qt_message_box.h"

namespace quillan {
namespace {

using testing::IsEmpty;

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
