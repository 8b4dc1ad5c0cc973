// Saves and loads in which any one call of the database fails, in every way in which it can.

#include <algorithm>
#include <array>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "lists/interfaces_list.h"
#include "lists/list_fixture.h"
#include "lists/port_list.h"

namespace quillan {
namespace {

using testing::IsEmpty;
using testing::Not;

struct Fault {
  const char* name;
  void (*happen)();
  bool after_the_call = false;
  bool lasts = false;  // Every later call fails too, until the next save.
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

const Fault kFaults[] = {
    {"Error", [] { throw ado::Error(1, "", "refused"); }},
    {"Timeout", [] { throw ado::Error(ado::kTimeoutExpired, "HYT00", "timed out"); }},
    {"Lost", [] { throw ado::Error(0, "08S01", "lost"); }},
    {"LostAfterItRan", [] { throw ado::Error(0, "08S01", "lost"); }, true},
    {"Outage", [] { throw ado::Error(0, "08S01", "lost"); }, false, true},
    {"Memory", [] { throw std::bad_alloc(); }},
};

class EveryFailureTest : public test::GroupListTest, public testing::WithParamInterface<Fault> {
 protected:
  EveryFailureTest() { Seed(); }

  void Seed() {
    program_.suite.Run(
        "Begin; Delete From ServicePorts; Delete From IPAddressGroups; Delete From FlowCorrelation;"
        "Delete From NetFlowSources; Delete From GlobalSettings; Delete From sqlite_sequence;"
        "Insert Into ServicePorts Values (80,'http',1,0), (443,'https',1,1), (9000,'mine',0,1);"
        "Insert Into IPAddressGroups Values (1,10000000000,10000000089,'a',0,1),"
        " (2,10000000050,10000000149,'b',0,1), (3,10000001000,10000001255,'c',0,1),"
        " (4,10000002000,10000002255,'d',0,0);"
        "Insert Into FlowCorrelation Values ('',10000000020,NULL,1), ('',10000000070,NULL,1),"
        " ('',10000000120,NULL,2), ('',10000001005,NULL,3), ('',10000002005,NULL,0),"
        " ('',10000003005,NULL,0);"
        "Insert Or Ignore Into Nodes Values (1,'core');"
        "Insert Or Ignore Into Interfaces Values (1,1,'eth0'), (2,1,'eth1'), (3,1,'eth2');"
        "Insert Into NetFlowSources Values (1); Commit");
  }
  // Changes, adds and deletes rows of every list.
  void EditAll() {
    Seed();
    for (CheckableList* list : lists_) ASSERT_TRUE(list->Refresh());
    ports_.OnClick(1, 0);
    Edit(ports_, 2, 2, "tls");
    Select(ports_, {3});
    Press(ports_, "cmdDeletePort");
    Press(ports_, "cmdAddPort");
    Select(list_, {1});
    Press(list_, "cmdDeleteGroup");
    Edit(list_, 4, 3, "renamed");
    list_.OnClick(3, 0);
    list_.OnClick(4, 0);
    entered_ = NewGroup{"10.0.3.0", "10.0.3.255", "new"};
    Press(list_, "cmdAddGroup");
    sources_.OnClick(1, 0);
    sources_.OnClick(2, 0);
    script_.statements.clear();
  }
  int Pending() const {
    int pending = 0;
    for (const CheckableList* list : lists_) pending += list->PendingCount();
    return pending;
  }
  // Saves as the window does: a query that opens the session, conflicts, rows, and a new load of
  // the lists that were written.
  void Save() {
    if (!program_.database.OpenRecordset("Select NetFlowPort From FlowEngines")) return;
    for (CheckableList* list : lists_) {
      std::vector<Conflict> conflicts;
      if (!list->NeedsConflictCheck()) continue;
      if (!list->FindConflicts(conflicts)) {
        EXPECT_NE(list->ConflictError(), "");
        return;
      }
      list->Resolve(conflicts, ConflictAnswer::kOverwrite);
    }
    std::vector<CheckableList*> begun;
    try {
      for (CheckableList* list : lists_) {
        begun.push_back(list);
        list->Sync();
      }
    } catch (const std::exception&) {
      EXPECT_THAT(sources_.Failures(), Not(IsEmpty()));
    }
    for (CheckableList* list : begun) list->Reload();
  }
  // The statements that ran on the tables of the lists, in order. What is reassigned depends on
  // queries.
  std::vector<std::string> Written() const {
    std::vector<std::string> written;
    for (const std::string& statement : ran_) {
      const bool reads = statement.starts_with("S");
      const bool reassigns = statement.find("FlowCorrelation") != std::string::npos;
      if (!reads && !reassigns) written.push_back(statement);
    }
    return written;
  }
  std::vector<std::string> Stored() {
    std::vector<std::string> rows;
    for (const char* query :
         {"Select * From ServicePorts", "Select * From IPAddressGroups",
          "Select IPAddressSort, IPAddressGroupID From FlowCorrelation Order By 1",
          "Select * From NetFlowSources", "Select * From GlobalSettings Order By 1"}) {
      for (const std::string& row : program_.suite.Rows(query)) rows.push_back(row);
    }
    return rows;
  }
  // Lets the call of that number, from 1, fail.
  void FailAt(int number) {
    ran_.clear();
    calls_ = 0;
    script_.before = [this, number](const std::string& statement) {
      const bool begun = ++calls_ >= number && number > 0;
      const bool fails = calls_ == number || (begun && GetParam().lasts);
      if (fails && !GetParam().after_the_call) GetParam().happen();
      ran_.push_back(statement);
    };
    script_.after = [this, number] {
      if (calls_ == number && GetParam().after_the_call) GetParam().happen();
    };
  }

