#include "db/flow_database.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/ado/connection_string.h"
#include "platform/ado/error.h"
#include "platform/program.h"
#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

// The name order comes before the place order.
constexpr std::array<std::string_view, 4> kConnectionFiles = {
    "\\TBKelvora.DB", "\\..\\TBKelvora.DB", "\\QuillanGUI.DB", "\\..\\QuillanGUI.DB"};

// Statements that one call of a driver runs.
constexpr size_t kBatchStatements = 100;

ado::Error AsError(const std::exception& failure) {
  const auto* error = dynamic_cast<const ado::Error*>(&failure);
  return error != nullptr ? *error : ado::Error(0, "", failure.what());
}

}  // namespace

FlowDatabase::FlowDatabase(const Files& files, std::filesystem::path program_folder,
                           ado::DriverFactory open_driver)
    : files_(files),
      program_folder_(std::move(program_folder)),
      connection_(std::move(open_driver)) {
  connection_.set_application(kDisplayName);
}

void FlowDatabase::Execute(std::string_view statement) {
  try {
    ExecuteChecked(statement);
  } catch (const std::exception&) {
    // Its callers go on with the next statement; the report has the failure.
  }
}

void FlowDatabase::ExecuteChecked(std::string_view statement) {
  if (reporting_) ++report_.statements;
  try {
    connection_.Execute(statement);
  } catch (const std::exception& failure) {
    NoteFailure(statement, failure);
    throw;
  }
}

std::vector<ado::Outcome> FlowDatabase::ExecuteBatch(std::span<const std::string> statements,
                                                     ado::BatchMode mode) {
  std::vector<ado::Outcome> outcomes;
  outcomes.reserve(statements.size());
  while (outcomes.size() < statements.size()) {
    const auto batch = statements.subspan(outcomes.size());
    std::vector<ado::Outcome> ran;
    try {
      ran = connection_.ExecuteBatch(batch.first(std::min(batch.size(), kBatchStatements)), mode);
    } catch (const std::exception& failure) {
      ran.emplace_back(AsError(failure));
    }
    for (ado::Outcome& outcome : ran) {
      if (reporting_) ++report_.statements;
      if (outcome) NoteFailure(statements[outcomes.size()], *outcome);
      outcomes.push_back(std::move(outcome));
    }
    const ado::Outcome& last = outcomes.back();
    if (!last) continue;
    if (mode == ado::BatchMode::kStopAtFailure || last->IsTimeout() || last->IsCancelled()) break;
  }
  return outcomes;
}

void FlowDatabase::BeginReport() {
  report_ = {};
  reporting_ = true;
}

StatementReport FlowDatabase::EndReport() {
  reporting_ = false;
  return std::exchange(report_, {});
}

void FlowDatabase::NoteFailure(std::string_view statement, const std::exception& failure) {
  if (!reporting_) return;
  report_.failures.push_back({report_.statements - 1, std::string(statement), AsError(failure)});
}

bool FlowDatabase::OpenDatabase() {
  last_error_.clear();
  open_error_number_ = ado::kObjectClosed;
  if (Connected()) return true;
  if (!GetDatabaseConnection()) return false;
  connection_.set_connection_string(values_.connection_string);
  connection_.set_connection_timeout(values_.connection_timeout);
  connection_.set_command_timeout(values_.command_timeout);
  try {
    connection_.Open();
  } catch (const std::exception& failure) {
    last_error_ = "Cannot connect to SQL database. Re-run the Installation Wizard.\r\n\r\n" +
                  ConnectionString(PasswordDisplay::kHidden) + "\r\n\r\nError=" + failure.what();
    open_error_number_ = AsError(failure).number();
    return false;
  }
  // Twice, as a driver may know only one of the two; neither is a reason to refuse the session.
  try {
    connection_.ReadUncommitted();
  } catch (const std::exception&) {
  }
  try {
    connection_.Execute("SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED");
  } catch (const std::exception&) {
  }
  return true;
}

std::string FlowDatabase::ConnectionString(PasswordDisplay display) const {
  return display == PasswordDisplay::kHidden ? ado::MaskPasswords(values_.connection_string)
                                             : values_.connection_string;
}

