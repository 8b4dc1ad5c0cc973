#include <string>
#include <vector>

#include "lists/list_fixture.h"
#include "lists/port_list.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PendingTest : public test::GroupListTest {
 protected:
  PendingTest() {
    program_.suite.Run(
        "Insert Into ServicePorts Values (443,'https',1,1), (80,'http',1,0), (9000,'mine',0,1);"
        "Insert Into IPAddressGroups Values (1,10000000000,10000000255,'a',0,1),"
        "(2,10000001000,10000001255,'b',0,1);"
        "Insert Into FlowCorrelation Values ('',10000000005,NULL,1), ('',10000002005,NULL,0)");
    ports_.Refresh();
    list_.Refresh();
  }

  // Every value that is pending: row, state, and each column's "from>to".
  static std::vector<std::string> Pending(const CheckableList& list) {
    std::vector<std::string> rows;
    for (const PendingRow& row : list.Pending()) {
      std::string text = row.name + " " + std::to_string(static_cast<int>(row.state));
      for (const auto& [column, from, to] : row.values) {
        text += ", " + column + " " + from + ">" + to;
      }
      rows.push_back(text);
    }
    return rows;
  }
  void AddGroup(const char* start, const char* end, const char* name) {
    entered_ = NewGroup{start, end, name};
    Press(list_, "cmdAddGroup");
  }

  PortList ports_{Services(), [] { return NewPort{8080, "proxy"}; }};
};

TEST_F(PendingTest, EveryEditIsListedWithItsValuesAndCanBeReverted) {
  int reported = -1;
  ports_.OnPendingChanged([&] { reported = ports_.PendingCount(); });
  const auto loaded = Rows(ports_);
  ports_.OnClick(1, 0);
  Edit(ports_, 2, 2, "tls");
  Select(ports_, {3});
  Press(ports_, "cmdDeletePort");
  Press(ports_, "cmdAddPort");
  EXPECT_THAT(Pending(ports_),
              ElementsAre("80 1, Monitored no>yes", "443 1, Description https>tls",
                          "8080 2, Monitored >yes, Port >8080, Description >proxy",
                          "9000 -1, Monitored yes>, Port 9000>, Description mine>"));
  EXPECT_EQ(reported, 4);
  ports_.Table().Sort(2, SortDirection::kDescending);
  ports_.Revert({1, 2, 3, 4});
  ports_.Table().Sort(1, SortDirection::kAscending);
  EXPECT_EQ(Rows(ports_), loaded);
  EXPECT_EQ(ports_.Table().ForeColor(2, 2), 0U);
  EXPECT_EQ(reported, 0);
  EXPECT_THAT(Saved(ports_), IsEmpty());
}

TEST_F(PendingTest, AStoppedLoadShowsNoRowAndLosesNoEdit) {
  program_.suite.Run(
      "With n(i) As (Select 10000 Union All Select i+1 From n Where i<20000) "
      "Insert Into ServicePorts Select i,'',0,1 From n");
  ports_.OnClick(1, 0);
  Press(ports_, "cmdAddPort");
  host_.stops_reading = true;
  std::vector<Conflict> conflicts;
  EXPECT_FALSE(ports_.FindConflicts(conflicts));
  EXPECT_FALSE(ports_.Reload());
  EXPECT_EQ(ports_.Table().Rows(), Grid::kFixedRows);
  EXPECT_EQ(ports_.LoadError(), "The rows were not read: loading was stopped.");
  EXPECT_EQ(ports_.ConflictError(), ports_.LoadError());
  EXPECT_EQ(ports_.PendingCount(), 2);
}

TEST_F(PendingTest, AGroupNestedWithSomebodyElsesIsNeverWritten) {
  for (const auto answer : {ConflictAnswer::kOverwrite, ConflictAnswer::kKeepTheirs}) {
    AddGroup("10.0.2.0", "10.0.2.255", "ours");
    program_.suite.Run(
        "Insert Into IPAddressGroups Values (NULL,10000002000,10000003255,'theirs',0,1)");
    std::vector<Conflict> conflicts;
    EXPECT_TRUE(list_.FindConflicts(conflicts));
    ASSERT_THAT(conflicts, SizeIs(1));
    EXPECT_EQ(conflicts[0].kind, ConflictKind::kNested);
    EXPECT_EQ(conflicts[0].theirs, "yes, theirs (10.0.2.0 - 10.0.3.255)");
    list_.Resolve(conflicts, answer);
    EXPECT_EQ(list_.Sync().failed, answer == ConflictAnswer::kOverwrite ? 1 : 0);
    EXPECT_THAT(program_.suite.Rows("Select * From IPAddressGroups"), SizeIs(3));
    program_.suite.Run("Delete From IPAddressGroups Where IPAddressGroupName='theirs'");
    list_.Refresh();
  }
}

}  // namespace
}  // namespace quillan
