#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ado/connection.h"
#include "platform/ado/drivers.h"
#include "platform/ado/error.h"
#include "support/sqlite_file.h"
#include "support/temporary_folder.h"

namespace quillan::ado {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// What every driver promises, run against each of them.
class ContractTest : public testing::Test {
 protected:
  ContractTest() : file_(folder_ / "suite.db"), connection_(InstalledDrivers(folder_.path())) {
    connection_.set_connection_string("Provider=SQLite;Data Source=suite.db");
    connection_.set_command_timeout(1);
    connection_.Open();
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

  // The number of the error that `action` throws; fails the test when it throws none.
  template <typename Action>
  static std::int32_t ErrorNumberOf(Action action) {
    try {
      action();
    } catch (const Error& error) {
      EXPECT_STRNE(error.what(), "");
      return error.number();
    }
    ADD_FAILURE() << "no error was thrown";
    return 0;
  }

  test::TemporaryFolder folder_;
  test::SqliteFile file_;
  Connection connection_;
};

TEST_F(ContractTest, RowsComeBackInOrderWithTheirTypesAndNulls) {
  file_.Run(
      "create table Types (i integer, r real, t text, n integer);"
      "insert into Types values (1, 0.5, 'plain', 9007199254740993), (-2, 1e20, 'Zürich ''q'' "
      "日本', "
      "null), (3, null, '', 0)");
  EXPECT_THAT(
      Rows("Select * From Types Order By i"),
      ElementsAre("-2|1E+20|Zürich 'q' 日本|NULL", "1|0.5|plain|9007199254740993", "3|NULL||0"));
  EXPECT_THAT(Rows("Select Top 2 i From Types Order By i"), ElementsAre("-2", "1"));
  EXPECT_THAT(Rows("Select i From Types Where i > 99"), ElementsAre());
}

TEST_F(ContractTest, FieldsAreFoundWithoutRegardToCaseAndOnlyOnARow) {
  const auto rows = connection_.OpenRecordset("Select 7 as Seven", LockType::kReadOnly);
  EXPECT_EQ(ToWhole(rows->Fields("sEVEN").Value()), 7);
  EXPECT_EQ(ErrorNumberOf([&] { rows->Fields("Eight"); }), kUnknownField);
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kReadOnlyRows);
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(ErrorNumberOf([&] { rows->MoveNext(); }), kNoCurrentRow);
  EXPECT_EQ(ErrorNumberOf([&] { rows->Fields("Seven").Value(); }), kNoCurrentRow);
}

TEST_F(ContractTest, StatementsOfTheProgramRun) {
  connection_.Execute("SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED");
  connection_.Execute("Delete From ServicePorts Where Port=1");
  for (const char* value : {"1/2/2026", "1/3/2026"}) {
    connection_.Execute(std::string("exec tbsp_netflowSetGlobalSetting 'LastX', '") + value + "'");
  }
  EXPECT_THAT(Rows("Select * From GlobalSettings"), ElementsAre("LastX|1/3/2026"));

  for (int i = 0; i < 2; ++i) {
    connection_.Execute(
        "if not exists (select * from NetFlowSources where InterfaceID = 5) "
        "insert into NetFlowSources (InterfaceID) values (5)");
  }
  connection_.Execute("insert into Interfaces (InterfaceID, NodeID) values (5, 1)");
  connection_.Execute("insert into Interfaces (InterfaceID, NodeID) values (6, 1)");
  EXPECT_THAT(Rows("SELECT i.InterfaceID, ISNUMERIC(s.InterfaceID ) IsNetFlowSource "
                   "FROM Interfaces i LEFT JOIN NetflowSources s on i.InterfaceID = s.InterfaceID "
                   "Order By i.InterfaceID"),
              ElementsAre("5|1", "6|0"));

  connection_.Execute(
      "Insert Into ServicePorts (Port, ServiceName, System, Enabled) Values (80,N'Größe "
      "''1''',0,1)");
  EXPECT_THAT(Rows("Select ServiceName From ServicePorts Where ServiceName='GRößE ''1'''"),
              ElementsAre("Größe '1'"));
}

TEST_F(ContractTest, AppendsAndWritesBackTheOneRow) {
  const char* query = "Select * From FlowEngines Where ServerName='collector'";
  auto rows = connection_.OpenRecordset(query, LockType::kOptimistic);
  ASSERT_TRUE(rows->Eof());
  rows->AddNew();
  rows->Fields("servername").SetValue("collector");
  rows->Fields("NetFlowPort").SetValue(std::int64_t{2055});
  rows->Update();
  EXPECT_EQ(ToWhole(rows->Fields("NetFlowPort").Value()), 2055);
  file_.Run("insert into FlowEngines values ('other', 1)");

  rows = connection_.OpenRecordset(query, LockType::kOptimistic);
  rows->Fields("NetFlowPort").SetValue(std::int64_t{9996});
  rows->Update();
  EXPECT_EQ(ToWhole(rows->Fields("NetFlowPort").Value()), 9996);
  EXPECT_THAT(Rows("Select * From FlowEngines Order By ServerName"),
              ElementsAre("collector|9996", "other|1"));

  file_.Run("delete from FlowEngines where ServerName='collector'");
  rows->Fields("NetFlowPort").SetValue(std::int64_t{1});
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kRowNotFound);
}

