#include "db/flow_database.h"

#include <gmock/gmock.h>

#include <chrono>

#include "db/connection_file.h"
#include "platform/ado/error.h"
#include "support/program_folder.h"

namespace quillan {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class FlowDatabaseTest : public test::ProgramTest {
 protected:
  FlowDatabase& database_ = program_.database;
};

TEST_F(FlowDatabaseTest, FindsTheConnectionFileByNameBeforePlace) {
  std::filesystem::remove(program_.folder / "program/TBKelvora.DB");
  EXPECT_FALSE(database_.OpenDatabase());
  EXPECT_THAT(database_.LastError(), StartsWith("Cannot find TBKelvora.DB or QuillanGUI.DB.\r\n"));
  // From the last place to the first, each wins over those before.
  for (const char* name :
       {"QuillanGUI.DB", "program/QuillanGUI.DB", "TBKelvora.DB", "program/TBKelvora.DB"}) {
    program_.folder.Write(name, std::string("CONNECTION=") + name);
    EXPECT_TRUE(database_.GetDatabaseConnection());
    EXPECT_EQ(database_.ConnectionString(PasswordDisplay::kShown), name);
  }
}

TEST_F(FlowDatabaseTest, ReportsWhyItCannotConnect) {
  program_.folder.Write("program/TBKelvora.DB",
                        "CONNECTION=Provider=SQLite;pAssword=secret;Data Source=gone.db");
  EXPECT_FALSE(database_.OpenDatabase());
  EXPECT_FALSE(database_.Connected());
  EXPECT_THAT(
      database_.LastError(),
      AllOf(StartsWith("Cannot connect to SQL database. Re-run the Installation Wizard.\r\n\r\n"
                       "Provider=SQLite;Password='*********';Data Source=gone.db\r\n\r\nError="),
            testing::EndsWith("gone.db does not exist.")));

  program_.folder.Write("program/TBKelvora.DB", "TIMEOUT=99999999999");
  EXPECT_FALSE(database_.OpenDatabase());
  EXPECT_THAT(database_.LastError(), AllOf(StartsWith("Cannot read "), HasSubstr("99999999999")));
}

TEST_F(FlowDatabaseTest, MasksEveryPasswordAsAWhole) {
  const std::string masked = "Password='*********'";
  const std::pair<std::string, std::string> cases[] = {
      {"a=1;  pAssword = s t ;b=2;", "a=1;  " + masked + ";b=2;"},
      {"Password=\"s;\"\"t\";b=2", masked + ";b=2"},
      {"PWD={s;}}t};Driver={x;y};b", masked + ";Driver={x;y};b"},
      {"Password=s't;b=2;Old Password=3", masked + ";b=2;Old Password=3"},
      {"password;a='Password=s'", "password;a='Password=s'"},
  };
  for (const auto& [text, shown] : cases) {
    program_.folder.Write("program/TBKelvora.DB", "CONNECTION=" + text);
    EXPECT_TRUE(database_.GetDatabaseConnection());
    EXPECT_EQ(database_.ConnectionString(PasswordDisplay::kHidden), shown);
  }
}

TEST_F(FlowDatabaseTest, TriesAFailedQueryOnceMoreOverAFreshSession) {
  EXPECT_EQ(database_.OpenRecordset("Select * From Missing"), nullptr);
  EXPECT_THAT(database_.LastError(), HasSubstr("Missing"));
  EXPECT_EQ(script_.sessions, 2);
  EXPECT_TRUE(database_.Connected());

  script_.before = [lost = false](const std::string& text) mutable {
    if (text == "Select 1") throw ado::Error(ado::kTimeoutExpired, "HYT00", "too slow");
    if (!std::exchange(lost, true)) throw ado::Error(0, "08S01", "lost");
  };
  EXPECT_EQ(database_.OpenRecordset("Select 1"), nullptr);
  EXPECT_EQ(database_.LastError(), "too slow");
  EXPECT_TRUE(database_.Connected());
  EXPECT_EQ(script_.sessions, 2) << "a time-out is final";
  EXPECT_NE(database_.OpenRecordset("Select * From Nodes"), nullptr) << database_.LastError();
  EXPECT_EQ(script_.sessions, 3);
}

TEST_F(FlowDatabaseTest, AReportHasTheOutcomeOfEveryStatementInOrder) {
  script_.before = [](const std::string& text) {
    if (text == "slow") throw ado::Error(ado::kTimeoutExpired, "HYT00", "too slow");
  };
  database_.Execute("Delete From Nodes");
  EXPECT_FALSE(database_.Connected()) << "a statement opens nothing";
  EXPECT_THROW(database_.ExecuteChecked("Delete From Nodes"), ado::Error);
  ASSERT_TRUE(database_.OpenDatabase());
  database_.Execute("not reported");
  EXPECT_EQ(database_.LastError(), "");
  database_.BeginReport();
  database_.Execute("Delete From Nodes");
  database_.Execute("slow");
  EXPECT_THROW(database_.ExecuteChecked("first"), ado::Error);
  EXPECT_EQ(database_.OpenRecordset("Select * From Missing"), nullptr);
  // A time-out ends a batch in any mode; other failures end it only where they are told to.
  const std::string batch[] = {"Insert Into Nodes (NodeID) Values (1)", "second",
                               "Insert Into Nodes (NodeID) Values (2)", "slow", "never reached"};
  EXPECT_EQ(database_.ExecuteBatch(batch).size(), 4U);
  EXPECT_EQ(
      database_.ExecuteBatch(std::span(batch).subspan(1), ado::BatchMode::kStopAtFailure).size(),
      1U);
  EXPECT_EQ(database_.Report().failures.size(), 6U);
  const StatementReport report = database_.EndReport();
  EXPECT_EQ(report.statements, 9U);
  std::string failures;
  for (const StatementFailure& failure : report.failures) {
    failures += std::to_string(failure.index) + " " + failure.statement +
                (failure.error.IsTimeout() ? " (time-out)" : "") + "; ";
    EXPECT_STRNE(failure.error.what(), "");
  }
  EXPECT_EQ(failures,
            "1 slow (time-out); 2 first; 3 Select * From Missing; 5 second; 7 slow (time-out); "
            "8 second; ");
  EXPECT_THAT(program_.suite.Rows("Select NodeID From Nodes"), testing::ElementsAre("1", "2"));
  database_.Execute("not reported");
  EXPECT_EQ(database_.Report().statements, 0U);
}

TEST_F(FlowDatabaseTest, DescribesTheDatabase) {
  EXPECT_EQ(database_.GetFieldList("ServicePorts", ", "), "Port, ServiceName, System, Enabled");
  EXPECT_TRUE(database_.TableExists("Nodes"));
  EXPECT_FALSE(database_.TableExists("Missing"));
  EXPECT_EQ(database_.DatabaseEngine(), "SQLite");
  EXPECT_EQ(database_.Location(), "suite on " + program_.suite.path().string() + " SQL Server");
  // Date-times are days since 1900; this is noon.
  const std::chrono::local_days day{std::chrono::year{2007} / std::chrono::June / 1};
  EXPECT_EQ(FlowDatabase::DateTimeToDBFormat(day + std::chrono::hours{12}), "39232.5");
  // An open session is not opened again, whatever became of its file.
  std::filesystem::remove(program_.folder / "program/TBKelvora.DB");
  EXPECT_TRUE(database_.OpenDatabase());
}

TEST(ConnectionFileTest, ReadsTheKeysItKnows) {
  struct Case {
    const char *what, *text, *connection_string;
    int connection_timeout = 120, command_timeout = 120;
  };
  const Case cases[] = {
      {"blanks and case", "  connection  =  a = b  \r\n", "a = b"},
      {"the first of a key", "CONNECTION=one\rCONNECTION=two\r", "one"},
      {"comments", "#CONNECTION=1\r\n'x=1\r\n//CONNECTION=2\r\n\\\\CONNECTION=3\r\nCONNECTION=4",
       "4"},
      {"LF alone does not end a line", "CONNECTION=a\nTIMEOUT=5\n", "aTIMEOUT=5"},
      {"numbers are read from their start", "TIMEOUT=30 seconds\rCOMMANDTIMEOUT=2.5\rCONNECTION=x",
       "x", 30, 2},
      {"letters are no number", "TIMEOUT=soon\rCOMMANDTIMEOUT=-3.5e0\rCONNECTION=x", "x", 0, -4},
      {"tabs are no blanks", "CONNECTION=\tx\t", "\tx\t"},
      {"other lines", "no entry\r\nOTHER=1\r\n=5\r\n\r\n", "before"},
  };
  for (const Case& test : cases) {
    ConnectionValues values{"before", 120, 120};
    ReadConnectionFile(test.text, values);
    EXPECT_EQ(values.connection_string, test.connection_string) << test.what;
    EXPECT_EQ(values.connection_timeout, test.connection_timeout) << test.what;
    EXPECT_EQ(values.command_timeout, test.command_timeout) << test.what;
  }
  ConnectionValues values;
  EXPECT_THROW(ReadConnectionFile("TIMEOUT=2147483648", values), ConnectionFileError);
  EXPECT_THROW(ReadConnectionFile("COMMANDTIMEOUT=1e400", values), ConnectionFileError);
}

}  // namespace
}  // namespace quillan
