#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

namespace quillan::test {

/// A database file with the program's tables, seen past the program: tests fill and inspect it
/// here.
class SqliteFile {
 public:
  /// Opens `path`, which gets the tables of data/sqlite/schema.sql if it is new.
  explicit SqliteFile(const std::filesystem::path& path) : path_(path) {
    std::filesystem::create_directories(path.parent_path());
    const bool exists = std::filesystem::exists(path);
    if (sqlite3_open(path.c_str(), &database_) != SQLITE_OK) throw std::runtime_error("no file");
    sqlite3_busy_timeout(database_, 10000);
    std::ostringstream schema;
    if (!exists) schema << std::ifstream(QUILLAN_SOURCE_DIR "/data/sqlite/schema.sql").rdbuf();
    Run(schema.str() + "; pragma synchronous = off");
  }
  ~SqliteFile() { sqlite3_close(database_); }
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;

  const std::filesystem::path& path() const { return path_; }
  sqlite3* handle() const { return database_; }
  std::string ConnectionString() const { return "Provider=SQLite;Data Source=" + path_.string(); }

  /// Runs one or more statements; throws std::runtime_error with the engine's text.
  void Run(std::string_view statements) { Rows(statements); }

  /// The rows of a query, each its columns joined by "|", Null as "NULL".
  std::vector<std::string> Rows(std::string_view query) {
    std::vector<std::string> rows;
    const auto add = [](void* to, int count, char** values, char**) {
      std::string row;
      for (int i = 0; i < count; ++i) {
        row += (i > 0 ? "|" : "") + std::string(values[i] != nullptr ? values[i] : "NULL");
      }
      static_cast<std::vector<std::string>*>(to)->push_back(row);
      return 0;
    };
    if (sqlite3_exec(database_, std::string(query).c_str(), add, &rows, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(database_));
    }
    return rows;
  }

 private:
  std::filesystem::path path_;
  sqlite3* database_ = nullptr;
};

}  // namespace quillan::test
