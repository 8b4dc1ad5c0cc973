#include "lists/address_group_list.h"

#include "lists/list_fixture.h"
#include "lists/new_group.h"

namespace quillan {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

constexpr const char* kLastUpdate =
    "exec tbsp_netflowSetGlobalSetting 'LastIPAddressGroupUpdate', '6/1/2007 1:05:09 PM'";

class AddressGroupListTest : public test::GroupListTest {
 protected:
  void Load(const std::string& rows) {
    program_.suite.Run("Insert Into IPAddressGroups Values " + rows);
    list_.Refresh();
  }
  // Row 2 is the system's.
  void LoadThreeGroups() {
    Load(
        "(7,100000000001,100000000009,'c',0,0), (70000,9000000001,9000000009,'a',0,1), "
        "(9,10000000001,10000000009,'b',1,1)");
  }
  void Add(const std::string& start, const std::string& end, const std::string& name) {
    entered_ = NewGroup{start, end, name};
    Press(list_, "cmdAddGroup");
  }
  std::vector<std::string> Groups() {
    return program_.suite.Rows(
        "Select IPAddressGroupID, IPAddressGroupName, Enabled From IPAddressGroups Order By 1");
  }
};

TEST_F(AddressGroupListTest, AddressColumnsSortByValueAndDescendTheFirstTime) {
  LoadThreeGroups();
  EXPECT_THAT(Rows(list_), ElementsAre("x|9.0.0.1|9.0.0.9|a|0", "x|10.0.0.1|10.0.0.9|b|0",
                                       "-|100.0.0.1|100.0.0.9|c|0"));
  for (const auto& [column, order] : {std::pair{1, "cba"}, {2, "abc"}, {3, "abc"}, {1, "cba"}}) {
    list_.Table().RequestSort(column);
    std::string names;
    for (int row = 1; row < 4; ++row) names += list_.Table().Text(row, 3);
    EXPECT_EQ(names, order) << "after a click on the header of column " << column;
  }
  // The identifier follows its row, and rows are written as they are displayed.
  Select(list_, {1, 2});
  list_.OnKeyPress('-');
  EXPECT_THAT(Saved(list_),
              Contains("Update IPAddressGroups Set IPAddressGroupName='c', Enabled=0 Where "
                       "IPRangeStart=100000000001 and IPRangeEnd=100000000009 and "
                       "IPAddressGroupID=7"));
}

TEST_F(AddressGroupListTest, ASaveWritesEveryEditAndLeavesAnEmptyGrid) {
  LoadThreeGroups();
  Select(list_, {1, 2});
  Press(list_, "cmdDeleteGroup");
  EXPECT_THAT(messages_.messages[1].text,
              testing::HasSubstr("(b) is a system-defined range and cannot be deleted."));
  EXPECT_FALSE(Edit(list_, 2, 2, "1.1.1.1"));
  EXPECT_TRUE(Edit(list_, 2, 3, "d'été"));
  Add("11.0.0.0", "11.0.0.1", "n'ew");
  EXPECT_EQ(Rows(list_).back(), "x|11.0.0.0|11.0.0.1|n'ew|2");
  const auto statements = Saved(list_, true);
  EXPECT_THAT(
      statements,
      testing::IsSupersetOf(
          {"Delete From IPAddressGroups Where IPRangeStart=9000000001 and IPRangeEnd =9000000009 "
           "and IPAddressGroupID=70000",
           "Update IPAddressGroups Set IPAddressGroupName=N'd''été', Enabled=1 Where "
           "IPRangeStart=10000000001 and IPRangeEnd=10000000009 and IPAddressGroupID=9",
           "Insert Into IPAddressGroups (IPRangeStart, IPRangeEnd, IPAddressGroupName, System, "
           "Enabled) Values (11000000000,11000000001,'n''ew',0,1)",
           "Select IPAddressGroupID from IPAddressGroups WHERE IPRangeStart=11000000000 and "
           "IPRangeEnd=11000000001 and IPAddressGroupName='n''ew'"}));
  EXPECT_EQ(statements.back(), kLastUpdate);
  EXPECT_THAT(Groups(), ElementsAre("7|c|0", "9|d'été|1", "70001|n'ew|1"));

  // Until it is loaded again the grid has no row at all, and yet takes keys and new groups.
  EXPECT_EQ(list_.Table().Rows(), 0);
  list_.OnKeyPress(' ');
  Add("12.0.0.0", "12.0.0.1", "more");
  EXPECT_THAT(Rows(list_), ElementsAre("x|12.0.0.0|12.0.0.1|more|2"));
  list_.Sync();
  EXPECT_THAT(Groups(), Contains("70002|more|1"));
}

TEST_F(AddressGroupListTest, GroupsWithoutARangeAreKeptAndReassignNothing) {
  Load(
      "(1,NULL,10000000009,'null',0,1), (2,10000000009,10000000001,'reversed',0,1), "
      "(3,10000000000,99999999999999,'absurd',0,1)");
  program_.suite.Run("Insert Into FlowCorrelation Values ('10.0.0.5',10000000005,NULL,2)");
  EXPECT_EQ(Rows(list_)[0], "x|0.0.0.0|10.0.0.9|null|0");
  list_.Table().SetSelected(1, 3, true);
  list_.OnKeyPress('-');
  const std::string update = "Update IPAddressGroups Set IPAddressGroupName=";
  EXPECT_THAT(Saved(list_, true),
              ElementsAre(update + "'null', Enabled=0 Where IPAddressGroupID=1",
                          update + "'absurd', Enabled=0 Where IPAddressGroupID=3",
                          update + "'reversed', Enabled=0 Where IPAddressGroupID=2", kLastUpdate));
  list_.Refresh();
  list_.Table().SetSelected(1, 3, true);
  Press(list_, "cmdDeleteGroup");
  list_.Sync();
  EXPECT_THAT(Groups(), testing::IsEmpty());
  EXPECT_THAT(program_.suite.Rows("Select IPAddressGroupID From FlowCorrelation"),
              ElementsAre("2"));
}

class NewGroupTest : public test::GroupListTest {
 protected:
  // Two rows that are listed only, and two groups that are stored only.
  NewGroupTest() {
    for (const auto& group : {NewGroup{"10.0.0.128", "10.0.1.127", "listed"},
                              NewGroup{"10.0.8.0", "10.0.8.255", "deleted"}}) {
      entered_ = group;
      Press(list_, "cmdAddGroup");
    }
    Press(list_, "cmdDeleteGroup");
    program_.suite.Run(
        "Insert Into IPAddressGroups Values (1,20000000000,20000000255,'stored',0,0), "
        "(2,21000000000,NULL,'endless',0,1)");
  }
  /// Why the range is refused, with the field to correct and "*" where it is to be selected.
  std::string Refused(std::string_view start, std::string_view end) {
    const auto refusal = RefuseNewGroup(start, end, &list_.Table(), program_.database);
    if (!refusal) return "";
    return refusal->field + (refusal->select_text ? "*: " : ": ") + refusal->message;
  }
};

TEST_F(NewGroupTest, AnEntryIsRefusedForItsFirstFault) {
  const std::string start = "StartIPAddress: Please enter a valid starting IP Address.";
  const std::string end = "EndIPAddress: Please enter a valid ending IP Address.";
  const std::string reversed = "EndIPAddress: The ENDING IP Address cannot be less than";
  const std::string listed = "StartIPAddress: .*nested.*\\(listed\\) already exists in your list";
  const std::string deleted = "StartIPAddress: .*nested.*\\(deleted\\) already exists in your";
  const std::string stored = "StartIPAddress\\*: .*nested.*\\(stored\\) already exists that";
  const std::string entries[][3] = {
      {"256.0.0.1", "x", start},
      {"1e1.0.0.0", "10.0.0.1", start},
      {"10.0.0.1", "10.0.0", end},
      {"10.0.0.5", "10.0.0.1", reversed},
      {"9.0.0.5", "9.0.0.5", ""},
      {"10.0.0.0", "10.0.0.255", ""},
      {"10.0.1.127", "10.0.1.128", ""},
      {"10.0.0.128", "10.0.1.127", listed},
      {"10.0.0.128", "10.0.1.128", listed},
      {"10.0.8.1", "10.0.8.2", deleted},
      {"19.0.0.0", "20.0.0.255", stored},
      {"20.0.0.1", "20.0.1.0", ""},
      {"21.0.0.0", "21.0.0.1", ""},
  };
  for (const auto& [first, last, refusal] : entries) {
    const std::string expected = refusal.empty() ? "" : refusal + ".*";
    EXPECT_THAT(Refused(first, last), testing::MatchesRegex(expected)) << first << " to " << last;
  }
  EXPECT_FALSE(RefuseNewGroup("10.0.8.1", "10.0.8.2", nullptr, program_.database));
  TakeDatabaseAway();
  EXPECT_THAT(Refused("9.0.0.0", "9.0.0.1"),
              testing::AllOf(testing::StartsWith("StartIPAddress: Could not check whether"),
                             testing::HasSubstr("suite.db")));
}

}  // namespace
}  // namespace quillan