std::string FlowDatabase::Property(std::string_view name) {
  try {
    return connection_.Property(name);
  } catch (const ado::Error&) {
    return {};
  }
}

std::string FlowDatabase::ConnectionNote() {
  std::string note = Property("Connection Note");
  if (ado::MaskPasswords(values_.connection_string) == values_.connection_string) return note;
  std::error_code unknown;
  const auto permissions = std::filesystem::status(connection_file_, unknown).permissions();
  if (unknown || (permissions & std::filesystem::perms::others_read) == std::filesystem::perms()) {
    return note;
  }
  if (!note.empty()) note += ' ';
  return note.append("Every user of this computer can read the password in ")
      .append(connection_file_.string())
      .append(".");
}

bool FlowDatabase::GetDatabaseConnection() {
  connection_file_advice_.clear();
  for (const std::string_view name : kConnectionFiles) {
    const std::filesystem::path file = JoinPath(program_folder_, name);
    const std::string path = file.lexically_normal().string();
    const auto fail = [&](const std::string& reason) {
      last_error_ = "Cannot read ";
      last_error_.append(path).append(": ").append(reason);
      return false;
    };
    try {
      const auto text = files_.ReadTextFile(file);
      if (!text) continue;
      connection_file_ = path;
      if (HasJoinedLines(*text)) {
        connection_file_advice_ = "Lines of ";
        connection_file_advice_.append(path)
            .append(
                " end in LF and are therefore joined. They must end in CR LF. To convert the file, "
                "run: sed -i 's/\\r*$/\\r/' '")
            .append(path)
            .append("'");
      }
      ReadConnectionFile(*text, values_);
    } catch (const FileError& error) {
      return fail(error.what());
    } catch (const ConnectionFileError& error) {
      return fail(error.what());
    }
    return !values_.connection_string.empty();
  }
  last_error_ =
      "Cannot find TBKelvora.DB or QuillanGUI.DB.\r\nPlease re-run the Installation Wizard.";
  return false;
}

std::unique_ptr<ado::Recordset> FlowDatabase::OpenRecordset(std::string_view query,
                                                            ado::LockType lock_type) {
  if (reporting_) ++report_.statements;
  const auto fail = [&](const std::exception& failure) {
    last_error_ = failure.what();
    NoteFailure(query, failure);
    return nullptr;
  };
  for (bool retried = false;; retried = true) {
    if (!OpenDatabase()) return fail(ado::Error(open_error_number_, "", last_error_));
    try {
      return connection_.OpenRecordset(query, lock_type);
    } catch (const ado::Error& error) {
      if (error.IsTimeout() || error.IsCancelled() || retried) return fail(error);
      connection_.Close(error.what());
    } catch (const std::exception& failure) {  // Out of memory.
      return fail(failure);
    }
  }
}

bool FlowDatabase::ReadInBlocks(std::string_view query,
                                const std::function<bool(ado::Recordset& rows)>& on_block) {
  if (!OpenDatabase()) return false;
  try {
    connection_.QueryInBlocks(query, on_block);
    return true;
  } catch (const ado::Error& error) {
    last_error_ = error.what();
    return false;
  }
}

std::string FlowDatabase::Location() {
  if (!Connected()) return {};
  return Property("Current Catalog") + " on " + Property("Data Source Name") + " SQL Server";
}

std::string FlowDatabase::DateTimeToDBFormat(text::DateTime value) {
  constexpr double kDaysFrom1899To1900 = 2;
  return text::FormatGeneral(text::SerialDayNumber(value) - kDaysFrom1899To1900);
}

std::string FlowDatabase::GetFieldList(std::string_view table, std::string_view separator) {
  const auto rows = OpenRecordset("Select Top 1 * From " + std::string(table));
  if (!rows) return {};
  std::string names;
  for (const std::string& name : rows->FieldNames()) names.append(name).append(separator);
  return names.substr(0, names.size() - separator.size());
}

bool FlowDatabase::TableExists(std::string_view table) {
  return OpenRecordset("Select 10 from " + std::string(table)) != nullptr;
}

}  // namespace quillan
