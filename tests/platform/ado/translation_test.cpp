#include <gmock/gmock.h>

#include <array>

#include "platform/ado/error.h"
#include "platform/ado/odbc_connection_string.h"
#include "platform/ado/sqlite_dialect.h"

namespace quillan::ado {
namespace {

using testing::HasSubstr;

constexpr std::string_view kMaker = "ODBC Driver 18 for SQL Server";

std::string Translate(std::string_view text, std::string_view driver) {
  const ConnectionString settings(text);
  return TranslateToOdbc(settings, driver, AddressOf(settings), "Quillan");
}

TEST(OdbcConnectionStringTest, EverySettingIsTranslatedWhateverItIsCalled) {
  for (const char* text :
       {"Provider=SQLOLEDB.1;Persist Security Info=True;Data Source=db;Initial Catalog=Flow Data;"
        "User ID=sa;Password=\"p;\"\"}'=\";Application Name=Collector;Workstation ID=ws;"
        "Use Encryption for Data=True;Trust Server Certificate=yes",
        "provider=MSOLEDBSQL;server = db ;DATABASE=Flow Data;uid=sa;PWD='p;\"}''=';app=Collector;"
        "wsid=ws;encrypt=yes;TrustServerCertificate=1"}) {
    EXPECT_EQ(Translate(text, kMaker),
              "Driver={ODBC Driver 18 for SQL Server};Server={db};Database={Flow Data};UID={sa};"
              "PWD={p;\"}}'=};APP={Collector};WSID={ws};Encrypt=yes;TrustServerCertificate=yes");
    EXPECT_EQ(Translate(text, "FreeTDS"),
              "Driver={FreeTDS};Server={db};Port=1433;TDS_Version=7.4;ClientCharset=UTF-8;"
              "Database={Flow Data};UID={sa};PWD={p;\"}'=};APP={Collector};WSID={ws};"
              "Encryption=require");
  }
  // Without a wish no certificate is needed, and who logs in as himself sends no password.
  EXPECT_EQ(Translate("Data Source=db;Integrated Security=SSPI;User ID=x;Password=y", kMaker),
            "Driver={ODBC Driver 18 for SQL Server};Server={db};Trusted_Connection=Yes;"
            "APP={Quillan};Encrypt=no");
  EXPECT_THAT(Translate("Data Source=db;Application Intent=ReadOnly;MultiSubnetFailover=True;"
                        "Failover Partner=other;Authentication=ActiveDirectoryPassword",
                        kMaker),
              HasSubstr(";ApplicationIntent={ReadOnly};MultiSubnetFailover=Yes;"
                        "Failover_Partner={other};Authentication={ActiveDirectoryPassword};"));
}

TEST(OdbcConnectionStringTest, ServersAreNamedAsEachDriverKnowsThem) {
  const std::array<std::string, 3> cases[] = {
      {"db\\MSSQLSERVER", "{db}", "{db};Port=1433"},
      {"tcp:db , 1450", "{tcp:db,1450}", "{db};Port=1450"},
      {".\\sql,1", "{tcp:localhost,1}", "{localhost};Port=1"},
      {"fe80::1", "{fe80::1}", "{fe80::1};Port=1433"},
  };
  for (const auto& [name, maker, free_tds] : cases) {
    EXPECT_THAT(Translate("Data Source=" + name, kMaker), HasSubstr(";Server=" + maker + ";A"));
    EXPECT_THAT(Translate("Data Source=" + name, "FreeTDS"),
                HasSubstr(";Server=" + free_tds + ";TDS"));
  }
}

TEST(OdbcConnectionStringTest, WhatCannotBeTranslatedIsRefusedWithoutThePassword) {
  const std::pair<const char*, const char*> cases[] = {
      {"Data Source=db,70000", "port \"70000\""},
      {"Data Source=np:\\\\db\\pipe\\sql\\query", "not reached over TCP"},
      {"Data Source=db;Encrypt=maybe", "the value of \"Encrypt\" is neither"},
      {"Data Source=db;Authentication=ActiveDirectoryPassword", "support \"Authentication\""},
      {"Data Source=db;Encrypt=yes;TrustServerCertificate=no", "FreeTDS cannot be told to check"},
      {"Data Source=db;Password=\"sec}ret};\"", "value of PWD"},
      {"Data Source=db;Password='secret", "\"Password\" does not end"},
  };
  for (const auto& [text, reason] : cases) {
    try {
      ADD_FAILURE() << Translate(text, "FreeTDS");
    } catch (const Error& error) {
      EXPECT_THAT(error.what(), HasSubstr(reason));
      EXPECT_THAT(error.what(), testing::Not(HasSubstr("ret")));
    }
  }
}

TEST(OdbcConnectionStringTest, TheNewestDriverIsChosen) {
  const std::vector<std::string> all = {"SQLite3", "FreeTDS", "ODBC Driver 17 for SQL Server",
                                        "ODBC Driver 18 for SQL Server"};
  EXPECT_EQ(SqlServerDriver(all), "ODBC Driver 18 for SQL Server");
  EXPECT_EQ(SqlServerDriver(std::span(all).first(2)), "FreeTDS");
  EXPECT_EQ(SqlServerDriver(std::span(all).first(1)), std::nullopt);
}

TEST(SqliteDialectTest, TranslatesOnlyWhatTheEngineLacks) {
  const std::pair<const char*, const char*> cases[] = {
      {"Select a From t Where b='top 1 isnumeric(x)'",
       "Select a From t Where b='top 1 isnumeric(x)'"},
      {"Update t Set a=N'\xC3\xA9''s', b='N''x'", "Update t Set a='\xC3\xA9''s', b='N''x'"},
      {"Select 'a'N'b', N'c'", "Select 'a' 'b', 'c'"},
      // What cannot be understood is left for the engine to judge.
      {"exec other_procedure 'a'", "exec other_procedure 'a'"},
      {"select 'open", "select 'open"},
      {"Select Top 1 * From t; -- one", "Select  * From t limit 1; -- one"},
      {"Select a From (Select Top 1 b From u)", "Select a From (Select Top 1 b From u)"},
  };
  for (const auto& [statement, translated] : cases) {
    EXPECT_EQ(TranslateToSqlite(statement), translated);
  }
}

}  // namespace
}  // namespace quillan::ado
