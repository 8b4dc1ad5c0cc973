#include <gmock/gmock.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string_view>
#include <thread>

#include "db/connection_file.h"
#include "platform/ado/connection.h"
#include "platform/ado/drivers.h"
#include "platform/ado/error.h"
#include "platform/ado/sqlite_dialect.h"
#include "support/sqlite_file.h"
#include "support/suite_server.h"
#include "support/temporary_folder.h"

namespace quillan::ado {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view kEmbedded = "Embedded", kSqliteOverOdbc = "SqliteOverOdbc",
                           kSqliteOverTds = "SqliteOverTds", kSqlServer = "SqlServer";

/// What every driver promises, run against each of them, and against FreeTDS with a server of the
/// tests. A SQL Server takes part where the environment variable QUILLAN_TEST_CONNECTION_FILE names
/// a connection file whose login may create databases: every test makes one of its own there and
/// drops it again.
class ContractTest : public testing::TestWithParam<std::string_view> {
 protected:
  ContractTest() : connection_(InstalledDrivers(folder_.path())) {}

  void SetUp() override {
    connection_.set_command_timeout(1);
    if (GetParam() == kSqlServer) {
      OpenServer();
      return;
    }
    file_.emplace(folder_ / "süite.db");
    if (GetParam() == kSqliteOverTds) server_.emplace(file_->path());
    connection_.set_connection_string(server_ ? server_->ConnectionString()
                                      : GetParam() == kSqliteOverOdbc
                                          ? "Driver={SQLite3};Database=" + file_->path().string()
                                          : "Provider=SQLite;Data Source=süite.db");
    connection_.Open();
  }

  void TearDown() override {
    if (scratch_.empty()) return;
    connection_.Execute("use master");
    connection_.Execute("drop database " + scratch_);
  }

  void OpenServer() {
    const char* const name = std::getenv("QUILLAN_TEST_CONNECTION_FILE");
    if (name == nullptr) GTEST_SKIP() << "QUILLAN_TEST_CONNECTION_FILE names no SQL Server";
    std::ostringstream file;
    file << std::ifstream(name).rdbuf();
    ConnectionValues values;
    ReadConnectionFile(file.str(), values);
    connection_.set_connection_string(values.connection_string);
    connection_.set_command_timeout(60);
    connection_.Open();
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    scratch_ = "quillan_" + test.substr(0, test.find('/')) + "_" + std::to_string(getpid());
    connection_.Execute("create database " + scratch_);
    connection_.Execute("use " + scratch_);
    std::ostringstream schema;
    schema << std::ifstream(QUILLAN_SOURCE_DIR "/data/sqlserver/schema.sql").rdbuf();
    connection_.Execute(schema.str());
  }

  // Changes the database past the connection that is tested, where there is a way past it.
  void Prepare(std::string_view statements) {
    if (file_) {
      file_->Run(TranslateToSqlite(statements));
    } else {
      connection_.Execute(statements);
    }
  }

  // The rows of `query`, each its values joined by "|".
  std::vector<std::string> Rows(std::string_view query) {
    std::vector<std::string> result;
    const auto rows = connection_.OpenRecordset(query, LockType::kReadOnly);
    for (; !rows->Eof(); rows->MoveNext()) {
      std::string line;
      for (const std::string& name : rows->FieldNames()) {
        const Value value = rows->Fields(name).Value();
        line += (line.empty() ? "" : "|") + (IsNull(value) ? "NULL" : ToText(value));
      }
      result.push_back(line);
    }
    return result;
  }

  // The number of the error that `action` throws; fails the test when it throws none. Its text
  // becomes `error_text_`.
  template <typename Action>
  std::int32_t ErrorNumberOf(Action action) {
    try {
      action();
    } catch (const Error& error) {
      error_text_ = error.what();
      EXPECT_NE(error_text_, "");
      return error.number();
    }
    ADD_FAILURE() << "no error was thrown";
    return 0;
  }

