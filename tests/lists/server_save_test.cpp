#include <algorithm>
#include <array>
#include <chrono>
#include <set>

#include "lists/interfaces_list.h"
#include "lists/list_fixture.h"
#include "lists/port_list.h"
#include "platform/ado/error.h"
#include "support/delaying_proxy.h"
#include "support/suite_server.h"

namespace quillan {
namespace {

using test::SuiteServer;
using test::TdsServer;
using testing::IsEmpty;

/// The three lists over a SQL Server, by the driver that is installed.
class ServerSaveTest : public test::GroupListTest {
 protected:
  ServerSaveTest() {
    script_.keep_batches = true;
    UsePort(server_.tds().port());
  }

  void UsePort(int port) {
    program_.folder.Write("program/TBKelvora.DB",
                          "CONNECTION=" + SuiteServer::ConnectionStringOf(port) + "\r\n");
  }

  void FillTables() {
    program_.suite.Run(
        "begin; delete from ServicePorts; delete from IPAddressGroups; delete from FlowCorrelation;"
        "delete from NetFlowSources; delete from Interfaces; delete from Nodes;"
        "delete from GlobalSettings; delete from sqlite_sequence;"
        "insert into ServicePorts values (21, 'ftp', 1, 1), (22, 'ssh', 0, 1), (23, 'tel', 0, 1);"
        "insert into IPAddressGroups values (1, 10000000000, 10000000255, 'a', 0, 1),"
        "(2, 10000000128, 10000001255, 'b', 0, 1), (3, 10000002000, 10000002255, 'c', 0, 1);"
        "insert into FlowCorrelation values ('10.0.0.1', 10000000001, null, 1),"
        "('10.0.0.200', 10000000200, null, 2), ('10.0.2.7', 10000002007, null, 3),"
        "('10.0.3.7', 10000003007, null, 0);"
        "insert into Nodes values (1, 'router');"
        "insert into Interfaces values (1, 1, 'eth0'), (2, 1, 'eth1');"
        "insert into NetFlowSources values (1); commit");
  }

  // A change, a deletion and a new row in each list that can have them.
  void EditLists() {
    for (CheckableList* list : lists_) ASSERT_TRUE(list->Refresh()) << list->LoadError();
    new_port_ = NewPort{80, "http"};
    entered_ = NewGroup{"10.0.3.0", "10.0.3.255", "d"};
    for (CheckableList* list : {lists_[0], lists_[1]}) {
      list->OnClick(1, 0);
      list->EditText(2, "renamed");
      Select(*list, {3});
      Press(*list, list == &ports_ ? "cmdDeletePort" : "cmdDeleteGroup");
      Press(*list, list == &ports_ ? "cmdAddPort" : "cmdAddGroup");
    }
    sources_.OnClick(1, 0);
    sources_.OnClick(2, 0);
  }

  // Saves as the dialog does; whether all was saved. `messages` are the failures.
  bool SaveLists(std::string& messages) {
    EXPECT_TRUE(settings_.QueryListenPort());
    std::vector<Conflict> conflicts;
    for (CheckableList* list : lists_) {
      EXPECT_TRUE(!list->NeedsConflictCheck() || list->FindConflicts(conflicts));
    }
    EXPECT_THAT(conflicts, IsEmpty());
    try {
      for (CheckableList* list : lists_) {
        list->Sync();
        for (const SaveFailure& failure : list->Failures()) messages += failure.message + "\n";
      }
    } catch (const ado::Error& error) {
      messages += std::string(error.what()) + "\n";
    }
    int pending = 0;
    for (CheckableList* list : lists_) {
      EXPECT_TRUE(list->Reload()) << list->LoadError();
      pending += list->PendingCount();
    }
    return messages.empty() && pending == 0;
  }

  std::string Tables() {
    std::string text;
    for (const char* table : {"ServicePorts", "IPAddressGroups", "FlowCorrelation",
                              "NetFlowSources", "GlobalSettings"}) {
      for (const std::string& row :
           program_.suite.Rows(std::string("select * from ") + table + " order by 1")) {
        text += row + "\n";
      }
    }
    return text;
  }

