#include "lists/flow_regrouping.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "lists/group_edits.h"

namespace quillan {
namespace {

using testing::SizeIs;
using FlowRegroupingTest = test::GroupEditsTest;

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
  struct Kind {
    std::vector<test::Group> stored;
    std::function<void()> edit;
    std::string alone;
    std::string overlapping;
  };
  for (const Kind& kind : std::initializer_list<Kind>{
           {{{7, 0, 99, false}},
            [&] { Toggle(0); },
            "count Update assign",
            "count Update query neighbour itself"},
           {{{7, 0, 99, true}},
            [&] { Toggle(0); },
            "count Update clear",
            "count Update clear query neighbour"},
           {{{7, 0, 99, true}},
            [&] { Delete(0); },
            "count Delete free",
            "count Delete free query neighbour"},
           {{},
            [&] { Add(0, 99); },
            "count Insert Select assign-new",
            "count Insert Select query neighbour new"},
           {{},
            [&] { Add(0, 99), list_.OnKeyPress('-'); },
            "count Insert Select clear",
            "count Insert Select query neighbour"},
           // Without a known identifier nothing is reassigned.
           {{{0, 0, 99, false}}, [&] { Toggle(0); }, "count Update", "count Update"},
       }) {
    for (const bool overlap : {false, true}) {
      program_.suite.Run("Delete From IPAddressGroups; Delete From sqlite_sequence");
      Store(kind.stored);
      Store({{40000, 50, 511, overlap}});
      kind.edit();
      std::string statements;
      for (const std::string& statement : Saved(list_, true)) {
        // The row's own statements by their first word.
        const bool on_group = statement.find("FlowCorrelation") == std::string::npos;
        const auto name = names.find(statement);
        if (!statements.empty()) statements += " ";
        statements += name != names.end() ? name->second
                      : on_group          ? statement.substr(0, statement.find(' '))
                                          : statement;
      }
      EXPECT_EQ(statements, (overlap ? kind.overlapping : kind.alone) + " exec");
    }
  }
}

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
                          [&](int row) { return list_.Table().RowData(row).state == 2 ? 0 : row; });
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
