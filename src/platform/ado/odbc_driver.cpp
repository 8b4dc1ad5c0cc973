#include "platform/ado/odbc_driver.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

#include "platform/ado/error.h"
#include "platform/ado/odbc_rows.h"
#include "platform/ado/odbc_session.h"
#include "platform/ado/odbc_statement.h"
#include "platform/ado/sql_token.h"
#include "platform/ado/sqlite_dialect.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

// A transaction that is rolled back at the end of its scope unless it was committed.
class Transaction {
 public:
  explicit Transaction(OdbcSession& session) : session_(session) {
    session_.SetAttribute(SQL_ATTR_AUTOCOMMIT, SQL_AUTOCOMMIT_OFF);
  }
  ~Transaction() {
    // A failure means that the session is lost: the server undoes what it had begun, and the next
    // use will say so. Where it is not, later statements must not run in a transaction left open.
    if (!committed_) Attempt([this] { session_.EndTransaction(SQL_ROLLBACK); });
    Attempt([this] { session_.SetAttribute(SQL_ATTR_AUTOCOMMIT, SQL_AUTOCOMMIT_ON); });
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit() {
    session_.EndTransaction(SQL_COMMIT);
    committed_ = true;
  }

 private:
  template <typename Step>
  static void Attempt(Step step) {
    try {
      step();
    } catch (const Error&) {
    }
  }

  OdbcSession& session_;
  bool committed_ = false;
};

// The parts of "catalog.schema.table", without their quotes.
std::vector<std::string> NameParts(std::string_view name) {
  std::vector<std::string> parts(1);
  for (const SqlToken& token : SqlTokens(name)) {
    if (token.text == ".") {
      parts.emplace_back();
    } else if (token.kind == SqlTokenKind::kQuotedName && token.text.size() >= 2) {
      const char close = token.text.back();
      parts.back() += text::ReplaceAll(token.text.substr(1, token.text.size() - 2),
                                       std::string(2, close), std::string(1, close));
    } else {
      parts.back() += token.text;
    }
  }
  return parts;
}

class OdbcDriver final : public Driver {
 public:
  OdbcDriver(const ConnectOptions& options, const std::string& driver, std::string data_source,
             std::string note)
      : session_(options.connection_string, driver, options.connection_timeout),
        command_timeout_(options.command_timeout),
        data_source_(std::move(data_source)),
        note_(std::move(note)),
        command_(session_, command_timeout_),
        takes_batches_(session_.Info(SQL_DBMS_NAME).find("SQL Server") != std::string::npos) {}

  void Execute(std::string_view statement) override {
    const Running running(*this, command_);
    Run(command_, statement);
    while (command_.NextResult()) {
    }
  }

  std::vector<Outcome> ExecuteBatch(std::span<const std::string> statements,
                                    BatchMode mode) override {
    if (!takes_batches_) return ExecuteOneByOne(*this, statements, mode);
    // Made while there is memory for it: what was sent may have run and must not run twice.
    const Outcome unknown =
        Error(0, std::string(kCancelled), "Memory ran out before the server's answer was read.");
    std::vector<Outcome> outcomes;
    outcomes.reserve(statements.size());
    while (outcomes.size() < statements.size()) {
      const auto rest = statements.subspan(outcomes.size());
      try {
        std::vector<Outcome> ran = RunBatch(rest, mode);
        // Nothing ran, so that one of them cannot be understood: which one shows if each runs
        // alone.
        if (ran.empty()) ran = ExecuteOneByOne(*this, rest, mode);
        outcomes.insert(outcomes.end(), ran.begin(), ran.end());
      } catch (const std::bad_alloc&) {
        outcomes.resize(statements.size(), unknown);
      }
      const Outcome& last = outcomes.back();
      if (last && (mode == BatchMode::kStopAtFailure || EndsBatch(*last))) break;
    }
    return outcomes;
  }

  RowStore Query(std::string_view query) override {
    OdbcStatement statement(session_, command_timeout_);
    const Running running(*this, statement);
    Run(statement, query);
    // Row counts may come before the rows.
    do {
      if (statement.ColumnCount() == 0) continue;
      RowStore rows = ReadRows(statement);
      while (statement.NextResult()) {
      }
      return rows;
    } while (statement.NextResult());
    return RowStore({});
  }

  void QueryInBlocks(std::string_view query, const BlockHandler& on_block) override {
    OdbcStatement statement(session_, command_timeout_);
    const Running running(*this, statement);
    Run(statement, query);
    do {
      if (statement.ColumnCount() > 0) return ReadRowsInBlocks(statement, on_block);
    } while (statement.NextResult());
  }

  void ReadUncommitted() override {
    if (session_.api().IsSqlite()) {
      Execute("set transaction isolation level read uncommitted");
    } else {
      session_.SetAttribute(SQL_ATTR_TXN_ISOLATION, SQL_TXN_READ_UNCOMMITTED);
    }
  }

  std::vector<std::string> PrimaryKey(std::string_view table) override {
    std::vector<std::string> parts = NameParts(table);
    const auto part_from_end = [&](size_t back) {
      return back < parts.size() ? parts[parts.size() - 1 - back] : std::string();
    };
    OdbcStatement statement(session_, command_timeout_);
    statement.PrimaryKeys(part_from_end(2), part_from_end(1), part_from_end(0));
    const RowStore rows = ReadRows(statement);
    // Source of the columns' order: SQLPrimaryKeys.
    constexpr size_t kColumnName = 3;
    constexpr size_t kKeySequence = 4;
    std::vector<std::pair<std::int64_t, std::string>> columns;
    std::vector<Value> values(rows.columns().size());
    for (size_t row = 0; row < rows.row_count(); ++row) {
      rows.Read(row, values);
      columns.emplace_back(ToWhole(values.at(kKeySequence)), ToText(values.at(kColumnName)));
    }
    std::sort(columns.begin(), columns.end());
    std::vector<std::string> names;
    names.reserve(columns.size());
    for (auto& [sequence, name] : columns) names.push_back(std::move(name));
    return names;
  }

