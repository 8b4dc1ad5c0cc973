#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ado/connection.h"
#include "platform/ado/drivers.h"
#include "platform/ado/error.h"
#include "platform/ado/tds_server.h"
#include "support/temporary_folder.h"

namespace quillan::ado {
namespace {

using test::TdsReply;
using test::TdsServer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Type = TdsReply::Type;

/// The program's own route to a SQL Server, over a real socket, with a server that plays a script.
class OdbcDriverTest : public testing::Test {
 protected:
  OdbcDriverTest() : connection_(InstalledDrivers(folder_.path())) {}

  void Open(const TdsServer& server) {
    connection_.Close();
    connection_.set_connection_timeout(10);
    connection_.set_command_timeout(1);
    connection_.set_connection_string(
        "Provider=SQLOLEDB.1;Data Source=tcp:127.0.0.1," + std::to_string(server.port()) +
        ";Initial Catalog=Größe;User ID=mönitor;Password=\"p;wört}'=\";Application Name=Flow "
        "Settings;Workstation ID=desk");
    connection_.Open();
  }

  template <typename Action>
  static Error ErrorOf(Action action) {
    try {
      action();
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "no error was thrown";
    return {0, "", ""};
  }

  test::TemporaryFolder folder_;
  Connection connection_;
};

TEST_F(OdbcDriverTest, TheLoginCarriesWhatTheConnectionStringSays) {
  const TdsServer server([](const std::string&) { return TdsReply().Done(0); });
  Open(server);
  const auto logins = server.logins();
  ASSERT_EQ(logins.size(), 1U);
  EXPECT_EQ(logins[0].server, "127.0.0.1");
  EXPECT_EQ(logins[0].database, "Größe");
  EXPECT_EQ(logins[0].user, "mönitor");
  EXPECT_EQ(logins[0].password, "p;wört}'=");
  EXPECT_EQ(logins[0].application, "Flow Settings");
  EXPECT_EQ(logins[0].workstation, "desk");
  EXPECT_THAT(connection_.Property("DBMS Name"), HasSubstr("SQL Server"));
  EXPECT_THAT(connection_.Property("Data Source Name"), HasSubstr("127.0.0.1"));

  connection_.ReadUncommitted();
  EXPECT_THAT(server.statements(), ElementsAre("SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED"));
}

TEST_F(OdbcDriverTest, RowsComeBackWithTheirNullsAndUnicode) {
  const TdsServer server([&](const std::string&) {
    return TdsReply()
        .Info(0, "a message is no error")
        .Done(3, true)  // Touched rows before the rows.
        .Columns({{"Id", Type::kBigInt}, {"Größe", Type::kNVarChar}})
        .Row({std::int64_t{1} << 60, "Zürich 日本 😀"})
        .Row({std::int64_t{-1}, {}})
        .Done(2);
  });
  Open(server);
  const char* query = "Select N'日本 😀' From [Größe]";
  const auto rows = connection_.OpenRecordset(query, LockType::kReadOnly);
  EXPECT_THAT(server.statements(), ElementsAre(query));
  EXPECT_EQ(ToWhole(rows->Fields("Id").Value()), std::int64_t{1} << 60);
  EXPECT_EQ(ToText(rows->Fields("Größe").Value()), "Zürich 日本 😀");
  rows->MoveNext();
  EXPECT_TRUE(IsNull(rows->Fields("Größe").Value()));
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
}

TEST_F(OdbcDriverTest, AnErrorKeepsItsTextAndNumberInWhicheverResultItComes) {
  const TdsServer server([](const std::string& statement) {
    if (statement == "late") return TdsReply().Done(1, true).Error(547, "[dbo] Zürich").Done(0);
    return TdsReply().Info(5701, "Changed context").Error(208, "Invalid object 'Größe'.").Done(0);
  });
  Open(server);
  const Error early = ErrorOf([&] { connection_.OpenRecordset("early", LockType::kReadOnly); });
  EXPECT_STREQ(early.what(), "Invalid object 'Größe'.");
  EXPECT_EQ(early.number(), 208);
  EXPECT_EQ(early.state(), "42S02");
  const Error late = ErrorOf([&] { connection_.Execute("late"); });
  EXPECT_STREQ(late.what(), "[dbo] Zürich");
  EXPECT_EQ(late.number(), 547);
}

TEST_F(OdbcDriverTest, ATimeOutKeepsTheSessionAndADroppedConnectionEndsIt) {
  const TdsServer server([](const std::string& statement) -> TdsServer::Answer {
    if (statement == "slow") return TdsServer::Silence{};
    if (statement == "drop") return TdsServer::HangUp{};
    return TdsReply().Done(0);
  });
  Open(server);
  const Error slow = ErrorOf([&] { connection_.OpenRecordset("slow", LockType::kReadOnly); });
  EXPECT_TRUE(slow.IsTimeout()) << slow.what();
  connection_.Execute("next");
  EXPECT_EQ(server.logins().size(), 1U);
  const Error drop = ErrorOf([&] { connection_.OpenRecordset("drop", LockType::kReadOnly); });
  EXPECT_FALSE(drop.IsTimeout());
  EXPECT_STRNE(drop.what(), "");
  EXPECT_THROW(connection_.Execute("again"), Error);
  Open(server);
  connection_.Execute("fresh");
  EXPECT_THAT(server.statements(), ElementsAre("slow", "next", "drop", "fresh"));
  EXPECT_EQ(server.logins().size(), 2U);
}

TEST_F(OdbcDriverTest, ARefusedLoginSaysWhatTheServerSays) {
  const TdsServer server(
      [](const std::string&) { return TdsReply(); },
      TdsReply().Error(4060, "Cannot open database \"Größe\" requested by the login.").Done(0));
  const Error error = ErrorOf([&] { Open(server); });
  EXPECT_STREQ(error.what(), "Cannot open database \"Größe\" requested by the login.");
  EXPECT_EQ(error.number(), 4060);
  EXPECT_EQ(connection_.state(), ConnectionState::kClosed);
}

TEST_F(OdbcDriverTest, WhatCannotBeOpenedNamesTheCauseButNoPassword) {
  const std::pair<const char*, const char*> refused[] = {
      {"Driver={No Such Driver};Server=x;PWD=secret", "\"No Such Driver\" is not installed"},
      // What OLE DB would take for an open quote is an ordinary character to ODBC.
      {"Driver=No Such Driver;stray;PWD=\"secret", "\"No Such Driver\" is not installed"},
      {"PWD={a;Provider=secret};UID=u;Driver={No Such Driver}", "\"No Such Driver\" is not"},
      {"Server=x;dsn=No Such Source", "Data source name not found"},
      {"Driver={SQLite3};Database=/no/such/folder/x.db", "connect failed"},
      {"Provider=MSOLEDBSQL;Data Source=127.0.0.1,1;Password=secret", "Unable to connect"},
      {"Provider=SQLNCLI11;Data Source=no-such-host.invalid;Password=secret", "nknown host"},
      {"Provider=Elsewhere;Password=secret", "\"Elsewhere\" is unknown. Use SQLite, SQLOLEDB"},
  };
  connection_.set_connection_timeout(5);
  for (const auto& [text, reason] : refused) {
    connection_.set_connection_string(text);
    const Error error = ErrorOf([&] { connection_.Open(); });
    EXPECT_THAT(error.what(), HasSubstr(reason));
    EXPECT_THAT(error.what(), Not(HasSubstr("secret")));
  }
}

}  // namespace
}  // namespace quillan::ado
