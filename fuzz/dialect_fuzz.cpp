// The dialect of the embedded database: a literal is the same literal after the translation, proved
// by SQLite itself.

#include <sqlite3.h>

#include "fuzz/fuzz.h"
#include "platform/ado/sqlite_dialect.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

std::string Literal(std::string_view text) {
  return "'" + text::ReplaceAll(std::string(text), "'", "''") + "'";
}

class Database {
 public:
  Database() {
    sqlite3_open(":memory:", &database_);
    Run("create table t (a text, b text)");
    Run("create table GlobalSettings (Name text primary key, Value text)");
  }
  ~Database() { sqlite3_close(database_); }

  // The columns of all rows, one after the other, each followed by ";".
  std::string Run(const std::string& statement) {
    const char* rest = statement.c_str();
    std::string values;
    while (*rest != '\0') {
      sqlite3_stmt* prepared = nullptr;
      const int status = sqlite3_prepare_v2(database_, rest, -1, &prepared, &rest);
      fuzz::ExpectSame(status == SQLITE_OK ? std::string() : sqlite3_errmsg(database_),
                       std::string(), statement.c_str());
      while (sqlite3_step(prepared) == SQLITE_ROW) {
        for (int i = 0; i < sqlite3_column_count(prepared); ++i) {
          values.append(reinterpret_cast<const char*>(sqlite3_column_text(prepared, i)),
                        static_cast<std::size_t>(sqlite3_column_bytes(prepared, i)));
          values += ';';
        }
      }
      sqlite3_finalize(prepared);
    }
    return values;
  }

 private:
  sqlite3* database_ = nullptr;
};

void Check(const std::string& a, const std::string& b) {
  static Database database;
  database.Run("delete from t; delete from GlobalSettings");
  const auto run = [](const std::string& statement) {
    return database.Run(TranslateToSqlite(statement));
  };
  const std::string insert = "if not exists (Select * From t Where a=" + Literal(a) +
                             ") Insert Into t (a, b) Values (N" + Literal(a) + ", N" + Literal(b) +
                             ")";
  run(insert);
  run(insert);
  fuzz::ExpectSame(run("Select a, b From t"), a + ";" + b + ";", "inserted once");
  run("Update t Set a=N" + Literal(b) + ", b=" + Literal(a) + " Where a=" + Literal(a));
  fuzz::ExpectSame(run("Select Top 1 a, b, " + Literal(a + b) + " From t Where a=" + Literal(b)),
                   b + ";" + a + ";" + a + b + ";", "updated and selected");
  run("exec tbsp_netflowSetGlobalSetting " + Literal(a) + ", N" + Literal(b));
  fuzz::ExpectSame(run("Select Name, Value From GlobalSettings"), a + ";" + b + ";", "a setting");
  const std::string numeric = run("Select ISNUMERIC(" + Literal(a) + ")");
  fuzz::Expect(numeric == "0;" || numeric == "1;", "isnumeric() is 0 or 1");
}

}  // namespace
}  // namespace quillan::ado

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillan::fuzz::Input input(data, size);
  (void)quillan::ado::TranslateToSqlite(input.Rest());
  const std::string a(input.Piece());
  const std::string b(input.Rest());
  // A C string ends at a NUL; none gets into a statement.
  if ((a + b).find('\0') == std::string::npos) quillan::ado::Check(a, b);
  return 0;
}
