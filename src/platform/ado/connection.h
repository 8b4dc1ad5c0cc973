#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/ado/driver.h"
#include "platform/ado/recordset.h"

namespace quillan::ado {

/// Values as in ADO's ObjectStateEnum.
enum class ConnectionState { kClosed = 0, kOpen = 1 };

/// Values as in ADO's LockTypeEnum.
enum class LockType { kReadOnly = 1, kOptimistic = 3 };

/// A session with a database, opened from its properties and closed on demand; it can be opened
/// again. Cursors are client-side: a recordset holds all its rows in memory.
class Connection {
 public:
  /// `open_driver` makes the driver of each session.
  explicit Connection(DriverFactory open_driver) : open_driver_(std::move(open_driver)) {}

  ConnectionState state() const {
    return driver_ ? ConnectionState::kOpen : ConnectionState::kClosed;
  }

  /// The properties that the next `Open` uses. Time-outs in seconds; 0 or less waits without limit.
  void set_connection_string(std::string_view text) { options_.connection_string = text; }
  void set_connection_timeout(int seconds) { options_.connection_timeout = seconds; }
  void set_command_timeout(int seconds) { options_.command_timeout = seconds; }
  /// The name under which the server lists the session, unless the connection string has one.
  void set_application(std::string_view name) { options_.application = name; }

  /// Opens the session. Throws `Error` when it is open already or cannot be opened.
  void Open();
  /// Closes the session. Open recordsets keep their rows but can no longer be written back. What
  /// needs the session afterwards fails with `reason` as its text.
  void Close(std::string_view reason = {});

  // A failure that says that the connection is lost closes the session.

  /// Sets the isolation level read-uncommitted.
  void ReadUncommitted() { driver().ReadUncommitted(); }
  /// Runs `statement` and discards its rows. Throws `Error`.
  void Execute(std::string_view statement);
  /// Runs `statements` and returns the outcome of each that ran. Throws `Error` when closed.
  std::vector<Outcome> ExecuteBatch(std::span<const std::string> statements, BatchMode mode);
  /// Makes the call under way on another thread, if there is one, fail soon.
  void Cancel() {
    if (driver_) driver_->Cancel();
  }
  /// Runs `query`; the recordset stands on its first row. Throws `Error`.
  std::unique_ptr<Recordset> OpenRecordset(std::string_view query, LockType lock_type);
  /// Runs `query` and passes its rows on in blocks; a handler that returns false ends the reading.
  /// Throws `Error`.
  void QueryInBlocks(std::string_view query, const std::function<bool(Recordset& rows)>& on_block);
  /// `Driver::Property`. Throws `Error`.
  std::string Property(std::string_view name) { return driver().Property(name); }

 private:
  template <typename Call>
  void Run(Call call);
  void NoteLoss(const Error& error);
  Driver& driver() const;

  DriverFactory open_driver_;
  ConnectOptions options_;
  std::shared_ptr<Driver> driver_;
  std::string closed_because_;
};

}  // namespace quillan::ado