  PortList ports_{Services(), [] { return NewPort{8080, "proxy"}; }};
  InterfacesList sources_{Services()};
  const std::vector<CheckableList*> lists_{&ports_, &list_, &sources_};
  std::vector<std::string> ran_;
  int calls_ = 0;
};

TEST_P(EveryFailureTest, WhatASaveCouldNotWriteIsPendingAndTheNextSaveWritesIt) {
  EditAll();
  FailAt(0);
  Save();
  EXPECT_EQ(Pending(), 0);
  const std::vector<std::string> whole = Written();
  const std::vector<std::string> expected = Stored();
  for (int number = 1; calls_ >= number || number < 30; ++number) {
    SCOPED_TRACE("call " + std::to_string(number));
    EditAll();
    FailAt(number);
    Save();
    const std::vector<std::string> first = Written();
    auto place = whole.begin();
    for (const std::string& statement : first) {
      place = std::find(place, whole.end(), statement);
      ASSERT_NE(place, whole.end()) << "not in its order: " << statement;
      ++place;
    }
    for (const PendingRow& row : ports_.Pending()) {
      if (row.name != "443" || row.row == 0) continue;
      const bool stored = std::ranges::count(Stored(), "443|tls|1|1") > 0;
      EXPECT_EQ(row.values.size(), stored ? 0U : 1U) << "what is listed is not what will change";
    }
    const int pending = Pending();
    const int calls = calls_;
    FailAt(0);
    Save();
    EXPECT_EQ(Stored(), expected);
    EXPECT_EQ(Pending(), 0);
    const std::vector<std::string> second = Written();
    EXPECT_EQ(std::ranges::count_if(
                  second, [](const std::string& text) { return !text.starts_with("exec"); }),
              pending)
        << "one statement writes each row that was pending";
    for (const std::string& statement : second) {
      if (!statement.starts_with("Insert")) continue;
      EXPECT_EQ(std::ranges::count(first, statement), 0) << "written twice: " << statement;
    }
    calls_ = calls;
  }
}

TEST_P(EveryFailureTest, ALoadThatFailsShowsNoRowAndTheNextOneShowsAll) {
  for (CheckableList* list : lists_) ASSERT_TRUE(list->Refresh());
  const std::vector<int> rows = {ports_.Table().Rows(), list_.Table().Rows(),
                                 sources_.Table().Rows()};
  for (int number = 1; calls_ >= number || number < 4; ++number) {
    SCOPED_TRACE("call " + std::to_string(number));
    program_.database.CloseMainDatabase();
    FailAt(number);
    for (size_t i = 0; i < lists_.size(); ++i) {
      const bool loaded = lists_[i]->Refresh();
      EXPECT_EQ(lists_[i]->LoadError().empty(), loaded);
      EXPECT_EQ(lists_[i]->Table().Rows(), loaded ? rows[i] : Grid::kFixedRows);
    }
    const int calls = calls_;
    FailAt(0);
    for (size_t i = 0; i < lists_.size(); ++i) {
      EXPECT_TRUE(lists_[i]->Refresh());
      EXPECT_EQ(lists_[i]->Table().Rows(), rows[i]);
    }
    calls_ = calls;
  }
}

INSTANTIATE_TEST_SUITE_P(Faults, EveryFailureTest, testing::ValuesIn(kFaults),
                         testing::PrintToStringParamName());

/// Names of nodes, which runs out of memory at one row of a load.
class ShortOfMemoryList final : public CheckableList {
 public:
  explicit ShortOfMemoryList(const ListServices& services) : CheckableList(kNodes, services) {}

  std::vector<ListCommand> Commands() override { return {}; }
  std::string Key(const Grid& grid, int row) const override {
    return std::string(grid.Text(row, 1));
  }
  std::string RowName(const Grid& grid, int row) const override { return Key(grid, row); }

  int rows_until_failure = 0;

 protected:
  std::string Statement(int /*row*/) const override { return "Select 1"; }
  void OnRowLoaded(ado::Recordset& /*rows*/, Grid& /*grid*/, int /*row*/) override {
    if (--rows_until_failure == 0) throw std::bad_alloc();
  }

 private:
  static constexpr std::array<ListColumn, 2> kColumns = {
      {{"Id", "X", Alignment::kLeft, "NodeID"}, {"Name", "X", Alignment::kLeft, "Caption"}}};
  static constexpr ListDescription kNodes = {.columns = kColumns,
                                             .query = "Select * From Nodes Order By NodeID"};
};

using ShortOfMemoryTest = test::ListTest;

TEST_F(ShortOfMemoryTest, ALoadThatFailsHalfwayShowsNoRowAndKeepsTheEdits) {
  program_.suite.Run("Insert Into Nodes Values (1,'a'), (2,'b'), (3,'c')");
  ShortOfMemoryList list(Services());
  ASSERT_TRUE(list.Refresh());
  list.OnClick(2, 0);
  for (int row = 1; row <= 3; ++row) {
    std::vector<Conflict> conflicts;
    list.rows_until_failure = row;
    EXPECT_FALSE(list.FindConflicts(conflicts));
    EXPECT_EQ(list.ConflictError(), "std::bad_alloc");
    list.rows_until_failure = row;
    EXPECT_FALSE(list.Reload());
    EXPECT_EQ(list.LoadError(), "std::bad_alloc");
    EXPECT_THAT(Rows(list), IsEmpty());
    EXPECT_EQ(list.PendingCount(), 1);
    EXPECT_TRUE(list.FindConflicts(conflicts)) << "it loads the rows first";
    EXPECT_THAT(Rows(list), testing::ElementsAre("x|a|0", "-|b|1", "x|c|0"));
  }
}

}  // namespace
}  // namespace quillan
