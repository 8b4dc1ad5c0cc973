// Saves and loads of all lists, over the embedded engine and over a SQL Server, by the driver that
// is installed.

#include <algorithm>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "lists/interfaces_list.h"
#include "lists/list_fixture.h"
#include "lists/port_list.h"
#include "support/suite_server.h"

namespace quillan {
namespace {

using test::SuiteServer;
using test::TdsServer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SaveTest : public test::GroupListTest {
 protected:
  void UseServer() {
    server_.emplace(program_.suite.path());
    program_.folder.Write("program/TBKelvora.DB",
                          "CONNECTION=" + server_->ConnectionString() + "\r\n");
    script_.keep_batches = true;
  }
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
  // Toggles every row and saves it.
  static SaveOutcome SaveToggled(CheckableList& list) {
    for (int row = 1; row < list.Table().Rows(); ++row) list.OnClick(row, 0);
    return list.Sync();
  }

  PortList ports_{Services(), [] { return NewPort{8080, "proxy"}; }};
  InterfacesList sources_{Services()};
  std::optional<SuiteServer> server_;
};

TEST_F(SaveTest, GroupsThatSomebodyElseReplacedAreFoundAndNeverNested) {
  Seed();
  ASSERT_TRUE(list_.Refresh());
  Edit(list_, 3, 3, "ours");
  Edit(list_, 4, 3, "ours too");
  // The second one comes back as it was, but is another group.
  program_.suite.Run(
      "Delete From IPAddressGroups Where IPAddressGroupID > 2;"
      "Insert Into IPAddressGroups Values (7,10000001000,10000001127,'theirs',0,1),"
      " (8,10000002000,10000002255,'d',0,0)");
  for (const size_t found : {3U, 1U}) {
    // The first save does not come to the groups, whose rows are sorted then.
    if (found == 1) list_.Table().RequestSort(1);
    std::vector<Conflict> conflicts;
    ASSERT_TRUE(list_.FindConflicts(conflicts));
    EXPECT_EQ(conflicts.size(), found) << "gone, nested if it is inserted again, and changed";
    list_.Resolve(conflicts, ConflictAnswer::kOverwrite);
  }
  const SaveOutcome outcome = list_.Sync();
  EXPECT_EQ(outcome.failed, 1);
  ASSERT_EQ(list_.Failures().size(), 1U);
  EXPECT_EQ(list_.Failures()[0].name, "10.0.1.0 - 10.0.1.255");
  EXPECT_THAT(program_.suite.Rows("Select IPAddressGroupID, IPAddressGroupName From "
                                  "IPAddressGroups Where IPAddressGroupID > 2"),
              ElementsAre("7|theirs", "8|ours too"));
}

/// A way in which a call fails.
struct Fault {
  const char* name;
  void (*happen)();  // In the place of a call of the driver; none: in the server.
  const char* told;
  bool after_the_call = false;
  bool lasts = false;  // Every later call fails too, until the next save.
  SuiteServer::Fault server = {};
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

const Fault kFaults[] = {
    {"Error", [] { throw ado::Error(1, "", "refused"); }, "refused"},
    {"Timeout", [] { throw ado::Error(ado::kTimeoutExpired, "HYT00", "timed out"); }, "timed out"},
    {"Lost", [] { throw ado::Error(0, "08S01", "lost"); }, "lost"},
    {"LostAfterItRan", [] { throw ado::Error(0, "08S01", "lost"); }, "lost", true},
    {"Outage", [] { throw ado::Error(0, "08S01", "lost"); }, "lost", false, true},
    {"Memory", [] { throw std::bad_alloc(); }, "std::bad_alloc"},
    {"ServerError", nullptr, "not permitted", false, false, std::pair(229, "not permitted")},
    {"ServerReset", nullptr, "connection to the server was lost", false, false, TdsServer::Reset{}},
};

/// Any one call of the database fails, in every way in which it can.
class EveryFailureTest : public SaveTest, public testing::WithParamInterface<Fault> {
 protected:
  EveryFailureTest() {
    if (GetParam().happen == nullptr) UseServer();
    Seed();
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
  void Save(const char* told = "") {
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
    for (CheckableList* list : begun) {
      for (const SaveFailure& failure : list->Failures()) {
        EXPECT_THAT(failure.message, HasSubstr(told));
      }
      if (!list->Reload()) continue;
      const std::vector<PendingRow> pending = list->Pending();
      for (const auto& [name, message] : list->Failures()) {
        const auto named = [&failed = name](const PendingRow& row) { return row.name == failed; };
        EXPECT_TRUE(name.starts_with("Last") || std::ranges::any_of(pending, named)) << name;
      }
    }
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
    const Fault& fault = GetParam();
    const auto fails = [this, number, &fault](const std::string& statement) {
      const bool now = ++calls_ == number || (fault.lasts && calls_ > number && number > 0);
      if (!now || fault.after_the_call) ran_.push_back(statement);
      return now;
    };
    if (server_) {
      server_->Before([fails, &fault](const std::string& statement) {
        return fails(statement) ? fault.server : SuiteServer::Fault();
      });
      return;
    }
    script_.before = [fails, &fault](const std::string& statement) {
      if (fails(statement) && !fault.after_the_call) fault.happen();
    };
    script_.after = [this, number, &fault] {
      if (calls_ == number && fault.after_the_call) fault.happen();
    };
  }

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
    Save(GetParam().told);
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
      const bool inserts = statement.starts_with("Insert");
      // A group of which a later statement failed is written again.
      const bool repeats = !inserts && statement.find("IPAddressGroups") != std::string::npos;
      if (repeats || statement.starts_with("exec")) continue;  // Or the time of the last change.
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
      EXPECT_THAT(lists_[i]->LoadError(),
                  testing::Conditional(loaded, IsEmpty(), HasSubstr(GetParam().told)));
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

class ServerSaveTest : public SaveTest {
 protected:
  ServerSaveTest() {
    UseServer();
    Seed();
  }
};

TEST_F(ServerSaveTest, ARefusalIsReportedWithTheServersMessage) {
  const std::pair<int, const char*> refusals[] = {
      {229, "The permission was denied on the object."},
      {208, "Invalid object name."},
      {1105, "The filegroup is full."},
      {1222, "Lock request time out."},
      {3906, "The database is read-only."},
  };
  for (const auto& refusal : refusals) {
    const bool rows = refusal.first != 208;
    const size_t failures = rows ? 3U : 1U;
    server_->Before({});
    ASSERT_TRUE(ports_.Refresh());
    server_->Before([&](const std::string& statement) -> SuiteServer::Fault {
      if (!statement.starts_with(rows ? "Update ServicePorts" : "exec tbsp_")) return {};
      return refusal;
    });
    SaveToggled(ports_);
    ASSERT_EQ(ports_.Failures().size(), failures);
    EXPECT_EQ(ports_.Failures()[0].message, refusal.second);
    // The time of the last change is written though the rows are not.
    EXPECT_EQ(program_.suite.Rows("select * from GlobalSettings").size(), failures == 3 ? 1U : 0U);
    program_.suite.Run("delete from GlobalSettings");
  }
  server_->Before({});
  ASSERT_TRUE(sources_.Refresh());
  sources_.Table().Sort(3, SortDirection::kDescending);
  server_->Before([&](const std::string& statement) -> SuiteServer::Fault {
    if (!statement.starts_with("if not exists")) return {};
    return refusals[0];
  });
  EXPECT_THROW(SaveToggled(sources_), ado::Error) << "the first one ends the save";
  EXPECT_THAT(program_.suite.Rows("select * from NetFlowSources"), ElementsAre("1"));
}

}  // namespace
}  // namespace quillan
