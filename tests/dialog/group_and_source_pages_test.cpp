#include <QHelpEvent>
#include <QLineEdit>
#include <QToolTip>

#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using GroupPageTest = test::DialogTest;
using SourcePageTest = test::DialogTest;

TEST_F(GroupPageTest, AnAddedOverlappingGroupTakesItsEndpoints) {
  program_.suite.Run(
      "insert into IPAddressGroups values (1, 10000000000, 10000255255, 'big', 1, 1);"
      "insert into FlowCorrelation (IPAddress, IPAddressSort, IPAddressGroupID) values "
      "('10.0.0.5', 10000000005, 1), ('10.0.200.1', 10000200001, 1), ('10.1.0.9', 10001000009, 0)");
  Open();
  SelectPage(2);
  InNextDialog([&](QDialog* dialog) {
    auto* start = Find<QLineEdit>("StartIPAddress", dialog);
    auto* end = Find<QLineEdit>("EndIPAddress", dialog);
    start->setText(QStringLiteral("10.0.1.0"));
    end->setText(QStringLiteral("10.0.1.9"));
    Click("cmdOK", dialog);
    EXPECT_THAT(messages_.messages.back().text, HasSubstr("(big) already exists in your list"));
    EXPECT_TRUE(start->hasFocus());
    auto* note = Find<QLabel>("RangeNote", dialog);
    EXPECT_FALSE(note->isVisible());
    start->setText(QStringLiteral("10.0.129.0/33"));
    QTest::keyClick(start, Qt::Key_Tab);
    EXPECT_EQ(end->text(), QStringLiteral("10.0.1.9"));
    EXPECT_THAT(note->text().toStdString(), HasSubstr("\"33\""));
    start->setText(QStringLiteral("10.0.129.0/17"));
    EXPECT_EQ(start->text(), QStringLiteral("10.0.129.0/17")) << "it is still being typed";
    EXPECT_TRUE(note->isVisible());
    EXPECT_THAT(note->text().toStdString(),
                AllOf(HasSubstr("10.0.128.0 to 10.0.255.255, 32,768 addresses."),
                      HasSubstr("10.0.129.0 is not the first address")));
    Click("cmdOK", dialog);
    EXPECT_THAT(messages_.messages.back().text, HasSubstr("(big) already exists in your list"));
    EXPECT_EQ(start->text(), QStringLiteral("10.0.128.0"));
    start->setText(QStringLiteral("10.0.128.0 - 10.1.0.255"));
    start->setFocus();
    QTest::keyClick(start, Qt::Key_Return);
    EXPECT_TRUE(end->hasFocus());
    EXPECT_EQ(end->text(), QStringLiteral("10.1.0.255"));
    QTest::keyClick(end, Qt::Key_Return);
    Find<QLineEdit>("Description", dialog)->setText(QString::fromUtf8("Büro"));
    QTest::keyClick(Find<QLineEdit>("Description", dialog), Qt::Key_Return);
  });
  Click("cmdAddGroup");
  GridView* table = Table("AddressGroupList");
  EXPECT_EQ(table->model()->rowCount(), 2);
  EXPECT_EQ(TextColor(table, 2, 3), Qt::red);
  Click("CmdApply");
  EXPECT_THAT(program_.suite.Rows("select IPAddress, IPAddressGroupName from FlowCorrelation "
                                  "join IPAddressGroups using (IPAddressGroupID)"),
              ElementsAre("10.0.0.5|big", "10.0.200.1|Büro", "10.1.0.9|Büro"));
  EXPECT_EQ(table->model()->rowCount(), 2);
  EXPECT_EQ(table->model()->columnCount(), 4);
}

TEST_F(GroupPageTest, TheStripNamesTheGroupOfAPlaceAndSelectsItsRow) {
  program_.suite.Run(
      "insert into IPAddressGroups values (1, 10000000000, 10000000255, 'first', 1, 1),"
      "(2, 10000001000, 10000001255, 'second', 1, 1)");
  Open();
  SelectPage(2);
  auto* list = Find<ListControl>("AddressGroupList");
  std::vector<bool> toggled;
  QObject::connect(list, &ListControl::StripToggled, list,
                   [&](bool shown) { toggled.push_back(shown); });
  EXPECT_FALSE(list->StripShown());
  QTest::keyClick(form_.get(), Qt::Key_M, Qt::ControlModifier);
  auto* strip = Find<CoverageStrip>("CoverageStrip", list);
  EXPECT_TRUE(strip->isVisible());
  const auto color = [&](int part) {
    return strip->grab().toImage().pixelColor(strip->width() * part / 4, 2);
  };
  EXPECT_EQ(color(1), QColor(255, 0, 0));
  EXPECT_EQ(color(3), QColor(0, 153, 0));
  QHelpEvent help(QEvent::ToolTip, {strip->width() / 4, 4}, {});
  QApplication::sendEvent(strip, &help);
  EXPECT_THAT(QToolTip::text().toStdString(), AllOf(HasSubstr("first"), HasSubstr("10.0.0.255")));
  GridView* table = Table("AddressGroupList");
  QTest::mouseClick(strip, Qt::LeftButton, {}, {strip->width() * 3 / 4, 4});
  EXPECT_EQ(table->currentIndex().row(), 1);
  EXPECT_TRUE(table->hasFocus());
  ClickCell(table, 1, 0);
  EXPECT_EQ(color(3), color(1)) << "the second group is the only one left";
  list->ShowStrip(false);
  EXPECT_THAT(toggled, ElementsAre(true, false));
  EXPECT_FALSE(strip->isVisible());
}

TEST_F(SourcePageTest, ChecksBecomeRowsAndNothingCanBeEdited) {
  program_.suite.Run(
      "insert into Nodes values (1, 'core');"
      "insert into Interfaces values (10, 1, 'a'), (11, 1, 'b'), (12, 1, 'c'), (99, 7, 'orphan');"
      "insert into NetFlowSources values (11)");
  Open();
  SelectPage(6);
  GridView* table = Table("InterfacesList");
  ASSERT_EQ(table->model()->rowCount(), 3);
  ClickCell(table, 2, 2);
  EXPECT_EQ(Edit(table), nullptr);
  ClickCell(table, 1, 0);
  ClickCell(table, 2, 0);
  Click("CmdApply");
  EXPECT_THAT(program_.suite.Rows("select * from NetFlowSources"), ElementsAre("10"));
  Click("cmdSelectAll");
  Click("CmdApply");
  EXPECT_THAT(program_.suite.Rows("select * from NetFlowSources"), ElementsAre("10", "11", "12"));
}

}  // namespace
}  // namespace quillan
