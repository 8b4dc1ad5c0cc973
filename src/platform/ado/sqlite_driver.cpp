#include "platform/ado/sqlite_driver.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <system_error>

#include <sqlite3.h>

#include "platform/ado/error.h"
#include "platform/ado/sqlite_dialect.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

using SteadyClock = std::chrono::steady_clock;

// How many of the engine's operations pass between two looks at the clock: well under a
// millisecond.
constexpr int kOperationsBetweenChecks = 10000;

// How long the result of a check of the database file is used.
constexpr auto kCheckEvery = std::chrono::milliseconds(1);

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

void AddColumn(sqlite3_stmt* statement, int column, RowStore& rows) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
      rows.AddWhole(sqlite3_column_int64(statement, column));
      break;
    case SQLITE_FLOAT:
      rows.AddReal(sqlite3_column_double(statement, column));
      break;
    case SQLITE_NULL:
      rows.AddNull();
      break;
    default: {
      // A blob is handed on as its bytes; no table of the suite holds one.
      const void* bytes = sqlite3_column_blob(statement, column);
      const auto size = static_cast<size_t>(sqlite3_column_bytes(statement, column));
      rows.AddText({static_cast<const char*>(bytes), bytes != nullptr ? size : 0});
    }
  }
}

// The most characters of a text column that was declared as NVARCHAR(255) or the like; else 0.
size_t DeclaredLength(const char* type) {
  const std::string_view declared = type != nullptr ? type : "";
  const size_t open = declared.find('(');
  if (open == std::string_view::npos ||
      text::ToUpperAscii(declared.substr(0, open)).find("CHAR") == std::string::npos) {
    return 0;
  }
  size_t length = 0;
  std::from_chars(declared.data() + open + 1, declared.data() + declared.size(), length);
  return length;
}

class SqliteDriver final : public Driver {
 public:
  SqliteDriver(Database database, std::filesystem::path file, const ConnectOptions& options)
      : database_(std::move(database)),
        file_(std::move(file)),
        timeout_(options.connection_timeout) {
    sqlite3_busy_handler(database_.get(), &WaitForWriter, this);
    sqlite3_progress_handler(database_.get(), kOperationsBetweenChecks, &MustStop, this);
    try {
      Open();
    } catch (const Error& error) {
      if (!error.IsTimeout()) throw;
      throw Error(kTimeoutExpired, error.state(),
                  "The database file " + file_.string() + " is locked by another program.");
    }
    timeout_ = std::chrono::seconds(options.command_timeout);
  }

  void Execute(std::string_view statement) override {
    // Checking the file before each of thousands of statements would slow a save down.
    if (SteadyClock::now() >= next_check_) CheckFile();
    Run(TranslateToSqlite(statement));
  }

  std::vector<Outcome> ExecuteBatch(std::span<const std::string> statements,
                                    BatchMode mode) override {
    return ExecuteOneByOne(*this, statements, mode);
  }

  RowStore Query(std::string_view query) override {
    RowStore all({});
    ReadRows(query, std::numeric_limits<size_t>::max(), [&](RowStore rows) {
      all = std::move(rows);
      return true;
    });
    return all;
  }

  void QueryInBlocks(std::string_view query, const BlockHandler& on_block) override {
    ReadRows(query, kBlockRows, on_block);
  }

  // Other sessions' uncommitted changes are out of reach in the write-ahead log; the pragma keeps
  // the request for engines that share a cache.
  void ReadUncommitted() override { Run("pragma read_uncommitted = 1"); }