  test::TemporaryFolder folder_;
  std::optional<test::SqliteFile> file_;
  std::optional<test::SuiteServer> server_;
  std::string scratch_;
  std::string error_text_;
  Connection connection_;
};

TEST_P(ContractTest, RowsComeBackInOrderWithTheirTypesAndNulls) {
  Prepare(
      "create table Types (i int, r float, t nvarchar(40), n bigint, b bit, s smallint,"
      " d decimal(9, 2), long ntext, last int);"
      "insert into Types values (1, 0.5, N'plain', 9007199254740993, 1, -7, 1.25, N'長い', 1);"
      "insert into Types values (-2, 1e20, N'Zürich ''q'' 日本 😀', null, 0, null, null, null, 2);"
      "insert into Types values (3, null, N'', 0, null, 0, 0, N'', null)");
  EXPECT_THAT(
      Rows("Select * From Types Order By i"),
      ElementsAre("-2|1E+20|Zürich 'q' 日本 😀|NULL|0|NULL|NULL|NULL|2",
                  "1|0.5|plain|9007199254740993|1|-7|1.25|長い|1", "3|NULL||0|NULL|0|0||NULL"));
  EXPECT_THAT(Rows("Select Top 1 i as [Größe] From Types Where t=N'Zürich ''q'' 日本 😀'"),
              ElementsAre("-2"));
  auto rows = connection_.OpenRecordset("Select 7 as Seven", LockType::kReadOnly);
  EXPECT_EQ(ToWhole(rows->Fields("sEVEN").Value()), 7);
  EXPECT_EQ(ErrorNumberOf([&] { rows->Fields("Eight"); }), kUnknownField);
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kReadOnlyRows);
  rows->MoveNext();
  EXPECT_EQ(ErrorNumberOf([&] { rows->MoveNext(); }), kNoCurrentRow);
  EXPECT_EQ(ErrorNumberOf([&] { rows->Fields("Seven").Value(); }), kNoCurrentRow);
  rows = connection_.OpenRecordset("Select * From ServicePorts", LockType::kReadOnly);
  EXPECT_EQ(rows->ColumnSize("ServiceName"), 255U);
  EXPECT_EQ(rows->ColumnSize("Port"), 0U);
  EXPECT_NE(ErrorNumberOf([&] {
              connection_.Execute("Insert Into ServicePorts (Port, ServiceName) Values (1, N'" +
                                  std::string(256, 'x') + "')");
            }),
            0);
}

TEST_P(ContractTest, ManyRowsOfAnyLengthComeBackWhole) {
  // More rows than a driver reads at once, among them a text that outgrows any buffer.
  Prepare("create table Long (n int, u ntext)");
  std::vector<std::string> expected;
  for (int n = 0; n < 2500;) {
    std::string values;
    for (const int end = n + 500; n < end; ++n) {
      const std::string text = n % 1000 == 999 ? std::string(20000, 'y') + "é" : "é";
      values += (values.empty() ? "(" : ",(") + std::to_string(n) + ",N'" + text + "')";
      expected.push_back(std::to_string(n) + "|" + text);
    }
    Prepare("insert into Long values " + values);
  }
  EXPECT_EQ(Rows("Select * From Long Order By n"), expected);
}

TEST_P(ContractTest, AppendsAndWritesBackTheOneRow) {
  const auto open = [&](const char* query) {
    return connection_.OpenRecordset(query, LockType::kOptimistic);
  };
  const char* query = "Select * From FlowEngines Where ServerName='collector'";
  auto rows = open(query);
  ASSERT_TRUE(rows->Eof());
  rows->AddNew();
  rows->Fields("servername").SetValue("collector");
  rows->Fields("NetFlowPort").SetValue(std::int64_t{2055});
  rows->Update();
  EXPECT_EQ(ToWhole(rows->Fields("NetFlowPort").Value()), 2055);
  Prepare("insert into FlowEngines values ('other', 1)");

  rows = open(query);
  rows->Fields("NetFlowPort").SetValue(std::int64_t{9996});
  rows->Update();
  EXPECT_THAT(Rows("Select * From FlowEngines Order By ServerName"),
              ElementsAre("collector|9996", "other|1"));

  Prepare("delete from FlowEngines where ServerName='collector'");
  rows->Fields("NetFlowPort").SetValue(std::int64_t{1});
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kRowNotFound);

  // Without a key all original values find the row, and a change of two is undone.
  Prepare(
      "create table Plain (a nvarchar(9), b int);"
      "insert into Plain values ('x', null), ('y', 2), ('z', 2), ('z', 2)");
  rows = open("Select * From Plain Where a='x'");
  rows->Fields("b").SetValue(std::int64_t{1});
  rows->Update();
  rows = open("Select * From Plain Where a='z'");
  rows->Fields("b").SetValue(std::int64_t{3});
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kRowNotFound);
  EXPECT_THAT(Rows("Select * From Plain Order By a"), ElementsAre("x|1", "y|2", "z|2", "z|2"));
}

