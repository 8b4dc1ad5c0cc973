#include "platform/grid/grid.h"

#include <gmock/gmock.h>

#include <clocale>
#include <string>
#include <vector>

#include "platform/grid/row_filter.h"

namespace quillan {
namespace {

using testing::ElementsAre;

class GridTest : public testing::Test {
 protected:
  GridTest() { grid_.Reset(Grid::kFixedRows, {{"XX"}, {"XX"}, {"XX"}}); }

  void Fill(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) grid_.SetText(grid_.AppendRow(), 1, text);
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
      texts.emplace_back(grid_.Text(row, 1));
    }
    return texts;
  }

  Grid grid_;
};

TEST_F(GridTest, NumbersSortByValueAndSoMayDigitsWithinATextAndEqualRowsKeepTheirOrder) {
  Fill({"b", "10", "NaN", "9", "É", "inf", "é", " 8.5 ", "a", "-1", "", "B", "09", "1e3"});
  grid_.Sort(1, SortDirection::kAscending);
  EXPECT_THAT(Texts(), ElementsAre("-1", " 8.5 ", "9", "09", "10", "1e3", "", "a", "b", "B", "inf",
                                   "NaN", "É", "é"));
  grid_.Sort(1, SortDirection::kDescending);
  EXPECT_THAT(Texts(), ElementsAre("É", "é", "NaN", "inf", "b", "B", "a", "", "1e3", "10", "9",
                                   "09", " 8.5 ", "-1"));
  const std::vector<std::string> by_digits = {"Gi0/2",          "Gi0/10",       "Gi0/10.5",
                                              "Gi1/0",          "Gi1/00000001", "Gi1/123456789",
                                              "Gi1/1234567890", "Gi1/x",        "Gi10"};
  grid_.Reset(Grid::kFixedRows, {{"X"}, {.width_text = "X", .digits_by_value = true}});
  Fill({by_digits.rbegin(), by_digits.rend()});
  grid_.Sort(1, SortDirection::kAscending);
  EXPECT_EQ(Texts(), by_digits);
}

TEST_F(GridTest, TextsSortByTheProgramsLocale) {
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no German locale";
  Fill({"Zoo", "É", "f", "E", "e", "ä", "12", std::string(500, 'E')});
  grid_.Sort(1, SortDirection::kAscending);
  std::setlocale(LC_ALL, "C");
  EXPECT_THAT(Texts(), ElementsAre("12", "ä", "e", "E", "É", std::string(500, 'E'), "f", "Zoo"));
}

TEST_F(GridTest, EverythingOfARowFollowsItWhenSorted) {
  Fill({"c", "a", "b"});
  grid_.SetText(0, 1, "header");
  grid_.SetCheck(1, 0, CheckState::kChecked);
  grid_.SetBold(1, 2, true);
  grid_.RowData(1).id = 7;
  grid_.MoveCurrent(1, 2);
  grid_.SetSelected(1, 2, true);
  grid_.SortByKey(1, SortDirection::kDescending, [](int row) { return row == 1 ? 0 : 1; });
  EXPECT_THAT(Texts(), ElementsAre("a", "b", "c"));
  EXPECT_EQ(grid_.Text(0, 1), "header");
  EXPECT_EQ(grid_.Check(3, 0), CheckState::kChecked);
  EXPECT_TRUE(grid_.Bold(3, 2) && !grid_.Bold(1, 2));
  EXPECT_EQ(grid_.RowData(3).id, 7);
  EXPECT_EQ(grid_.CurrentRow(), 3);
  EXPECT_EQ(grid_.CurrentColumn(), 2);
  EXPECT_THAT(grid_.SelectedRows(), ElementsAre(1, 3));
}

TEST_F(GridTest, AskingAgainTurnsTheOrderUntilTheRowsChange) {
  Fill({"1", "2", "3"});
  grid_.SetCheck(1, 0, CheckState::kUnchecked);
  grid_.SetCheck(2, 0, CheckState::kChecked);
  grid_.RequestSort(0);
  EXPECT_THAT(Texts(), ElementsAre("3", "2", "1"));  // None, checked, unchecked.
  grid_.RequestSort(0);
  EXPECT_THAT(Texts(), ElementsAre("1", "2", "3"));
  EXPECT_EQ(grid_.Direction(), SortDirection::kDescending);
  grid_.SetText(1, 1, "x");  // Another column: the order still stands.
  EXPECT_EQ(grid_.SortColumn(), 0);
  grid_.SetCheck(1, 0, CheckState::kChecked);
  EXPECT_EQ(grid_.SortColumn(), -1);
  grid_.RequestSort(1);
  grid_.AppendRow();
  EXPECT_EQ(grid_.SortColumn(), -1);
}

TEST_F(GridTest, AFilterHidesAndDeselectsRowsInTheirPlaces) {
  const std::vector<std::string> all = {"Core switch", "École", "edge Switch 2", "switch",
                                        "ÉCOLE 2"};
  Fill(all);
  for (int row = 1; row < grid_.Rows(); ++row) grid_.SetText(row, 2, "Büro " + std::to_string(row));
  const std::pair<const char*, std::vector<int>> cases[] = {{"SWITCH", {1, 3, 4}},
                                                            {" 2  switch", {3}},
                                                            {"büro é", {2, 5}},
                                                            {"", {1, 2, 3, 4, 5}},
                                                            {"none", {}}};
  for (const auto& [typed, shown] : cases) {
    grid_.SetFilter({});
    grid_.MoveCurrent(2, 1);
    grid_.SetSelected(1, 5, true);
    grid_.SetFilter([&, filter = RowFilter(typed)](int row) { return filter.Matches(grid_, row); });
    EXPECT_THAT(grid_.SelectedRows(), testing::ElementsAreArray(shown)) << typed;
    EXPECT_EQ(grid_.ShownRows(), static_cast<int>(shown.size())) << typed;
    EXPECT_EQ(grid_.CurrentRow(), grid_.IsShown(2) ? 2 : 0) << typed;
    EXPECT_EQ(Texts(), all);
  }
  grid_.SetFilter([&](int row) { return grid_.Text(row, 1).find("witch") != std::string::npos; });
  grid_.Sort(1, SortDirection::kDescending);
  grid_.SetSelected(1, grid_.Rows() - 1, true);
  ASSERT_EQ(grid_.SelectedRows().size(), 3U);
  grid_.RemoveRows({grid_.SelectedRows()[0]});
  EXPECT_EQ(grid_.ShownRows(), 2);
  {
    // A reload is filtered too.
    const Grid::Batch batch(grid_);
    grid_.Reset(Grid::kFixedRows, {{"X"}, {"X"}, {"X"}});
    Fill(all);
  }
  EXPECT_EQ(grid_.ShownRows(), 3);
}

}  // namespace
}  // namespace quillan