  std::vector<std::string> PrimaryKey(std::string_view table) override {
    StartTimer();
    const Statement statement =
        Prepare("select name from pragma_table_info(?) where pk > 0 order by pk", nullptr);
    Bind(statement.get(), 1, text::ReplaceAll(text::ReplaceAll(table, "[", ""), "]", ""));
    std::vector<std::string> columns;
    while (Step(statement.get())) {
      columns.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0)));
    }
    return columns;
  }

  void ChangeOneRow(std::string_view text, std::span<const Value> parameters) override {
    CheckFile();
    Run("begin immediate");
    try {
      const Statement statement = Prepare(text, nullptr);
      for (size_t i = 0; i < parameters.size(); ++i) {
        BindValue(statement.get(), static_cast<int>(i + 1), parameters[i]);
      }
      while (Step(statement.get())) {
      }
      const int changed = sqlite3_changes(database_.get());
      if (changed != 1) {
        throw Error(kRowNotFound, "",
                    "The row cannot be written: " + std::to_string(changed) +
                        " rows match it. It was changed or deleted since it was read.");
      }
      Run("commit");
    } catch (...) {
      // Some failures have rolled back already. None may leave a transaction open, in which every
      // later change would be lost.
      if (sqlite3_get_autocommit(database_.get()) == 0) {
        sqlite3_exec(database_.get(), "rollback", nullptr, nullptr, nullptr);
      }
      throw;
    }
  }

  std::string Property(std::string_view name) override {
    if (name == "DBMS Name") return "SQLite";
    if (name == "Connection Note") return {};
    if (name == "Current Catalog") return file_.stem().string();
    if (name == "Data Source Name") return file_.string();
    throw Error(kUnknownField, "", "There is no property \"" + std::string(name) + "\".");
  }

  void Cancel() override {
    cancelled_ = true;
    sqlite3_interrupt(database_.get());
  }

 private:
  static int MustStop(void* driver) {
    const auto& self = *static_cast<SqliteDriver*>(driver);
    return self.cancelled_ || SteadyClock::now() >= self.deadline_ ? 1 : 0;
  }

  [[noreturn]] void Fail() const {
    const int code = sqlite3_extended_errcode(database_.get());
    const int primary = code & 0xFF;
    if (primary == SQLITE_INTERRUPT || primary == SQLITE_BUSY) {
      if (cancelled_) {
        throw Error(code, std::string(kCancelled), "The statement was cancelled.");
      }
      throw Error(kTimeoutExpired, sqlite3_errstr(code), "The statement's time-out expired.");
    }
    throw Error(code, sqlite3_errstr(code), sqlite3_errmsg(database_.get()));
  }

  static int WaitForWriter(void* driver, int tries) {
    constexpr int kLongestWait = 50;  // Milliseconds.
    if (MustStop(driver) != 0) return 0;
    sqlite3_sleep(std::min(tries + 1, kLongestWait));
    return 1;
  }

  void Open() {
    // The first read tells a database from any other file.
    Run("select count(*) from sqlite_master");
    StartTimer();
    const Statement mode = Prepare("pragma journal_mode", nullptr);
    if (Step(mode.get()) && std::string_view(reinterpret_cast<const char*>(
                                sqlite3_column_text(mode.get(), 0))) == "wal") {
      // With the write-ahead log a commit then survives the process without a wait for the disk; it
      // survives a power failure from the end of the session on, when the log is folded back.
      Run("pragma synchronous = normal");
    }
  }

  void StartTimer() {
    cancelled_ = false;
    deadline_ =
        timeout_.count() > 0 ? SteadyClock::now() + timeout_ : SteadyClock::time_point::max();
  }

  // A file that was deleted or replaced under an open session would swallow every change silently.
  void CheckFile() {
    int moved = 0;
    sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    if (moved != 0) {
      throw Error(SQLITE_READONLY_DBMOVED, "08S01",
                  "The database file " + file_.string() + " was moved or deleted.");
    }
    next_check_ = SteadyClock::now() + kCheckEvery;
  }

  // Prepares the first statement of `text`; `rest` receives what follows it.
  Statement Prepare(std::string_view text, std::string_view* rest) {
    RefuseNul(text);
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(database_.get(), text.data(), static_cast<int>(text.size()), &statement,
                           &tail) != SQLITE_OK) {
      Fail();
    }
    if (rest != nullptr) *rest = text.substr(static_cast<size_t>(tail - text.data()));
    return Statement(statement);
  }

  void ReadRows(std::string_view query, size_t block_rows, const BlockHandler& on_block) {
    CheckFile();
    const std::string translated = TranslateToSqlite(query);
    StartTimer();
    std::string_view rest;
    const Statement statement = Prepare(translated, &rest);
    if (rest.find_first_not_of(" \t\r\n;") != std::string_view::npos) {
      throw Error(SQLITE_MISUSE, "", "The query holds more than one statement.");
    }
    // The first step compiles the query again if the tables have changed since the session read
    // them, so only then the columns are known.
    bool has_row = Step(statement.get());
    std::vector<std::string> columns;
    std::vector<size_t> sizes;
    const int count = sqlite3_column_count(statement.get());
    for (int i = 0; i < count; ++i) {
      columns.emplace_back(sqlite3_column_name(statement.get(), i));
      sizes.push_back(DeclaredLength(sqlite3_column_decltype(statement.get(), i)));
    }
    RowStore rows(columns, sizes);
    for (; has_row; has_row = Step(statement.get())) {
      for (int i = 0; i < count; ++i) AddColumn(statement.get(), i, rows);
      rows.EndRow();
      if (rows.row_count() < block_rows) continue;
      if (!on_block(std::move(rows))) return;
      rows = RowStore(columns, sizes);
      StartTimer();  // The time that the handler took is not the engine's.
    }
    on_block(std::move(rows));
  }

  // Whether there is a row.
  bool Step(sqlite3_stmt* statement) {
    if (statement == nullptr) return false;  // The text held no statement.
    const int result = sqlite3_step(statement);
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    Fail();
  }

  void Run(std::string_view text) {
    StartTimer();
    while (!text.empty()) {
      const Statement statement = Prepare(text, &text);
      while (Step(statement.get())) {
      }
    }
  }

  static void Bind(sqlite3_stmt* statement, int at, std::string_view text) {
    sqlite3_bind_text(statement, at, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }

  static void BindValue(sqlite3_stmt* statement, int at, const Value& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
      sqlite3_bind_int64(statement, at, *whole);
    } else if (const auto* real = std::get_if<double>(&value)) {
      sqlite3_bind_double(statement, at, *real);
    } else if (const auto* text = std::get_if<std::string_view>(&value)) {
      Bind(statement, at, *text);
    }
  }

  Database database_;
  std::filesystem::path file_;
  std::chrono::seconds timeout_;  // 0: no limit.
  SteadyClock::time_point next_check_ = SteadyClock::time_point::min();
  std::atomic<bool> cancelled_ = false;
  SteadyClock::time_point deadline_ = SteadyClock::time_point::max();
};

}  // namespace

std::unique_ptr<Driver> OpenSqlite(const std::filesystem::path& file,
                                   const ConnectOptions& options) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) {
    throw Error(SQLITE_CANTOPEN, "unable to open database file",
                "The database file " + file.string() + " does not exist.");
  }
  sqlite3* opened = nullptr;
  // One thread at a time uses a session, so that the engine needs no locks of its own.
  const int result =
      sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  Database database(opened);
  if (result != SQLITE_OK) {
    throw Error(result, sqlite3_errstr(result),
                "The database file " + file.string() + " cannot be opened: " +
                    (opened != nullptr ? sqlite3_errmsg(opened) : sqlite3_errstr(result)));
  }
  if (sqlite3_db_readonly(opened, "main") == 1) {
    throw Error(SQLITE_READONLY, sqlite3_errstr(SQLITE_READONLY),
                "The database file " + file.string() + " is write-protected.");
  }
  sqlite3_extended_result_codes(opened, 1);
  return std::make_unique<SqliteDriver>(std::move(database), file, options);
}

}  // namespace quillan::ado
