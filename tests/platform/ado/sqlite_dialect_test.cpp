#include "platform/ado/sqlite_dialect.h"

#include <gtest/gtest.h>

namespace quillan::ado {
namespace {

TEST(SqliteDialectTest, TranslatesOnlyWhatTheEngineLacks) {
  const std::pair<const char*, const char*> cases[] = {
      {"Select Top 1 * From FlowEngines", "Select  * From FlowEngines limit 1"},
      {"Select a From t Where b='top 1 isnumeric(x)'",
       "Select a From t Where b='top 1 isnumeric(x)'"},
      {"Select [top], top From t", "Select [top], top From t"},
      {"Update t Set a=N'\xC3\xA9''s', b='N''x'", "Update t Set a='\xC3\xA9''s', b='N''x'"},
      {"Select 'a'N'b', N'c'", "Select 'a' 'b', 'c'"},
      {"exec tbsp_netflowSetGlobalSetting 'A', N'1/2/2026'",
       "insert into GlobalSettings (Name, Value) values ('A', '1/2/2026') "
       "on conflict (Name) do update set Value = excluded.Value"},
      {"if not exists (select * from s where i = 7) insert into s (i) values (7)",
       "insert into s (i) select 7 where not exists (select * from s where i = 7)"},
      {"SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED", "pragma read_uncommitted = 1"},
      // What cannot be understood is left for the engine to judge.
      {"exec other_procedure 'a'", "exec other_procedure 'a'"},
      {"if not exists (select 1", "if not exists (select 1"},
      {"select 'open", "select 'open"},
      {"select isnumeric(", "select isnumeric("},
      {"Select Top (1) * From t", "Select Top (1) * From t"},
      {"Select Top 1 * From t; -- one", "Select  * From t limit 1; -- one"},
      {"Select a From (Select Top 1 b From u)", "Select a From (Select Top 1 b From u)"},
      {"SET TRANSACTION ISOLATION LEVEL SNAPSHOT", "SET TRANSACTION ISOLATION LEVEL SNAPSHOT"},
      {"", ""},
  };
  for (const auto& [statement, translated] : cases) {
    EXPECT_EQ(TranslateToSqlite(statement), translated);
  }
}

}  // namespace
}  // namespace quillan::ado
