#include <QCheckBox>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolTip>

#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class PortPageTest : public test::DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    program_.suite.Run(
        "insert into ServicePorts values (443, 'https', 1, 1), (80, 'http', 1, 0), "
        "(21, 'ftp', 1, 1), (8080, 'proxy for HTTP', 0, 1)");
    Open();
  }
  void Open() {
    DialogTest::Open();
    SelectPage(1);
    table_ = Table("PortList");
  }

  GridView* table_ = nullptr;
};

TEST_F(PortPageTest, AnEditBeginsWithTheCharacterTypedAndTakesNoMoreThanTheColumn) {
  ClickCell(table_, 1, 2);
  QTest::keyClick(table_, 'q');
  auto* editor = table_->findChild<QLineEdit*>(QStringLiteral("CellEditor"));
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->text(), QStringLiteral("q"));
  QApplication::clipboard()->setText(QString(300, QLatin1Char('x')));
  editor->paste();
  EXPECT_EQ(editor->text(), QStringLiteral("q"));
  EXPECT_EQ(QToolTip::text().toStdString(),
            "The description has 301 characters; the database takes 255.");
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(Cell(table_, 1, 2), QStringLiteral("ftp"));
}

TEST_F(PortPageTest, WhatTheScreenShowsIsWhatTheDatabaseHoldsAfterwards) {
  EXPECT_EQ(Cell(table_, 1, 1), QStringLiteral("21"));
  ClickCell(table_, 1, 0);  // 21 off.
  ClickCell(table_, 2, 1);  // A click on a text toggles nothing.
  ClickCell(table_, 3, 1, Qt::ShiftModifier);
  QTest::keyClick(table_, Qt::Key_Space);  // 80 on, 443 off.
  EXPECT_EQ(Check(table_, 2), Qt::Checked);
  EXPECT_EQ(Check(table_, 3), Qt::Unchecked);
  EXPECT_EQ(TextColor(table_, 3, 1), Qt::red);

  // The description alone can be edited, and is committed by the save itself.
  ClickCell(table_, 2, 1);
  auto* editor = qobject_cast<QLineEdit*>(Edit(table_));
  ASSERT_NE(editor, nullptr);
  editor->setText(QString::fromUtf8("it's größer ") + QString(200, QLatin1Char('x')));

  InNextDialog([&](QDialog* dialog) {
    QTest::keyClicks(Find<QLineEdit>("PortNumber", dialog), QStringLiteral("100"));
    QTest::keyClick(Find<QLineEdit>("PortNumber", dialog), Qt::Key_Return);
    EXPECT_TRUE(Find<QLineEdit>("Description", dialog)->hasFocus());
    QTest::keyClicks(Find<QLineEdit>("Description", dialog), QStringLiteral("new - one"));
    QTest::keyClick(Find<QLineEdit>("Description", dialog), Qt::Key_Return);
  });
  Click("cmdAddPort");
  EXPECT_EQ(Cell(table_, 3, 1), QStringLiteral("100"));
  EXPECT_EQ(table_->currentIndex().row(), 2);

  form_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
  ClickCell(table_, 5, 1);
  QTest::keyClick(table_, Qt::Key_Delete);
  EXPECT_EQ(TextColor(table_, 5, 1), QColor(200, 200, 200));
  EXPECT_FALSE(Check(table_, 5).isValid());
  EXPECT_FALSE(Find<QPushButton>("cmdDeletePort")->isEnabled());

  Click("CmdApply");
  const std::vector<std::string> stored = {"21|ftp|1|0",
                                           "80|it's größer " + std::string(200, 'x') + "|1|1",
                                           "100|new - one|0|1", "443|https|1|0"};
  EXPECT_EQ(program_.suite.Rows("select * from ServicePorts order by Port"), stored);
  EXPECT_THAT(program_.suite.Rows("select * from GlobalSettings"),
              ElementsAre("LastServicePortUpdate|6/1/2007 1:05:09 PM"));
  EXPECT_EQ(table_->model()->rowCount(), 4);
  EXPECT_NE(TextColor(table_, 1, 1), Qt::red);
}

