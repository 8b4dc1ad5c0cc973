#include "suite/search_context.h"

#include <gmock/gmock.h>

namespace quillan {
namespace {

using testing::ElementsAre;

class SearchContextTest : public testing::Test {
 protected:
  // A header that every search would match, rows 1..5 below it; the middle column is hidden.
  SearchContextTest() {
    grid_.Reset(6, {{"", Alignment::kLeft, false},
                    {"", Alignment::kLeft, true},
                    {"", Alignment::kLeft, false}});
    for (int column = 0; column < 3; ++column) grid_.SetText(0, column, "net NET");
    search_.SetGrid(&grid_);
    search_.SetSearchString("net");
  }

  // The cells found until there are no more, "row,column" each.
  std::vector<std::string> FindAll() {
    std::vector<std::string> cells;
    while (search_.FindNext()) {
      cells.push_back(std::to_string(grid_.CurrentRow()) + "," +
                      std::to_string(grid_.CurrentColumn()));
    }
    return cells;
  }

  Grid grid_;
  SearchContext search_;
};

TEST_F(SearchContextTest, DirectionAndColumnsBoundTheSearch) {
  for (int row = 1; row < 6; ++row) {
    for (int column = 0; column < 3; ++column) grid_.SetText(row, column, "internet");
  }
  search_.SetAllColumns(false);
  grid_.SelectOnly(5, 0);
  search_.SetDirection("Up");
  EXPECT_THAT(FindAll(), ElementsAre("5,0", "4,0", "3,0", "2,0", "1,0"));
  grid_.SelectOnly(4, 0);
  search_.SetDirection("Down");
  search_.SetColumnIndex(2);
  EXPECT_THAT(FindAll(), ElementsAre("4,2", "5,2"));
  search_.SetAllColumns(true);
  EXPECT_THAT(FindAll(), ElementsAre("5,0", "5,2"));
  search_.SetReplaceString("sub");
  grid_.SelectOnly(4, 0);
  EXPECT_EQ(search_.ReplaceAll(), 4);
  EXPECT_EQ(grid_.Text(5, 2), "intersub");
  EXPECT_EQ(grid_.Text(5, 1), "internet") << "a hidden column";
  EXPECT_THAT(grid_.SelectedRows(), ElementsAre(4, 5));
  search_.SetSearchString("");
  EXPECT_EQ(search_.ReplaceAll(), 0);
  search_.SetSearchString("inter");
  search_.SetColumnIndex(3);  // There is none.
  search_.SetAllColumns(false);
  EXPECT_THAT(FindAll(), ElementsAre());
}

TEST_F(SearchContextTest, ReplacesBeyondAsciiWhereFoldedLettersHaveOtherLengths) {
  struct Row {
    std::string text, from, to, replaced;
    bool match_case;
  };
  // The capital I with a dot shrinks when it is folded, the A with a stroke grows.
  for (const Row& row :
       {Row{"Züri ZÜRI züri", "züRI", "Genf", "Genf Genf Genf", false},
        Row{"Züri ZÜRI züri", "ZÜRI", "Genf", "Züri Genf züri", true},
        Row{"İİstanbul İst", "istan", "K", "İKbul İst", false},
        Row{"ȺȺx Ⱥx!", "ⱥx", "é", "Ⱥé é!", false}, Row{"ΣΊΣΥΦΟΣ", "ς", "s", "sΊsΥΦΟs", false},
        // Bytes that are not UTF-8 stay, and are found as they are, but not inside a character.
        Row{"\x41\x80\x7A", "a", "-", "-\x80\x7A", false},
        Row{"\xC3\xA9\xA9", "\xA9", "-", "\xC3\xA9-", false}}) {
    grid_.SetText(1, 0, row.text);
    search_.SetMatchCase(row.match_case);
    search_.SetSearchString(row.from);
    search_.SetReplaceString(row.to);
    EXPECT_TRUE(search_.ReplaceNext()) << row.text;
    EXPECT_EQ(grid_.Text(1, 0), row.replaced);
  }
}

TEST_F(SearchContextTest, ChangingAnOptionRestartsTheSearchButTheCaseRuleDoesNot) {
  const std::pair<std::function<void()>, bool> rows[] = {
      {[&] { search_.SetSearchString("net"); }, false},  // As it was.
      {[&] { search_.SetSearchString("NET"); }, true},
      {[&] { search_.SetReplaceString(""); }, false},
      {[&] { search_.SetReplaceString("x"); }, true},
      {[&] { search_.SetDirection("Down"); }, true},
      {[&] { search_.SetAllColumns(true); }, true},
      {[&] { search_.SetColumnIndex(0); }, true},
      {[&] { search_.SetSearchColumn("Name"); }, false},
      {[&] { search_.SetMatchCase(false); }, false},
      {[&] { search_.SetGrid(&grid_); }, true},
  };
  int number = 0;
  for (const auto& [change, restarts] : rows) {
    grid_.SetText(2, 0, "net");
    search_.SetReset(true);
    EXPECT_TRUE(search_.FindNext());
    change();
    EXPECT_EQ(search_.Reset(), restarts) << "change " << ++number;
  }
  search_.SetSearchString("net");
  grid_.SetText(3, 0, "NET");
  grid_.SetText(4, 0, "net");
  EXPECT_TRUE(search_.FindNext());
  search_.SetMatchCase(true);
  EXPECT_THAT(FindAll(), ElementsAre("4,0"));
  EXPECT_TRUE(search_.FindNext());
  grid_.Reset(0, {});  // The grid may lose its rows.
  EXPECT_FALSE(search_.ReplaceNext());
  search_.SetGrid(nullptr);
  EXPECT_EQ(search_.ReplaceAll(), 0);
}

}  // namespace
}  // namespace quillan