  SuiteServer server_{program_.suite.path()};
  std::optional<NewPort> new_port_;
  PortList ports_{Services(), [this] { return new_port_; }};
  InterfacesList sources_{Services()};
  std::array<CheckableList*, 3> lists_ = {&ports_, &list_, &sources_};
};

// Whichever statement fails, or loses the session before or after it ran: it is reported, and a
// second save ends where one without a failure does.
TEST_F(ServerSaveTest, ASecondSaveCompletesWhatAFailureAtAnyStatementLeft) {
  std::string messages;
  FillTables();
  EditLists();
  ASSERT_TRUE(SaveLists(messages)) << messages;
  const std::string saved = Tables();
  for (const SuiteServer::Fault& fault : {SuiteServer::Fault(std::pair(229, "not permitted")),
                                          SuiteServer::Fault(TdsServer::Reset{})}) {
    for (int failing = 1;; ++failing) {
      FillTables();
      EditLists();
      messages.clear();
      int statements = 0;
      std::string failed;
      server_.Before([&](const std::string& statement) -> SuiteServer::Fault {
        if (++statements != failing) return {};
        failed = statement;
        return fault;
      });
      const bool complete = SaveLists(messages);
      server_.Before({});
      if (failed.empty()) {
        EXPECT_GT(failing, 20);
        break;
      }
      const bool query = failed.starts_with("S");
      EXPECT_EQ(complete, query) << failed << ": " << messages;
      messages.clear();
      EXPECT_TRUE(SaveLists(messages)) << failed << ": " << messages;
      EXPECT_EQ(Tables(), saved) << failed;
    }
  }
}

TEST_F(ServerSaveTest, WhatWasWrittenBeforeTheSessionWasLostIsNotWrittenAgain) {
  FillTables();
  for (CheckableList* list : {lists_[0], lists_[2]}) {
    ASSERT_TRUE(list->Refresh());
    for (int row = 1; row < list->Table().Rows(); ++row) list->OnClick(row, 0);
    if (list == &ports_) {
      Select(ports_, {2});
      Press(ports_, "cmdDeletePort");
    }
    const int rows = list->PendingCount();
    int changes = 0;
    server_.Before([&](const std::string& statement) -> SuiteServer::Fault {
      if (statement.starts_with("S") || ++changes != rows) return {};
      return TdsServer::Reset{};
    });
    try {
      list->Sync();
    } catch (const ado::Error& error) {
      EXPECT_TRUE(error.IsConnectionLost()) << error.what();
    }
    EXPECT_FALSE(program_.database.Connected());
    EXPECT_EQ(list->Failures().at(1).message, "The connection to the server was lost.");
    server_.Before({});
    ASSERT_TRUE(list->Reload());
    EXPECT_EQ(list->PendingCount(), 1);
    EXPECT_EQ(list->Failures().front().name, list->Pending().front().name);
    const size_t before = server_.Ran().size();
    list->Sync();
    EXPECT_TRUE(list->Failures().empty());
    const auto ran = server_.Ran();
    const std::set<std::string> once(ran.begin() + static_cast<std::ptrdiff_t>(before), ran.end());
    EXPECT_EQ(once.size(), ran.size() - before);
    EXPECT_EQ(once.size(), list == &ports_ ? 2U : 1U);  // A row, and the setting.
  }
}

TEST_F(ServerSaveTest, ARefusalIsReportedWithTheServersMessage) {
  struct Case {
    const char* statement;  // Refused where it begins so.
    CheckableList* list;
    size_t failures;
    const char* setting;  // What is written all the same.
  };
  const Case cases[] = {
      {"Update ServicePorts", &ports_, 3, "LastServicePortUpdate"},
      {"Update FlowCorrelation", &list_, 3, "LastIPAddressGroupUpdate"},
      {"exec tbsp_", &ports_, 1, nullptr},
      // The first one ends the save.
      {"if not exists", &sources_, 1, nullptr},
  };
  for (const Case& c : cases) {
    FillTables();
    server_.Before({});
    ASSERT_TRUE(c.list->Refresh());
    for (int row = 1; row < c.list->Table().Rows(); ++row) c.list->OnClick(row, 0);
    server_.Before([&](const std::string& statement) -> SuiteServer::Fault {
      if (!statement.starts_with(c.statement)) return {};
      return std::pair(229, "The permission was denied on the object.");
    });
    const auto sync = [&] { c.list->Sync(); };
    if (c.list == &sources_) {
      c.list->Table().Sort(3, SortDirection::kDescending);
      EXPECT_THROW(sync(), ado::Error);
      EXPECT_THAT(program_.suite.Rows("select * from NetFlowSources"), testing::ElementsAre("1"));
    } else {
      sync();
    }
    ASSERT_EQ(c.list->Failures().size(), c.failures) << c.statement;
    EXPECT_EQ(c.list->Failures()[0].message, "The permission was denied on the object.");
    EXPECT_EQ(program_.suite.Rows("select Name from GlobalSettings"),
              c.setting ? std::vector<std::string>{c.setting} : std::vector<std::string>());
    server_.Before([](const std::string&) { return std::pair(229, "SELECT was denied."); });
    EXPECT_FALSE(c.list->Refresh());
    EXPECT_EQ(c.list->LoadError(), "SELECT was denied.");
  }
}

TEST_F(ServerSaveTest, ATextThatIsLongerThanItsColumnStaysInItsRow) {
  FillTables();
  ASSERT_TRUE(ports_.Refresh());
  EXPECT_EQ(ports_.MaxLength(kPortDescriptionColumn), 255);
  ports_.EditText(2, std::string(300, 'x'));
  ports_.OnClick(3, 0);
  EXPECT_EQ(ports_.Sync().written, 1);
  EXPECT_THAT(ports_.Failures().at(0).message, testing::HasSubstr("longer than 255 characters"));
  ASSERT_TRUE(ports_.Reload());
  ASSERT_EQ(ports_.PendingCount(), 1);
  EXPECT_EQ(ports_.Table().Text(2, kPortDescriptionColumn), std::string(300, 'x'));
}

// One row a round trip would take 20 s.
TEST_F(ServerSaveTest, ALongWayToTheServerIsGoneOncePerHundredRows) {
  constexpr auto kRoundTrip = std::chrono::milliseconds(20);
  constexpr int kRows = 1000;
  const test::DelayingProxy proxy(server_.tds().port(), kRoundTrip);
  program_.database.CloseMainDatabase();
  UsePort(proxy.port());
  program_.suite.Run("with recursive n(i) as (select 1 union all select i + 1 from n where i < " +
                     std::to_string(kRows) +
                     ") insert into ServicePorts select i, 'port', 1, 1 from n");
  ASSERT_TRUE(ports_.Refresh());
  std::vector<std::string> sent = server_.tds().statements();
  EXPECT_EQ(std::ranges::count(sent, std::string(ports_.Description().query)), 1);
  const size_t before = sent.size();
  for (int row = 1; row < ports_.Table().Rows(); ++row) ports_.OnClick(row, 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(ports_.Sync().written, kRows);
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(server_.tds().statements().size() - before, kRows / 100 + 1);
  EXPECT_GE(time, (kRows / 100 + 1) * kRoundTrip);
  EXPECT_LE(time, kRows * kRoundTrip * 3 / 10);
}

}  // namespace
}  // namespace quillan
