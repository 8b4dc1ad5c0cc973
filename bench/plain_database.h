#pragma once

#include <array>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

namespace quillan::bench {

/// SQLite used directly, as plain code would, with the settings of the program's own sessions.
/// Failures throw std::runtime_error.
class PlainDatabase {
 public:
  explicit PlainDatabase(const std::filesystem::path& file);
  ~PlainDatabase() { sqlite3_close(database_); }
  PlainDatabase(const PlainDatabase&) = delete;
  PlainDatabase& operator=(const PlainDatabase&) = delete;

  /// Runs one statement to its end.
  void Run(std::string_view statement);

  /// The rows of a query, its first `columns` columns as strings.
  template <std::size_t columns>
  std::vector<std::array<std::string, columns>> Read(std::string_view query) {
    std::vector<std::array<std::string, columns>> rows;
    sqlite3_stmt* statement = Prepare(query);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      auto& row = rows.emplace_back();
      for (std::size_t i = 0; i < columns; ++i) {
        const auto column = static_cast<int>(i);
        if (const unsigned char* text = sqlite3_column_text(statement, column)) {
          row[i].assign(reinterpret_cast<const char*>(text),
                        static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
        }
      }
    }
    Finalize(statement);
    return rows;
  }

 private:
  sqlite3_stmt* Prepare(std::string_view statement);
  void Finalize(sqlite3_stmt* statement);

  sqlite3* database_ = nullptr;
};

}  // namespace quillan::bench