  void ChangeOneRow(std::string_view text, std::span<const Value> parameters) override {
    Transaction transaction(session_);
    {
      OdbcStatement statement(session_, command_timeout_);
      const Running running(*this, statement);
      statement.Execute(text, parameters);
      // A trigger's counts come before the statement's own.
      SQLLEN changed = statement.RowCount();
      while (statement.NextResult()) {
        if (const SQLLEN count = statement.RowCount(); count >= 0) changed = count;
      }
      if (changed != 1) {
        throw Error(kRowNotFound, "",
                    "The row cannot be written: " + std::to_string(std::max(changed, SQLLEN{0})) +
                        " rows match it. It was changed or deleted since it was read.");
      }
    }
    transaction.Commit();
  }

  std::string Property(std::string_view name) override {
    if (name == "DBMS Name") return session_.Info(SQL_DBMS_NAME);
    if (name == "Connection Note") return note_;
    if (name == "Current Catalog") return session_.Info(SQL_DATABASE_NAME);
    if (name == "Data Source Name") {
      if (data_source_.empty()) data_source_ = session_.Info(SQL_DATA_SOURCE_NAME);
      if (data_source_.empty()) data_source_ = session_.Info(SQL_SERVER_NAME);
      return data_source_;
    }
    throw Error(kUnknownField, "", "There is no property \"" + std::string(name) + "\".");
  }

  void Cancel() override {
    const std::lock_guard lock(running_mutex_);
    if (running_ != nullptr) SQLCancel(running_->handle());
  }

 private:
  // The statement that `Cancel` reaches, while this lives.
  class Running {
   public:
    Running(OdbcDriver& driver, OdbcStatement& statement) : driver_(driver), statement_(statement) {
      const std::lock_guard lock(driver_.running_mutex_);
      driver_.running_ = &statement;
    }
    ~Running() {
      {
        const std::lock_guard lock(driver_.running_mutex_);
        driver_.running_ = nullptr;
      }
      // Results that a failure left unread would keep every other statement from running.
      statement_.Close();
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    OdbcDriver& driver_;
    OdbcStatement& statement_;
  };

  // The column whose name tells where in a batch a result belongs: after statement `number`,
  // from 1.
  static std::string Marker(size_t number) { return "QuillanStatement" + std::to_string(number); }

  // Sends `statements` as one batch and returns the outcomes of those that ran; none when the
  // server did not understand the batch. An error that ends the batch is the outcome of the last
  // one. What an expired time-out, a lost connection or `Cancel` left without an answer has that
  // error, as it may have been written and must not run twice.
  std::vector<Outcome> RunBatch(std::span<const std::string> statements, BatchMode mode) {
    std::string text = "select 0 as " + Marker(0);
    for (size_t i = 0; i < statements.size(); ++i) {
      if (statements[i].find('\0') != std::string::npos) return {};
      text += "\n" + statements[i];
      if (mode == BatchMode::kStopAtFailure) text += "\nif @@error <> 0 return";
      text += "\nselect 0 as " + Marker(i + 1);
    }
    std::vector<Outcome> outcomes;
    Outcome failure;
    bool started = false;
    const Running running(*this, command_);
    const auto failed = [&](const Error& error) {
      if (!failure || EndsBatch(error)) failure = error;
      return EndsBatch(error);
    };
    const auto more = [&] {
      try {
        return command_.NextResult();
      } catch (const Error& error) {
        return !failed(error);
      }
    };
    try {
      command_.Execute(text);
    } catch (const Error& error) {
      if (!EndsBatch(error)) return {};
      failed(error);
    }
    do {
      if (failure && EndsBatch(*failure)) break;
      if (command_.ColumnCount() == 0) continue;
      const std::string name = command_.Column(1).name;
      if (!started) {
        started = name == Marker(0);
      } else if (name == Marker(outcomes.size() + 1)) {
        outcomes.push_back(std::exchange(failure, std::nullopt));
      }
    } while (more());
    if (failure && EndsBatch(*failure)) {
      outcomes.resize(statements.size(), failure);
    } else if (started && outcomes.size() < statements.size()) {
      outcomes.push_back(failure);
    }
    return outcomes;
  }

  void Run(OdbcStatement& statement, std::string_view text) const {
    if (session_.api().IsSqlite()) {
      statement.Execute(TranslateToSqlite(text));
    } else {
      statement.Execute(text);
    }
  }

  OdbcSession session_;
  int command_timeout_;
  std::string data_source_;
  std::string note_;
  OdbcStatement command_;
  bool takes_batches_;
  std::mutex running_mutex_;
  const OdbcStatement* running_ = nullptr;
};

}  // namespace

std::unique_ptr<Driver> OpenOdbc(const ConnectOptions& options, const std::string& driver,
                                 std::string data_source, std::string note) {
  return std::make_unique<OdbcDriver>(options, driver, std::move(data_source), std::move(note));
}

}  // namespace quillan::ado
