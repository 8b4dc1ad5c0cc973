#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace quillan::test {

/// A database file with the program's tables, seen past the program: tests fill and inspect it
/// here.
class SqliteFile {
 public:
  /// Creates `path` with the tables of data/sqlite/schema.sql.
  explicit SqliteFile(const std::filesystem::path& path);
  ~SqliteFile();
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// "Provider=SQLite;Data Source=<path>".
  std::string ConnectionString() const;
  /// Runs one or more statements; throws std::runtime_error with the engine's text.
  void Run(std::string_view statements);
  /// The rows of a query, each its columns joined by "|", Null as "NULL".
  std::vector<std::string> Rows(std::string_view query);

 private:
  std::filesystem::path path_;
  sqlite3* database_ = nullptr;
};

}  // namespace quillan::test