TEST_F(PortPageTest, AFilteredListShowsItsMatchesAndCommandsActOnThemAlone) {
  QTest::keyClick(form_.get(), Qt::Key_F, Qt::ControlModifier);
  auto* filter = Find<QLineEdit>("FilterText", Find<ListControl>("PortList"));
  auto* result = Find<QLabel>("FilterResult", Find<ListControl>("PortList"));
  EXPECT_TRUE(filter->hasFocus());
  for (const auto& [typed, shown] : std::initializer_list<std::pair<const char*, const char*>>{
           {"http", "3 of 4"}, {"PROXY http", "1 of 4"}, {"80", "1 of 4"}, {"http", "3 of 4"}}) {
    filter->clear();
    QTest::keyClicks(filter, QString::fromLatin1(typed));
    EXPECT_EQ(result->text(), QString::fromLatin1(shown)) << typed;
  }
  table_->setFocus();
  QTest::keyClick(table_, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(table_, '-');
  QTest::keyClick(filter, Qt::Key_Escape);
  EXPECT_FALSE(filter->isVisible());
  EXPECT_TRUE(form_->isVisible());
  Click("CmdApply");
  EXPECT_THAT(program_.suite.Rows("select Port from ServicePorts where Enabled"),
              ElementsAre("21"));
}

TEST_F(PortPageTest, FoundRowsComeIntoViewAndReplacedOnesCanBeReverted) {
  program_.suite.Run(
      "delete from ServicePorts; with recursive n(i) as (select 1 union all select i + 1 from n "
      "where i < 60) "
      "insert into ServicePorts select i, 'service ' || i, 1, 1 from n;"
      "update ServicePorts set ServiceName = 'Mail' where Port = 60");
  Open();
  QTest::keyClick(form_.get(), Qt::Key_F3);
  auto* window = Find<QDialog>("FindReplaceForm");
  EXPECT_TRUE(window->isVisible()) << "there is nothing to find yet";
  auto* text = Find<QLineEdit>("FindText", window);
  auto* result = Find<QLabel>("FindResult", window);
  QTest::keyClicks(text, QStringLiteral("mail"));
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_EQ(table_->currentIndex().row(), 59);
  EXPECT_TRUE(table_->viewport()->rect().contains(table_->visualRect(table_->currentIndex())));
  Find<QCheckBox>("MatchCase", window)->setChecked(true);
  Click("cmdFindNext", window);
  EXPECT_EQ(result->text(), QStringLiteral("Not found."));

  text->setText(QStringLiteral("service 5"));
  Find<QLineEdit>("ReplaceText", window)->setText(QStringLiteral("line"));
  Click("cmdReplaceAll", window);
  EXPECT_EQ(result->text(), QStringLiteral("Replaced 11 descriptions."));
  EXPECT_EQ(Cell(table_, 50, 2), QStringLiteral("line0"));
  EXPECT_EQ(TextColor(table_, 50, 2), Qt::red);
  QTest::keyClick(Find<QPushButton>("cmdReplaceAll", window), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(table_, 50, 2), QStringLiteral("service 50"));
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_FALSE(window->isVisible());
  QTest::keyClick(form_.get(), Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(table_->currentIndex().row(), 58);
  QTest::keyClick(form_.get(), Qt::Key_H, Qt::ControlModifier);
  EXPECT_TRUE(window->isVisible());
  SelectPage(6);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(PortPageTest, HeadersSortAndTheSelectionFollows) {
  ClickCell(table_, 4, 2);
  QHeaderView* header = table_->horizontalHeader();
  const QPoint place(header->sectionViewportPosition(1) + header->sectionSize(1) / 2,
                     header->height() / 2);
  for (int twice = 0; twice < 2; ++twice) {
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
  }
  EXPECT_EQ(Cell(table_, 1, 1), QStringLiteral("8080"));
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(header->sortIndicatorSection(), 1);
  EXPECT_EQ(table_->currentIndex().row(), 0);
  EXPECT_TRUE(table_->selectionModel()->isRowSelected(0));
}

TEST_F(PortPageTest, TheAddDialogRefusesAndKeepsWhatWasTyped) {
  InNextDialog([&](QDialog* dialog) {
    auto* number = Find<QLineEdit>("PortNumber", dialog);
    auto* description = Find<QLineEdit>("Description", dialog);
    description->setText(QStringLiteral("kept"));
    number->setText(QStringLiteral(" 80abc"));
    description->setFocus();
    QTest::keyClick(description, Qt::Key_Return);
    EXPECT_EQ(messages_.messages.back().text, "Port number 80 already exists as http");
    EXPECT_TRUE(number->hasFocus());
    EXPECT_EQ(number->selectedText(), QStringLiteral(" 80abc"));
    EXPECT_EQ(description->text(), QStringLiteral("kept"));
    // Enter presses the button that has the focus.
    Find<QPushButton>("cmdCancel", dialog)->setFocus();
    QTest::keyClick(Find<QPushButton>("cmdCancel", dialog), Qt::Key_Enter);
  });
  QTest::keyClick(table_, Qt::Key_Insert);
  EXPECT_EQ(messages_.messages.size(), 1U);
  EXPECT_EQ(table_->model()->rowCount(), 4);
}

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
    end->setText(QStringLiteral("10.0.1.9"));
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
    EXPECT_TRUE(start->hasFocus());
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
  QTest::keyClick(table, Qt::Key_Tab);
  QTest::keyClick(strip, Qt::Key_Left);
  EXPECT_EQ(table->currentIndex().row(), 0);
  EXPECT_TRUE(strip->hasFocus());
  EXPECT_THAT(strip->accessibleDescription().toStdString(), HasSubstr("first"));
  QTest::keyClick(strip, Qt::Key_Left);
  EXPECT_EQ(table->currentIndex().row(), 0) << "there is none in front of it";
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
