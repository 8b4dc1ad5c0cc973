#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "platform/ado/sqlite_dialect.h"
#include "platform/text/ascii.h"
#include "support/sqlite_file.h"
#include "support/tds_server.h"

namespace quillan::test {

/// A server over the suite database in a SQLite file. Of a batch of the program's it runs each
/// statement by itself and goes on after a failure, as a SQL Server does.
class SuiteServer {
 public:
  /// An error of the server's; its number, and its text.
  using Failure = std::pair<std::int32_t, std::string>;
  /// What meets a statement in the place of its being run; nothing, so that it runs.
  using Fault = std::variant<std::monostate, Failure, TdsServer::Answer>;

  explicit SuiteServer(const std::filesystem::path& file)
      : database_(file), server_([this](const std::string& batch) { return Run(batch); }) {}

  const TdsServer& tds() const { return server_; }
  std::string ConnectionString() const { return ConnectionStringOf(server_.port()); }
  static std::string ConnectionStringOf(int port) {
    return "Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(port) +
           ";User ID=u;Password=p";
  }
  /// `before` is called with each statement, on the server's thread.
  void Before(std::function<Fault(const std::string& statement)> before) {
    const std::lock_guard lock(mutex_);
    before_ = std::move(before);
  }

 private:
  using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

  // Runs what stands between the driver's marks; what has none is one statement.
  TdsServer::Answer Run(const std::string& batch) {
    constexpr std::string_view kMark = "select 0 as QuillanStatement";
    constexpr size_t kNameStart = std::string_view("select 0 as ").size();
    TdsReply reply;
    bool failed = false;
    std::string statement;
    std::istringstream lines(batch);
    for (std::string line; std::getline(lines, line);) {
      const bool mark = line.starts_with(kMark);
      if (!mark && line != "if @@error <> 0 return") {
        statement += (statement.empty() ? "" : "\n") + line;
        continue;
      }
      if (auto end = Run(std::exchange(statement, ""), reply, failed)) return *end;
      if (!mark && failed) break;
      if (!mark) continue;
      reply.Columns({{line.substr(kNameStart), TdsReply::Type::kBigInt}});
      reply.Row({std::int64_t{0}}).Done(1, true);
    }
    if (auto end = Run(statement, reply, failed)) return *end;
    return reply.End(0, 0);
  }

  // Returns what happens to the connection, if anything does.
  std::optional<TdsServer::Answer> Run(const std::string& statement, TdsReply& reply,
                                       bool& failed) {
    if (statement.empty()) return std::nullopt;
    std::unique_lock lock(mutex_);
    const auto before = before_;
    lock.unlock();
    const Fault fault = before ? before(statement) : Fault();
    if (const auto* answer = std::get_if<TdsServer::Answer>(&fault)) return *answer;
    const auto* refused = std::get_if<Failure>(&fault);
    const std::optional<Failure> failure = refused ? *refused : RunOnDatabase(statement, reply);
    failed = failure.has_value();
    if (failure) reply.Error(failure->first, failure->second).End(3, 0);
    return std::nullopt;
  }

  std::optional<Failure> RunOnDatabase(const std::string& statement, TdsReply& reply) {
    const bool idle = sqlite3_get_autocommit(database_.handle()) != 0;
    if (statement.starts_with("SET ") || (idle && statement.starts_with("rollback"))) {
      return std::nullopt;
    }
    std::string sql = ado::TranslateToSqlite(statement);
    if (text::StartsWithIgnoringCase(statement, "exec sp_pkeys")) {
      const size_t name = statement.find("@table_name=N'") + 14;
      sql =
          "select null, null, null, name as COLUMN_NAME, pk as KEY_SEQ, null from "
          "pragma_table_info('" +
          statement.substr(name, statement.find('\'', name) - name) + "') where pk > 0";
    }
    for (const char* rest = sql.c_str(); *rest != '\0';) {
      sqlite3_stmt* prepared = nullptr;
      if (sqlite3_prepare_v2(database_.handle(), rest, -1, &prepared, &rest) != SQLITE_OK) {
        return LastFailure();
      }
      if (prepared == nullptr) continue;
      const Statement owner(prepared, &sqlite3_finalize);
      if (!Answer(prepared, reply)) return LastFailure();
    }
    return std::nullopt;
  }

  Failure LastFailure() const {
    const std::string text = sqlite3_errmsg(database_.handle());
    return {text.starts_with("no such table") ? 208 : 547, text};
  }

  // Runs `prepared` to its end; false when it fails.
  bool Answer(sqlite3_stmt* prepared, TdsReply& reply) const {
    int result = sqlite3_step(prepared);
    const int columns = sqlite3_column_count(prepared);
    if (columns == 0) {
      if (result != SQLITE_DONE) return false;
      reply.Done(static_cast<std::uint64_t>(sqlite3_changes(database_.handle())), true);
      return true;
    }
    std::vector<TdsReply::Column> described;
    for (int i = 0; i < columns; ++i) described.push_back(Describe(prepared, i));
    if (result == SQLITE_ROW || result == SQLITE_DONE) reply.Columns(described);
    std::uint64_t rows = 0;
    for (; result == SQLITE_ROW; result = sqlite3_step(prepared), ++rows) {
      std::vector<TdsReply::Value> values;
      for (int i = 0; i < columns; ++i) {
        values.push_back(ValueOf(prepared, i, described[static_cast<size_t>(i)].type));
      }
      reply.Row(values);
    }
    reply.Done(rows, true);
    return result == SQLITE_DONE;
  }

  // An expression, which has no declared type, is what its first value is.
  static TdsReply::Column Describe(sqlite3_stmt* prepared, int i) {
    using enum TdsReply::Type;
    TdsReply::Column column{sqlite3_column_name(prepared, i), kNVarCharMax};
    const char* declared = sqlite3_column_decltype(prepared, i);
    if (declared == nullptr) {
      const int type = sqlite3_column_type(prepared, i);
      if (type == SQLITE_INTEGER) column.type = kBigInt;
      if (type == SQLITE_FLOAT) column.type = kFloat;
      return column;
    }
    const std::string type = text::ToUpperAscii(declared);
    if (type.find("INT") != std::string::npos || type == "BIT") column.type = kBigInt;
    if (type == "FLOAT" || type.starts_with("DECIMAL")) column.type = kFloat;
    if (const size_t size = type.find("CHAR("); size != std::string::npos) {
      column.type = kNVarChar;
      column.characters = static_cast<std::uint16_t>(std::stoi(type.substr(size + 5)));
    }
    return column;
  }

  static TdsReply::Value ValueOf(sqlite3_stmt* prepared, int i, TdsReply::Type type) {
    if (sqlite3_column_type(prepared, i) == SQLITE_NULL) return {};
    if (type == TdsReply::Type::kBigInt) return std::int64_t{sqlite3_column_int64(prepared, i)};
    if (type == TdsReply::Type::kFloat) return sqlite3_column_double(prepared, i);
    return std::string_view(reinterpret_cast<const char*>(sqlite3_column_text(prepared, i)));
  }

  SqliteFile database_;
  std::mutex mutex_;
  std::function<Fault(const std::string&)> before_;
  TdsServer server_;  // Ends before what its thread uses.
};

}  // namespace quillan::test
