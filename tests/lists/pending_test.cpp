#include <algorithm>
#include <string>
#include <vector>

#include "lists/list_fixture.h"
#include "lists/port_list.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A window whose user stops a load at once and a save when a statement times out.
class StoppingHost final : public ListHost {
 public:
  bool OnProgress(int done, int total) override {
    progress.push_back(std::to_string(done) + "/" + std::to_string(total));
    return true;
  }
  bool OnRowsRead(size_t done, size_t total) override {
    progress.push_back(std::to_string(done) + "/" + std::to_string(total));
    return false;
  }
  bool OnTimeout(const std::string& message) override {
    timeout = message;
    return false;
  }

  std::vector<std::string> progress;
  std::string timeout;
};

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
  // Lets each statement that contains one of the texts fail.
  void Fail(std::vector<std::string> texts, std::int32_t number = 1) {
    script_.before = [texts = std::move(texts), number](const std::string& statement) {
      for (const std::string& text : texts) {
        if (statement.find(text) != std::string::npos) throw ado::Error(number, "", "refused");
      }
    };
  }
  void Mend() {
    script_.before = [](const std::string&) {};
  }
  void AddPort(int number, const char* name) {
    entered_port_ = NewPort{number, name};
    Press(ports_, "cmdAddPort");
  }
  void AddGroup(const char* start, const char* end, const char* name) {
    entered_ = NewGroup{start, end, name};
    Press(list_, "cmdAddGroup");
  }
  // Toggles port 80, renames 443, deletes 9000, adds 8080.
  void EditPorts() {
    ports_.OnClick(1, 0);
    Edit(ports_, 2, 2, "tls");
    Select(ports_, {3});
    Press(ports_, "cmdDeletePort");
    AddPort(8080, "proxy");
  }
  std::vector<std::string> StoredPorts() {
    return program_.suite.Rows("Select Port, ServiceName, Enabled From ServicePorts Order By 1");
  }

  StoppingHost stopping_;
  std::optional<NewPort> entered_port_;
  PortList ports_{{program_.database, stopping_, messages_, clock_, locale_},
                  [this] { return entered_port_; }};
};

