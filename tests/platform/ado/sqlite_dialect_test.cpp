#include "platform/ado/sqlite_dialect.h"

#include <gtest/gtest.h>

namespace quillan::ado {
namespace {

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
