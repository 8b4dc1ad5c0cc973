#include "support/sqlite_file.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include <sqlite3.h>

namespace quillan::test {

SqliteFile::SqliteFile(const std::filesystem::path& path) : path_(path) {
  std::filesystem::create_directories(path.parent_path());
  if (sqlite3_open(path.c_str(), &database_) != SQLITE_OK) throw std::runtime_error("no database");
  sqlite3_busy_timeout(database_, 10000);
  std::ostringstream schema;
  schema << std::ifstream(QUILLAN_SOURCE_DIR "/data/sqlite/schema.sql").rdbuf();
  Run(schema.str());
}

SqliteFile::~SqliteFile() { sqlite3_close(database_); }

std::string SqliteFile::ConnectionString() const {
  return "Provider=SQLite;Data Source=" + path_.string();
}

void SqliteFile::Run(std::string_view statements) { Rows(statements); }

std::vector<std::string> SqliteFile::Rows(std::string_view query) {
  std::vector<std::string> rows;
  const auto add = [](void* to, int count, char** values, char**) {
    std::string row;
    for (int i = 0; i < count; ++i) {
      row += (i > 0 ? "|" : "") + std::string(values[i] != nullptr ? values[i] : "NULL");
    }
    static_cast<std::vector<std::string>*>(to)->push_back(row);
    return 0;
  };
  char* error = nullptr;
  if (sqlite3_exec(database_, std::string(query).c_str(), add, &rows, &error) != SQLITE_OK) {
    const std::string text = error;
    sqlite3_free(error);
    throw std::runtime_error(text);
  }
  return rows;
}

}  // namespace quillan::test
