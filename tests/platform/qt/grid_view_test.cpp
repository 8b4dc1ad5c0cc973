#include "platform/qt/grid_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A view of 100 rows, each with a check box, a number, a text that can be edited and another text,
/// in a window with a text box above it.
class GridViewTest : public testing::Test, public GridListener {
 protected:
  static constexpr int kRows = 100;
  static constexpr int kEditable = 2;

  GridViewTest() {
    Load();
    grid_.SetListener(this);
    window_.setLayout(new QVBoxLayout());
    window_.layout()->addWidget(&box_);
    window_.layout()->addWidget(&view_);
    window_.resize(400, 300);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  }

  void Load() {
    const Grid::Batch batch(grid_);
    grid_.Reset(Grid::kFixedRows, {{"XXXXXXXXX", Alignment::kCenter},
                                   {"XXXXXXX", Alignment::kCenter},
                                   {"XXXXXXXXXXXXXXXX"},
                                   {"XXXXXXXXXXXXXXXX"}});
    for (int column = 0; column < grid_.Columns(); ++column) grid_.SetText(0, column, "header");
    for (int i = 1; i <= kRows; ++i) {
      const int row = grid_.AppendRow();
      grid_.SetCheck(row, 0, CheckState::kUnchecked);
      grid_.SetText(row, 1, std::to_string(i));
      grid_.SetText(row, 2, "text");
      grid_.SetText(row, 3, "other");
    }
  }
  void OnClick(int row, int column) override {
    if (column != 0) return;
    grid_.SetCheck(row, 0,
                   grid_.Check(row, 0) == CheckState::kChecked ? CheckState::kUnchecked
                                                               : CheckState::kChecked);
  }
  bool OnBeforeEdit(int /*row*/, int column) override { return column == kEditable; }

  QModelIndex Index(int row, int column) const { return view_.model()->index(row - 1, column); }
  QPoint Center(int row, int column) {
    view_.scrollTo(Index(row, column));
    return view_.visualRect(Index(row, column)).center();
  }
  void Click(int row, int column) {
    QTest::mouseClick(view_.viewport(), Qt::LeftButton, {}, Center(row, column));
  }
  bool OnScreen(int row) const {
    const QRect rectangle = view_.visualRect(Index(row, 0));
    return rectangle.isValid() && view_.viewport()->rect().contains(rectangle);
  }
  QLineEdit* Editor() const { return view_.findChild<QLineEdit*>(QStringLiteral("CellEditor")); }

  Grid grid_;
  QWidget window_;
  QLineEdit box_;
  GridView view_{grid_};
};

TEST_F(GridViewTest, FocusMakesARowCurrentOnlyWhenTheUserTabsIntoTheList) {
  const std::pair<Qt::FocusReason, bool> cases[] = {
      {Qt::ActiveWindowFocusReason, false}, {Qt::OtherFocusReason, false},
      {Qt::PopupFocusReason, false},        {Qt::ShortcutFocusReason, false},
      {Qt::MouseFocusReason, false},        {Qt::TabFocusReason, true},
      {Qt::BacktabFocusReason, true}};
  for (const auto& [reason, makes_current] : cases) {
    box_.setFocus();
    Click(60, 1);
    const int top = view_.verticalScrollBar()->value();
    grid_.SelectOnly(0, 1);  // As after a deletion.
    box_.setFocus();
    view_.setFocus(reason);
    ASSERT_TRUE(view_.hasFocus());
    EXPECT_EQ(grid_.CurrentRow() != 0, makes_current) << reason;
    EXPECT_EQ(grid_.SelectedRows().empty(), !makes_current) << reason;
    EXPECT_EQ(makes_current && OnScreen(grid_.CurrentRow()), makes_current) << reason;
    EXPECT_EQ(view_.verticalScrollBar()->value(), top) << reason;
  }
}

TEST_F(GridViewTest, NoRowIsCurrentAfterALoadOrAfterThePageWasLeft) {
  Click(5, 1);
  Load();
  EXPECT_EQ(grid_.CurrentRow(), 0);
  EXPECT_THAT(grid_.SelectedRows(), IsEmpty());
  Click(5, 1);
  view_.hide();
  view_.show();
  EXPECT_EQ(grid_.CurrentRow(), 0);
  EXPECT_THAT(grid_.SelectedRows(), IsEmpty());
  EXPECT_FALSE(view_.currentIndex().isValid());
}

TEST_F(GridViewTest, KeysReachTheFirstTheLastAndTheNearestRow) {
  view_.verticalScrollBar()->setValue(40);
  view_.setFocus(Qt::MouseFocusReason);
  QTest::keyClick(&view_, Qt::Key_Down);
  EXPECT_EQ(grid_.CurrentRow(), 41);  // Nothing was current: the topmost row on screen.
  const std::pair<Qt::Key, int> cases[] = {{Qt::Key_End, kRows}, {Qt::Key_Home, 1}};
  for (const auto& [key, row] : cases) {
    QTest::keyClick(&view_, key);
    EXPECT_EQ(grid_.CurrentRow(), row);
    EXPECT_THAT(grid_.SelectedRows(), ElementsAre(row));
    EXPECT_TRUE(OnScreen(row));
  }
  QTest::keyClick(&view_, Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(grid_.SelectedRows().size(), kRows);
}

TEST_F(GridViewTest, F2EditsTheEditableCellWhicheverIsCurrent) {
  for (int column = 0; column < grid_.Columns(); ++column) {
    Click(3, column);
    QTest::keyClick(&view_, Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr) << column;
    EXPECT_EQ(view_.currentIndex(), Index(3, kEditable));
    EXPECT_THAT(grid_.SelectedRows(), ElementsAre(3));
    QTest::keyClicks(Editor(), QStringLiteral("dropped"));
    QTest::keyClick(Editor(), Qt::Key_Escape);
    EXPECT_TRUE(window_.isVisible());
    EXPECT_EQ(grid_.Text(3, kEditable), "text");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

TEST_F(GridViewTest, EveryOneOfFastClicksOnACheckBoxCounts) {
  const QPoint box = Center(2, 0);
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, {}, box);
  EXPECT_EQ(grid_.Check(2, 0), CheckState::kChecked);
  QTest::mouseDClick(view_.viewport(), Qt::LeftButton, {}, box);
  EXPECT_EQ(grid_.Check(2, 0), CheckState::kUnchecked);
  QTest::mouseDClick(view_.viewport(), Qt::RightButton, {}, box);
  EXPECT_EQ(grid_.Check(2, 0), CheckState::kUnchecked);
}

}  // namespace
}  // namespace quillan