TEST_F(PendingTest, EveryEditIsListedWithItsValuesAndCanBeReverted) {
  int reported = -1;
  ports_.OnPendingChanged([&] { reported = ports_.PendingCount(); });
  const auto loaded = Rows(ports_);
  EditPorts();
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

TEST_F(PendingTest, WhatASaveCouldNotWriteIsStillPendingAndTheNextOneWritesIt) {
  EditPorts();
  Fail({"Port=443", "Insert"});
  const SaveOutcome outcome = ports_.Sync();
  EXPECT_EQ(outcome.written, 2);
  EXPECT_EQ(outcome.failed, 2);
  ASSERT_THAT(ports_.Failures(), SizeIs(2));
  EXPECT_EQ(ports_.Failures()[0].name + ": " + ports_.Failures()[0].message, "443: refused");
  Fail({"Select"});
  std::vector<Conflict> conflicts;
  EXPECT_FALSE(ports_.FindConflicts(conflicts));
  EXPECT_FALSE(ports_.Reload());  // The rows wait while the list cannot be read.
  EXPECT_EQ(ports_.LoadError(), "refused");
  EXPECT_EQ(ports_.PendingCount(), 2);
  Mend();
  EXPECT_TRUE(ports_.Reload());
  EXPECT_THAT(Rows(ports_), ElementsAre("x|80|http|0", "x|443|tls|1", "x|8080|proxy|2"));
  EXPECT_THAT(Pending(ports_)[0], "443 1, Description https>tls");
  EXPECT_THAT(Saved(ports_), SizeIs(3));
  EXPECT_THAT(StoredPorts(), ElementsAre("80|http|1", "443|tls|1", "8080|proxy|1"));
  EXPECT_TRUE(ports_.Reload());
  EXPECT_EQ(ports_.PendingCount(), 0);
}

TEST_F(PendingTest, AStoppedLoadShowsNoneOfTheRows) {
  program_.suite.Run(
      "With n(i) As (Select 10000 Union All Select i+1 From n Where i<20000) "
      "Insert Into ServicePorts Select i,'',0,1 From n");
  StoppingHost host;
  PortList ports({program_.database, host, messages_, clock_, locale_},
                 [] { return std::optional<NewPort>(); });
  EXPECT_FALSE(ports.Refresh());
  EXPECT_EQ(ports.Table().Rows(), Grid::kFixedRows);
  EXPECT_EQ(ports.LoadError(), "The rows were not read: loading was stopped.");
  EXPECT_THAT(host.progress, ElementsAre("8192/10004"));
}

TEST_F(PendingTest, AHalfWrittenGroupIsFinishedByTheNextSave) {
  Select(list_, {2});
  Press(list_, "cmdDeleteGroup");
  Edit(list_, 1, 3, "renamed");
  AddGroup("10.0.2.0", "10.0.2.255", "new");
  Fail({"Update FlowCorrelation"});
  EXPECT_EQ(list_.Sync().failed, 3);
  EXPECT_EQ(list_.Table().Rows(), 0);
  AddGroup("10.0.3.0", "10.0.3.255", "later");  // Before the list is read again.
  EXPECT_EQ(list_.PendingCount(), 4);
  Mend();
  EXPECT_TRUE(list_.Reload());
  // The new group is stored and has its identifier; the deleted one is not stored any more.
  EXPECT_THAT(Rows(list_),
              ElementsAre("x|10.0.0.0|10.0.0.255|renamed|1", "x|10.0.2.0|10.0.2.255|new|1",
                          "|10.0.1.0|10.0.1.255|b|-1", "x|10.0.3.0|10.0.3.255|later|2"));
  const auto statements = Saved(list_);
  EXPECT_EQ(std::ranges::count_if(
                statements, [](const std::string& text) { return text.starts_with("Insert"); }),
            1);
  EXPECT_THAT(program_.suite.Rows("Select IPAddressGroupID From FlowCorrelation Order By 1"),
              ElementsAre("1", "3"));
  EXPECT_TRUE(list_.Reload());
  EXPECT_EQ(list_.PendingCount(), 0);
}

TEST_F(PendingTest, ATimeOutAtWhichTheUserStopsLeavesTheRestPending) {
  EditPorts();
  Fail({"Port=443"}, ado::kTimeoutExpired);
  EXPECT_TRUE(ports_.Sync().stopped);
  EXPECT_EQ(stopping_.timeout, "refused");
  EXPECT_THAT(stopping_.progress, ElementsAre("2/4"));
  Mend();
  EXPECT_TRUE(ports_.Reload());
  EXPECT_THAT(Rows(ports_),
              ElementsAre("x|80|http|0", "x|443|tls|1", "|9000|mine|-1", "x|8080|proxy|2"));
}

TEST_F(PendingTest, SomebodyElsesChangesAreConflictsToBeAnswered) {
  struct Case {
    ConflictAnswer answer;
    std::vector<std::string> ports;
    int pending;
  };
  for (const Case& item : std::initializer_list<Case>{
           {ConflictAnswer::kOverwrite, {"80|http|1", "443|tls|1", "8080|proxy|1"}, 4},
           {ConflictAnswer::kKeepTheirs, {"443|secure|1", "8080|alt|0", "9000|ours|1"}, 0},
           {ConflictAnswer::kCancel, {"443|secure|1", "8080|alt|0", "9000|ours|1"}, 4}}) {
    program_.suite.Run(
        "Delete From ServicePorts;"
        "Insert Into ServicePorts Values (443,'https',1,1), (80,'http',1,0), (9000,'mine',0,1)");
    ports_.Refresh();
    EditPorts();
    std::vector<Conflict> conflicts;
    EXPECT_TRUE(ports_.FindConflicts(conflicts));
    EXPECT_THAT(conflicts, IsEmpty());
    program_.suite.Run(
        "Delete From ServicePorts Where Port=80;"
        "Update ServicePorts Set ServiceName='secure' Where Port=443;"
        "Update ServicePorts Set ServiceName='ours' Where Port=9000;"
        "Insert Into ServicePorts Values (8080,'alt',1,0)");
    EXPECT_TRUE(ports_.FindConflicts(conflicts));
    std::vector<std::string> texts;
    for (const Conflict& conflict : conflicts) {
      texts.push_back(std::to_string(static_cast<int>(conflict.kind)) + " " + conflict.name + ": " +
                      conflict.loaded + " / " + conflict.theirs + " / " + conflict.ours);
    }
    EXPECT_THAT(texts, ElementsAre("1 80: no, http /  / yes, http",
                                   "0 443: yes, https / yes, secure / yes, tls",
                                   "2 8080:  / no, alt / yes, proxy",
                                   "0 9000: yes, mine / yes, ours / to be deleted"));
    ports_.Resolve(conflicts, item.answer);
    EXPECT_EQ(ports_.PendingCount(), item.pending);
    if (item.answer != ConflictAnswer::kCancel) ports_.Sync();
    EXPECT_EQ(StoredPorts(), item.ports);
  }
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
