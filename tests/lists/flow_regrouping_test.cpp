#include "lists/flow_regrouping.h"

#include <string>

#include "lists/group_edits.h"

namespace quillan {
namespace {

using testing::SizeIs;
using FlowRegroupingTest = test::GroupEditsTest;

TEST_F(FlowRegroupingTest, ALargeRangeIsAnnouncedBeforeItsStatements) {
  const std::string significant =
      "You've selected a group operation that impacts a significant number of IP addresses";
  const std::string alone =
      significant +
      ".\r\nPlease be patient as these IP addresses are assigned to the proper group.";
  const std::string overlapping =
      significant +
      "\r\nthat are in overlapping groups. Please be patient as these IP addresses are assigned to "
      "the proper groups.";
  Store({{1, 200000, 249999, false}, {2, 300000, 350000, false}, {3, 400000, 400009, true}});
  for (const int start : {200000, 300000}) Toggle(start);
  list_.Sync();
  ASSERT_THAT(messages_.messages, SizeIs(1));
  EXPECT_EQ(messages_.messages[0].text, alone);
  EXPECT_EQ(messages_.messages[0].title, "Quillan");
  EXPECT_EQ(messages_.messages[0].buttons, MessageButtons::kOk);
  EXPECT_EQ(messages_.messages[0].icon, MessageIcon::kNone);

  // Once a row of a save overlaps, so does every later one; the next save begins anew.
  list_.Refresh();
  for (const int start : {200000, 300000}) Toggle(start);
  Add(199990, 200000);
  list_.Table().SortByKey(1, SortDirection::kAscending,
                          [&](int row) { return list_.Table().RowData(row) == 2 ? 0 : row; });
  for (const std::string& expected : {overlapping, alone}) {
    messages_.messages.clear();
    list_.Sync();
    ASSERT_THAT(messages_.messages, SizeIs(1));
    EXPECT_EQ(messages_.messages[0].text, expected);
    list_.Refresh();
    Toggle(300000);
  }
}

}  // namespace
}  // namespace quillan
