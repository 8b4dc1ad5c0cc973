#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "db/connection_file.h"
#include "platform/ado/connection.h"
#include "platform/files.h"
#include "platform/text/date_time.h"

namespace quillan {

enum class PasswordDisplay { kShown, kHidden };

/// The program's one session with the suite's database. It opens itself: a query whose session is
/// closed or lost reads the connection file and connects first. Failures are results with a text in
/// `LastError`, never exceptions, but for `ExecuteChecked`.
class FlowDatabase {
 public:
  /// Looks for the connection file in `program_folder` and its parent; `open_driver` opens
  /// sessions.
  FlowDatabase(const Files& files, std::filesystem::path program_folder,
               ado::DriverFactory open_driver);

  /// Whether the session is open.
  bool Connected() const { return connection_.state() == ado::ConnectionState::kOpen; }

  /// Runs `statement` and discards its rows. Reports nothing: a statement that fails, or that finds
  /// the session closed, has no effect.
  void Execute(std::string_view statement);

  /// Like `Execute`, for a caller that must stop at a failure: throws `ado::Error`.
  void ExecuteChecked(std::string_view statement) { connection_.Execute(statement); }

  /// Makes sure that the session is open: reads the connection file and connects when it is not.
  /// False when it cannot, with the reason in `LastError`; the text stays empty where the file
  /// names no connection string.
  bool OpenDatabase();

  void CloseMainDatabase() { connection_.Close(); }

  /// The connection string last read; hidden, with asterisks for each piece that begins with the
  /// key Password. A password under another key (PWD), or behind a blank, stays.
  std::string ConnectionString(PasswordDisplay display) const;

  /// The server's product name; empty when it cannot be read.
  std::string DatabaseEngine();

  /// Reads the connection file; true when the connection string is then not empty. No file in any
  /// of the four places, one that cannot be read or one with a number out of range sets
  /// `LastError`.
  bool GetDatabaseConnection();

  /// Runs `query` and returns its rows, the first one current, or nothing when it fails. A failure
  /// other than an expired time-out is tried once more over a fresh session. kOptimistic rows can
  /// be changed and appended. The cursor is client-side: the rows are in memory once it returns.
  std::unique_ptr<ado::Recordset> OpenRecordset(std::string_view query,
                                                ado::LockType lock_type = ado::LockType::kReadOnly);

  /// "<catalog> on <server> SQL Server", for display; what cannot be read stays out.
  std::string Location();

  /// The text of the last failure of `OpenDatabase` or `OpenRecordset`; empty after a success.
  const std::string& LastError() const { return last_error_; }

  /// `value` as the decimal text of its days since 1 January 1900, which SQL Server takes for a
  /// date-time ("39232.5" is 1 June 2007 12:00).
  static std::string DateTimeToDBFormat(text::DateTime value);

  /// The names of `table`'s columns, joined by `separator`; empty when the query fails.
  std::string GetFieldList(std::string_view table, std::string_view separator);

  /// Whether a query on `table` succeeds.
  bool TableExists(std::string_view table);

 private:
  const Files& files_;
  std::filesystem::path program_folder_;
  ConnectionValues values_;
  ado::Connection connection_;
  std::string last_error_;
};

}  // namespace quillan
