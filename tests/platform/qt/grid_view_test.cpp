#include "platform/qt/grid_view.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "platform/qt/color_scheme.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A view of 100 rows, each with a check box, a number, a text that can be edited and another text,
/// in a window with a text box above it.
class GridViewTest : public testing::Test, public GridListener {
 protected:
  static constexpr int kRows = 100;

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
                                   {.width_text = "XXXX", .stretches = true},
                                   {.width_text = "XXXX", .stretches = true}});
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

  Grid grid_;
  QWidget window_;
  QLineEdit box_;
  GridView view_{grid_};
};

TEST_F(GridViewTest, FocusMakesARowCurrentOnlyWhenTheUserTabsIntoTheList) {
  const std::pair<Qt::FocusReason, bool> cases[] = {{Qt::ActiveWindowFocusReason, false},
                                                    {Qt::OtherFocusReason, false},
                                                    {Qt::MouseFocusReason, false},
                                                    {Qt::TabFocusReason, true},
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
    EXPECT_EQ(OnScreen(grid_.CurrentRow()), makes_current) << reason;
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
  for (const auto& [key, row] : {std::pair{Qt::Key_End, kRows}, {Qt::Key_Home, 1}}) {
    QTest::keyClick(&view_, key);
    EXPECT_EQ(grid_.CurrentRow(), row);
    EXPECT_THAT(grid_.SelectedRows(), ElementsAre(row));
    EXPECT_TRUE(OnScreen(row));
  }
  QTest::keyClick(&view_, Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(grid_.SelectedRows().size(), kRows);
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

TEST_F(GridViewTest, AReloadKeepsThePlaceAndTheColumnsThatWereDrawn) {
  EXPECT_EQ(view_.columnWidth(0),
            view_.fontMetrics().horizontalAdvance(QStringLiteral("XXXXXXXXX")));
  EXPECT_NEAR(view_.columnWidth(2), view_.columnWidth(3), 1);
  view_.setColumnWidth(1, 90);  // As the user does by drawing it.
  view_.setColumnWidth(2, 70);
  view_.verticalScrollBar()->setValue(30);
  grid_.Reset(0, {});
  Load();
  EXPECT_EQ(view_.verticalScrollBar()->value(), 30);
  EXPECT_EQ(view_.columnWidth(1), 90);
  EXPECT_EQ(view_.columnWidth(2), 70);
  EXPECT_EQ(view_.horizontalHeader()->length(), view_.viewport()->width());
  window_.resize(300, 200);
  EXPECT_EQ(view_.columnWidth(2), 70);
  EXPECT_GE(view_.columnWidth(3), view_.fontMetrics().horizontalAdvance(QStringLiteral("XXXX")));
}

TEST_F(GridViewTest, AFilteredViewShowsAndSelectsTheRowsThatMatch) {
  grid_.SetFilter([&](int row) { return grid_.Text(row, 1).ends_with("0"); });
  ASSERT_EQ(view_.model()->rowCount(), 10);
  Click(2, 0);
  EXPECT_EQ(grid_.Check(20, 0), CheckState::kChecked);
  QTest::keyClick(&view_, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(grid_.SelectedRows(), ElementsAre(20, 30));
  const int added = grid_.AppendRow();
  grid_.SelectOnly(added, 1);
  EXPECT_EQ(view_.currentIndex(), Index(11, 1));
  grid_.SelectOnly(30, 1);
  grid_.SetFilter({});
  EXPECT_EQ(view_.model()->rowCount(), kRows + 1);
  EXPECT_EQ(view_.currentIndex(), Index(30, 1));
  EXPECT_TRUE(view_.selectionModel()->isRowSelected(29));
}

TEST_F(GridViewTest, ABatchOfManyRowsIsReportedOnce) {
  QSignalSpy appended(view_.model(), &QAbstractItemModel::rowsInserted);
  QSignalSpy changed(view_.model(), &QAbstractItemModel::dataChanged);
  {
    const Grid::Batch batch(grid_);
    for (int i = 0; i < 200000; ++i) grid_.SetText(grid_.AppendRow(), 1, "text");
    EXPECT_TRUE(appended.isEmpty());
  }
  ASSERT_EQ(appended.size(), 1);
  EXPECT_EQ(appended[0][1].toInt(), kRows);
  EXPECT_EQ(appended[0][2].toInt(), kRows + 199999);
  EXPECT_TRUE(changed.isEmpty());
  {
    const Grid::Batch batch(grid_);
    grid_.SetCheck(9, 0, CheckState::kChecked);
    grid_.SetBold(4, 1, true);
    grid_.SelectOnly(4, 1);
  }
  grid_.SetText(2, 1, "alone");
  ASSERT_EQ(changed.size(), 2);
  EXPECT_EQ(changed[0][0].toModelIndex().row(), 3);
  EXPECT_EQ(changed[0][1].toModelIndex().row(), 8);
  EXPECT_EQ(changed[1][0].toModelIndex().row(), 1);
  EXPECT_EQ(view_.currentIndex(), Index(4, 1));
  QSignalSpy sorted(view_.model(), &QAbstractItemModel::layoutChanged);
  grid_.Sort(1, SortDirection::kAscending);
  EXPECT_EQ(sorted.size(), 1);
}

TEST_F(GridViewTest, AHugeTextIsPaintedByItsBeginningAndEditedAsAWhole) {
  grid_.SetText(1, 2, std::string(200000, 'x'));
  EXPECT_LT(Index(1, 2).data().toString().size(), 2000);
  EXPECT_EQ(Index(1, 2).data(Qt::EditRole).toString().size(), 200000);
}

TEST_F(GridViewTest, EveryMarkIsLegibleInSelectedAndUnselectedRows) {
  constexpr int kPlain = 5;
  const Color marks[] = {Rgb(255, 0, 0), Rgb(200, 200, 200), Rgb(0, 128, 0), Rgb(0, 0, 160)};
  for (int row = 1; row <= kPlain; ++row) {
    if (row < kPlain) grid_.SetForeColor(row, 2, marks[row - 1]);
    grid_.SetText(row, 2, "\u2588\u2588\u2588\u2588\u2588\u2588");
  }
  // Paints the cell: the best contrast of any pixel with the background.
  const auto contrast = [&](int row, int column) {
    const QImage picture = view_.viewport()->grab(view_.visualRect(Index(row, column))).toImage();
    double best = 1;
    for (int x = 0; x < picture.width(); ++x) {
      for (int y = 2; y < picture.height() - 2; ++y) {
        best = std::max(best, Contrast(picture.pixelColor(x, y), picture.pixelColor(2, 2)));
      }
    }
    return best;
  };
  constexpr double kLegible = 4.5;  // What the guidelines ask of ordinary text.
  using enum ColorScheme;
  for (const auto scheme : {kDark, kHighContrastLight, kHighContrastDark, kLight}) {
    SetColorScheme(scheme);
    for (int row = 1; row <= kPlain; ++row) {
      // The colours that are given for light windows are meant for them and for dark selections.
      const bool given = scheme == kLight && row < kPlain;
      for (const int selected : {row, 0}) {
        grid_.SelectOnly(selected, 1);
        if (given && (selected == 0 || row > 2)) continue;
        EXPECT_GE(contrast(row, 2), kLegible) << static_cast<int>(scheme) << ' ' << row;
        EXPECT_GE(contrast(row, 0), kLegible) << static_cast<int>(scheme) << ' ' << row;
      }
    }
  }
}

}  // namespace
}  // namespace quillan