TEST_P(ContractTest, AnExpiredTimeOutHasANumberOfItsOwn) {
  if (GetParam() == kSqliteOverOdbc || server_) {
    GTEST_SKIP() << "SQLite's ODBC driver keeps no time-out; OdbcDriverTest has a silent server";
  }
  connection_.Close();
  connection_.set_command_timeout(1);
  connection_.Open();
  const char* endless = GetParam() == kSqlServer
                            ? "waitfor delay '00:01'"
                            : "with recursive n(i) as (select 1 union all select i + 1 from n) "
                              "select count(*) from n";
  EXPECT_EQ(ErrorNumberOf([&] { Rows(endless); }), kTimeoutExpired);
  EXPECT_THAT(Rows("Select 1"), ElementsAre("1"));
}

TEST_P(ContractTest, AFailureHasTheEnginesNumberAndLeavesTheSessionUsable) {
  const bool tds = GetParam() == kSqlServer || GetParam() == kSqliteOverTds;
  const std::int32_t missing = tds ? 208 : 1;
  EXPECT_EQ(ErrorNumberOf([&] { connection_.Execute("Delete From Mißing"); }), missing);
  EXPECT_THAT(error_text_, testing::AllOf(HasSubstr("Mißing"), testing::Not(HasSubstr("["))));
  EXPECT_EQ(ErrorNumberOf([&] { Rows("Select * From Mißing"); }), missing);
  EXPECT_EQ(ErrorNumberOf([&] { connection_.Execute(std::string("Select '\0'", 10)); }), 0);
  // What touches no row is none.
  connection_.Execute("Update Nodes Set Caption='x' Where NodeID=-1");
  for (const std::string value : {"1/2/2026", "1/3/2026"}) {
    connection_.Execute("exec tbsp_netflowSetGlobalSetting 'LastX', '" + value + "'");
  }
  EXPECT_THAT(Rows("Select * From GlobalSettings"), ElementsAre("LastX|1/3/2026"));
}

INSTANTIATE_TEST_SUITE_P(Drivers, ContractTest,
                         testing::Values(kEmbedded, kSqliteOverOdbc, kSqliteOverTds, kSqlServer),
                         [](const auto& engine) { return std::string(engine.param); });

/// What holds for the embedded engine alone.
class EmbeddedTest : public ContractTest {};

INSTANTIATE_TEST_SUITE_P(Drivers, EmbeddedTest, testing::Values(kEmbedded));

TEST_P(EmbeddedTest, AClosedOrMissingDatabaseSaysSo) {
  const auto rows = connection_.OpenRecordset("Select * From Nodes", LockType::kOptimistic);
  connection_.Close();
  EXPECT_EQ(connection_.state(), ConnectionState::kClosed);
  EXPECT_EQ(ErrorNumberOf([&] { connection_.Execute("Select 1"); }), kObjectClosed);
  rows->AddNew();
  rows->Fields("Caption").SetValue("x");
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kObjectClosed);

  folder_.Write("text.db", "this is no database, however long it goes on and on and on and on");
  for (const auto& [text, reason] :
       {std::pair("Provider=SQLite;Data Source=gone.db", "does not exist"),
        {"Provider=SQLite;Data Source=text.db", "not a database"},
        {"Provider=SQLite", "names no database file"}}) {
    connection_.set_connection_string(text);
    ErrorNumberOf([&] { connection_.Open(); });
    EXPECT_THAT(error_text_, HasSubstr(reason));
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "gone.db"));
}

TEST_P(EmbeddedTest, OpeningWaitsForTheConnectionTimeOutAlone) {
  connection_.Close();
  file_->Run("pragma journal_mode = delete; begin exclusive");
  connection_.set_command_timeout(0);
  connection_.set_connection_timeout(1);
  EXPECT_EQ(ErrorNumberOf([&] { connection_.Open(); }), kTimeoutExpired);
  file_->Run("rollback");
  // Without a write-ahead log only a full synchronisation survives a power failure.
  for (const auto& [mode, level] : {std::pair("delete", "2"), {"wal", "1"}}) {
    file_->Run(std::string("pragma journal_mode = ") + mode);
    connection_.Open();
    EXPECT_THAT(Rows("pragma synchronous"), ElementsAre(level));
    connection_.Close();
  }
}

TEST_P(EmbeddedTest, ACallCanBeCancelledFromAnotherThread) {
  connection_.Close();
  connection_.set_command_timeout(60);
  connection_.Open();
  file_->Run("begin immediate");
  std::atomic<bool> done = false;
  std::thread canceller([&] {
    for (; !done; std::this_thread::yield()) connection_.Cancel();
  });
  // Waits for the other writer; WorkerDriverTest cancels an endless query.
  EXPECT_NE(ErrorNumberOf([&] { connection_.Execute("Delete From Nodes"); }), kTimeoutExpired);
  done = true;
  canceller.join();
  connection_.Execute("Select 1");
}

}  // namespace
}  // namespace quillan::ado
