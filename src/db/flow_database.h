#pragma once

#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection_file.h"
#include "platform/ado/connection.h"
#include "platform/ado/error.h"
#include "platform/files.h"
#include "platform/text/date_time.h"

namespace quillan {

enum class PasswordDisplay { kShown, kHidden };

/// A statement or query that failed.
struct StatementFailure {
  size_t index;  ///< Its position, from 0, among the statements of the report.
  std::string statement;
  ado::Error error;
};

/// The outcome of the statements and queries of one save or load, in the order in which they ran.
struct StatementReport {
  size_t statements = 0;  ///< How many ran, the failed ones included.
  std::vector<StatementFailure> failures;
};

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

  /// Runs `statement` and discards its rows. Raises nothing: a statement that fails, or that finds
  /// the session closed, has no effect and is noted in the report.
  void Execute(std::string_view statement);

  /// Like `Execute`, for a caller that must stop at a failure: throws `ado::Error`.
  void ExecuteChecked(std::string_view statement);

  /// Runs `statements` in order, several to a round trip where the server takes them, and notes
  /// each in the report. Raises nothing. Returns the outcome of each that ran: one that
  /// failed is followed by the rest, but is the last with kStopAtFailure; an expired time-out or
  /// `Cancel` ends the call in any mode, and the caller decides about the rest.
  std::vector<ado::Outcome> ExecuteBatch(std::span<const std::string> statements,
                                         ado::BatchMode mode = ado::BatchMode::kRunAll);

  /// Makes the call under way on another thread, if there is one, fail soon.
  void Cancel() { connection_.Cancel(); }

  /// Starts a new report on the statements and queries that follow. A query that succeeds at its
  /// second attempt counts as one that succeeded; one that affects no row did not fail.
  void BeginReport();

  /// Ends the report under way and returns it.
  StatementReport EndReport();

  /// The report under way; empty when there is none.
  const StatementReport& Report() const { return report_; }

  /// Makes sure that the session is open: reads the connection file and connects when it is not.
  /// False when it cannot, with the reason in `LastError`; the text stays empty where the file
  /// names no connection string.
  bool OpenDatabase();

  void CloseMainDatabase() { connection_.Close(); }

  /// The connection string last read; hidden, with asterisks in the place of each password.
  std::string ConnectionString(PasswordDisplay display) const;

  /// The server's product name; empty when it cannot be read.
  std::string DatabaseEngine() { return Property("DBMS Name"); }

  /// What the user should know about the security of the open connection, and of the connection
  /// file: that everybody can read a password there. Mostly empty.
  std::string ConnectionNote();

  /// Reads the connection file; true when the connection string is then not empty. No file in any
  /// of the four places, one that cannot be read or one with a number out of range sets
  /// `LastError`.
  bool GetDatabaseConnection();

  /// What to do where lines of the connection file that was read end in LF alone, which joins them;
  /// empty where none does.
  const std::string& ConnectionFileAdvice() const { return connection_file_advice_; }

  /// Runs `query` and returns its rows, the first one current, or nothing when it fails. A failure
  /// other than an expired time-out or `Cancel` is tried once more over a fresh session.
  /// kOptimistic rows can be changed and appended. The cursor is client-side: the rows are in
  /// memory once it returns.
  std::unique_ptr<ado::Recordset> OpenRecordset(std::string_view query,
                                                ado::LockType lock_type = ado::LockType::kReadOnly);

  /// Runs `query` and passes its rows on in blocks, so that results of any size take little memory
  /// where the driver sends them as they are read. A handler that returns false ends the reading.
  /// False when the query fails.
  bool ReadInBlocks(std::string_view query,
                    const std::function<bool(ado::Recordset& rows)>& on_block);

  /// "<catalog> on <server> SQL Server", for display; what cannot be read is left out. Empty while
  /// the session is closed.
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
  std::string Property(std::string_view name);
  void NoteFailure(std::string_view statement, const std::exception& failure);

  const Files& files_;
  std::filesystem::path program_folder_;
  ConnectionValues values_;
  ado::Connection connection_;
  std::string last_error_;
  std::int32_t open_error_number_ = 0;
  std::string connection_file_advice_;
  std::filesystem::path connection_file_;  // The one that was read.
  StatementReport report_;
  bool reporting_ = false;
};

}  // namespace quillan
