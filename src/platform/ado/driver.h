#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/error.h"
#include "platform/ado/row_store.h"
#include "platform/ado/value.h"

namespace quillan::ado {

/// What a driver is told when a session is opened. Time-outs in seconds; 0 waits without limit.
struct ConnectOptions {
  std::string connection_string;
  int connection_timeout = 0;
  int command_timeout = 0;
  /// The name under which the server lists the session, unless the connection string has one.
  std::string application;
};

/// How one statement of a batch ended: nothing after a success, else its error.
using Outcome = std::optional<Error>;

enum class BatchMode {
  kRunAll,         ///< A failed statement is followed by the rest.
  kStopAtFailure,  ///< The first failed statement ends the batch.
};

/// Receives some rows of a query; returns whether it wants more.
using BlockHandler = std::function<bool(RowStore rows)>;

/// The rows of a block, at most.
inline constexpr size_t kBlockRows = 10'000;

/// One open session with a database engine; closing is destruction. Every member may throw
/// `ado::Error`. Statements are Transact-SQL in UTF-8; a driver for an engine that speaks another
/// dialect translates them. Calls come one at a time but may come from different threads; `Cancel`
/// may come during another call.
class Driver {
 public:
  virtual ~Driver() = default;

  /// Runs `statement` and discards its rows. Affecting no row is not an error.
  virtual void Execute(std::string_view statement) = 0;

  /// Runs `statements` in order, in as few round trips as the engine allows, and discards their
  /// rows. Returns the outcome of each that ran. The last one is a failure when it ended the call:
  /// with kStopAtFailure any does, else an expired time-out, `Cancel` or a lost connection.
  virtual std::vector<Outcome> ExecuteBatch(std::span<const std::string> statements,
                                            BatchMode mode) = 0;

  /// Runs `query` and returns all its rows; a statement without a result gives no columns.
  virtual RowStore Query(std::string_view query) = 0;

  /// Runs `query` and passes its rows on in blocks of bounded size, where the engine sends them as
  /// they are read; else in one block. A handler that returns false ends the reading.
  virtual void QueryInBlocks(std::string_view query, const BlockHandler& on_block) {
    on_block(Query(query));
  }

  /// Lets the statements that follow read what other sessions have not committed.
  virtual void ReadUncommitted() = 0;

  /// The names of the columns of `table`'s primary key, in key order; empty when it has none.
  virtual std::vector<std::string> PrimaryKey(std::string_view table) = 0;

  /// Runs `statement`, in which every "?" stands for one of `parameters`, in order. Unless it
  /// affects exactly one row it is rolled back and `kRowNotFound` is thrown.
  virtual void ChangeOneRow(std::string_view statement, std::span<const Value> parameters) = 0;

  /// "DBMS Name", "Current Catalog", "Data Source Name" or "Connection Note" (what the user should
  /// know about the security of the connection; mostly empty); any other name throws.
  virtual std::string Property(std::string_view name) = 0;

  /// Makes the call under way, if there is one, fail soon. Safe on any thread.
  virtual void Cancel() = 0;
};

/// Throws when `statement` contains a NUL character, at which an engine would cut it.
void RefuseNul(std::string_view statement);

/// Whether `error` ends a batch in any mode.
bool EndsBatch(const Error& error);

/// Runs `statements` through `Execute`, one after the other: `ExecuteBatch` for engines that gain
/// nothing from sending several at once.
std::vector<Outcome> ExecuteOneByOne(Driver& driver, std::span<const std::string> statements,
                                     BatchMode mode);

/// Opens a session. Throws `ado::Error` with the text for the user when it cannot.
using DriverFactory = std::function<std::unique_ptr<Driver>(const ConnectOptions&)>;

}  // namespace quillan::ado
