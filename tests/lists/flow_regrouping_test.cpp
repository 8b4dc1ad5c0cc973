#include "lists/flow_regrouping.h"

#include <functional>
#include <map>

#include "lists/list_fixture.h"

namespace quillan {
namespace {

using testing::HasSubstr;

class FlowRegroupingTest : public test::GroupEditsTest {
 protected:
  /// Stores endpoints in the groups that they belong to, 0 being none.
  void StoreEndpoints(const std::map<int, int>& group_of_address) {
    for (const auto& [address, group] : group_of_address) {
      program_.suite.Run("Insert Into FlowCorrelation Values (''," + test::Packed(address) +
                         ",NULL," + std::to_string(group) + ")");
    }
  }
  /// Saves the edits; the groups of the endpoints afterwards, in the order of the addresses.
  std::string GroupsAfterSave() {
    SaveAndLoad();
    std::string groups;
    for (const std::string& group : program_.suite.Rows(
             "Select IPAddressGroupID From FlowCorrelation Order By IPAddressSort")) {
      groups += (groups.empty() ? "" : " ") + group;
    }
    return groups;
  }
};

TEST_F(FlowRegroupingTest, EachKindOfRowRunsItsStatementsInTheirOrder) {
  const std::string assign = "Update FlowCorrelation Set IPAddressGroupID=";
  const std::string within = " WHERE IPAddressSort >=10000000000 and IPAddressSort <=10000000099";
  const std::string regroup = "Update FlowCorrelation SET IPAddressGroupID=";
  const std::string own = " WHERE IPAddressSort >= 10000000000 AND IPAddressSort <= 10000000099";
  const std::map<std::string, std::string> names = {
      {"Select count(*) as IPCount From IPAddressGroups Where ((IPRangeStart >=10000000000 and "
       "IPRangeStart <=10000000099) OR (IPRangeEnd >=10000000000 and IPRangeEnd <=10000000099)) "
       "and ENABLED=1",
       "count"},
      {"Select IPAddressGroupID, IPRangeStart as dbStartIPRange, IPRangeEnd as dbEndIPRange from "
       "IPAddressGroups Where ((IPRangeStart between 10000000000 AND 10000000099) OR  (IPRangeEnd "
       "between 10000000000 AND 10000000099)) AND Enabled = 1 Group by IPAddressGroupID, "
       "IPRangeStart, IPRangeEnd Order by IPAddressGroupID, IPRangeStart, IPRangeEnd ",
       "query"},
      {assign + "0" + within, "clear"},
      {assign + "7" + within, "assign"},
      {assign + "40001" + within, "assign-new"},
      {"Update FlowCorrelation Set IPAddressGroupID = 0 WHERE IPAddressGroupID = 7", "free"},
      {regroup + "40000 WHERE IPAddressSort >= 10000000050 AND IPAddressSort <= 10000001255",
       "neighbour"},
      {regroup + "7" + own, "itself"},
      {regroup + "40001" + own, "new"},
  };
  // The statements of a save without and with an enabled neighbour, a row's own by their first
  // word.
  const auto expect = [&](const std::vector<test::Group>& stored, const std::string& alone,
                          const std::string& overlapping, const std::function<void()>& edit) {
    for (const bool overlap : {false, true}) {
      program_.suite.Run("Delete From IPAddressGroups; Delete From sqlite_sequence");
      Store(stored);
      Store({{40000, 50, 511, overlap}});
      edit();
      std::string statements;
      for (const std::string& statement : Saved(list_, true)) {
        const bool on_group = statement.find("FlowCorrelation") == std::string::npos;
        const auto name = names.find(statement);
        statements += name != names.end() ? name->second
                      : on_group          ? statement.substr(0, statement.find(' '))
                                          : statement;
        statements += " ";
      }
      EXPECT_EQ(statements, (overlap ? overlapping : alone) + " exec ");
    }
  };
  expect({{7, 0, 99, false}}, "count Update assign", "count Update query neighbour itself",
         [&] { Toggle(0); });
  expect({{7, 0, 99, true}}, "count Update clear", "count Update clear query neighbour",
         [&] { Toggle(0); });
  expect({{7, 0, 99, true}}, "count Delete free", "count Delete free query neighbour",
         [&] { Delete(0); });
  expect({}, "count Insert Select assign-new", "count Insert Select query neighbour new",
         [&] { Add(0, 99); });
  expect({}, "count Insert Select clear", "count Insert Select query neighbour",
         [&] { Add(0, 99), list_.OnKeyPress('-'); });
  // Without a known identifier nothing is reassigned.
  expect({{0, 0, 99, false}}, "count Update", "count Update", [&] { Toggle(0); });
}

TEST_F(FlowRegroupingTest, ALargeRangeIsAnnouncedBeforeItsStatements) {
  const auto overlapping = HasSubstr("that are in overlapping groups. Please be patient");
  const auto alone =
      testing::AllOf(HasSubstr("a significant number of IP addresses"), testing::Not(overlapping));
  Store({{1, 200000, 249999, true}, {2, 300000, 350000, true}});
  // Once a row of a save overlaps, so does every later one; the next save begins anew.
  for (const int start : {200000, 300000}) Toggle(start);
  Add(199990, 200000);
  list_.Table().SortByKey(1, SortDirection::kAscending,
                          [&](int row) { return list_.Table().RowData(row).state == 2 ? 0 : row; });
  for (const bool overlaps : {true, false}) {
    messages_.messages.clear();
    list_.Sync();
    ASSERT_THAT(messages_.messages, testing::SizeIs(1));
    EXPECT_THAT(messages_.messages[0].text, testing::Conditional(overlaps, overlapping, alone));
    list_.Refresh();
    Toggle(300000);
  }
}

// Where the statements leave an address elsewhere than with the smallest enabled group around it.
TEST_F(FlowRegroupingTest, ASaveMayTakeAddressesFromTheSmallestGroupAndAnotherSaveCorrectsIt) {
  Store({{1, 0, 99, true}, {2, 50, 149, false}});
  StoreEndpoints({{49, 1}, {90, 1}, {140, 0}, {500, 11}, {750, 12}, {939, 12}, {940, 13}});
  Rename(50);  // A disabled group; the one enabled group that it counts is not itself.
  EXPECT_EQ(GroupsAfterSave(), "1 0 0 11 12 12 13");
  Rename(0);  // Saving the other group corrects it.
  EXPECT_EQ(GroupsAfterSave(), "1 1 0 11 12 12 13");
  Add(90, 120);  // The same for a new group that was deleted and then kept unchecked.
  Delete(90);
  list_.Table().SelectOnly(RowAt(90), 1);
  list_.OnKeyPress('-');
  EXPECT_EQ(GroupsAfterSave(), "1 0 0 11 12 12 13");
  Add(85, 160);  // Beside two groups it is regrouped as it should be.
  EXPECT_EQ(GroupsAfterSave(), "1 3 3 11 12 12 13");

  Store({{11, 500, 799, true}, {12, 750, 949, true}, {13, 940, 969, true}});
  Rename(500);  // Regroups 11 and 12, the latter over all of its own range.
  EXPECT_EQ(GroupsAfterSave(), "1 3 3 11 12 12 12");
  Rename(940);  // Saving the smaller group corrects it.
  EXPECT_EQ(GroupsAfterSave(), "1 3 3 11 12 12 13");
  Delete(500);  // A deleted group's neighbour does the same.
  EXPECT_EQ(GroupsAfterSave(), "1 3 3 0 12 12 12");
}

}  // namespace
}  // namespace quillan