TEST_F(ContractTest, WithoutAKeyAllOriginalValuesFindTheRowAndTwoAreUndone) {
  file_.Run(
      "create table Plain (a text, b integer); insert into Plain values ('x', null), ('y', 2)");
  auto rows = connection_.OpenRecordset("Select * From Plain Where a='x'", LockType::kOptimistic);
  rows->Fields("b").SetValue(std::int64_t{1});
  rows->Update();
  EXPECT_THAT(Rows("Select * From Plain"), ElementsAre("x|1", "y|2"));

  file_.Run("insert into Plain values ('y', 2)");
  rows = connection_.OpenRecordset("Select * From Plain Where a='y'", LockType::kOptimistic);
  rows->Fields("b").SetValue(std::int64_t{3});
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kRowNotFound);
  EXPECT_THAT(Rows("Select * From Plain Where b=2"), ElementsAre("y|2", "y|2"));
}

TEST_F(ContractTest, AnExpiredTimeOutHasANumberOfItsOwn) {
  const char* endless =
      "with recursive n(i) as (select 1 union all select i + 1 from n) select count(*) from n";
  EXPECT_EQ(ErrorNumberOf([&] { Rows(endless); }), kTimeoutExpired);
  EXPECT_EQ(ErrorNumberOf([&] { Rows("Select * From Missing"); }), 1);
  EXPECT_THAT(Rows("Select 1"), ElementsAre("1"));
}

TEST_F(ContractTest, AClosedOrMissingDatabaseSaysSo) {
  const auto rows = connection_.OpenRecordset("Select * From Nodes", LockType::kOptimistic);
  connection_.Close();
  EXPECT_EQ(connection_.state(), ConnectionState::kClosed);
  EXPECT_EQ(ErrorNumberOf([&] { connection_.Execute("Select 1"); }), kObjectClosed);
  rows->AddNew();
  rows->Fields("Caption").SetValue("x");
  EXPECT_EQ(ErrorNumberOf([&] { rows->Update(); }), kObjectClosed);

  folder_.Write("text.db", "this is no database, however long it goes on and on and on and on");
  const std::pair<const char*, const char*> refused[] = {
      {"Provider=SQLite;Data Source=gone.db", "does not exist"},
      {"Provider=SQLite;Data Source=text.db", "not a database"},
      {"Provider=SQLite", "names no database file"},
      {"Provider=Elsewhere;Data Source=x", "\"Elsewhere\""},
      {"Provider=SQLite;nonsense", "no \"=\""},
      {"Provider='SQLite", "does not end"},
  };
  for (const auto& [text, reason] : refused) {
    connection_.set_connection_string(text);
    try {
      connection_.Open();
      ADD_FAILURE() << text;
    } catch (const Error& error) {
      EXPECT_THAT(error.what(), HasSubstr(reason));
    }
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "gone.db"));
}

TEST_F(ContractTest, AFileThatIsTakenAwayIsNoticed) {
  std::filesystem::rename(folder_ / "suite.db", folder_ / "away.db");
  EXPECT_THROW(connection_.Execute("Delete From Nodes"), Error);
  EXPECT_THROW(Rows("Select * From Nodes"), Error);
}

}  // namespace
}  // namespace quillan::ado
