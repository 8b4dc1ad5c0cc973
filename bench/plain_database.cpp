#include "bench/plain_database.h"

namespace quillan::bench {

PlainDatabase::PlainDatabase(const std::filesystem::path& file) {
  if (sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    throw std::runtime_error("no database " + file.string());
  }
  sqlite3_busy_timeout(database_, 10000);
  Run("pragma synchronous = normal");
}

void PlainDatabase::Run(std::string_view statement) {
  sqlite3_stmt* prepared = Prepare(statement);
  while (sqlite3_step(prepared) == SQLITE_ROW) {
  }
  Finalize(prepared);
}

sqlite3_stmt* PlainDatabase::Prepare(std::string_view statement) {
  sqlite3_stmt* prepared = nullptr;
  if (sqlite3_prepare_v2(database_, statement.data(), static_cast<int>(statement.size()), &prepared,
                         nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(database_));
  }
  return prepared;
}

void PlainDatabase::Finalize(sqlite3_stmt* statement) {
  if (sqlite3_finalize(statement) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_));
}

}  // namespace quillan::bench
