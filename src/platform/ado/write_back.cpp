#include "platform/ado/write_back.h"

#include <algorithm>

#include "platform/ado/error.h"
#include "platform/ado/sql_token.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

// Brackets quote a name on both engines.
std::string Quoted(std::string_view name) { return "[" + text::ReplaceAll(name, "]", "]]") + "]"; }

// "[a] = ?" for each value, or "[a] is null" without a parameter.
void AppendCondition(std::string_view column, const Value& value, std::string& statement,
                     std::vector<Value>& parameters) {
  statement += (statement.ends_with(" where ") ? "" : " and ") + Quoted(column);
  if (IsNull(value)) {
    statement += " is null";
  } else {
    statement += " = ?";
    parameters.push_back(value);
  }
}

}  // namespace

std::string SourceTable(std::string_view query) {
  std::string table;
  bool after_from = false;
  for (const SqlToken& token : SqlTokens(query)) {
    if (token.kind == SqlTokenKind::kBlank) {
      if (!table.empty()) break;
    } else if (!after_from) {
      after_from =
          token.kind == SqlTokenKind::kWord && text::EqualsIgnoringCase(token.text, "from");
    } else if (token.kind == SqlTokenKind::kWord || token.kind == SqlTokenKind::kQuotedName ||
               token.text == ".") {
      table += token.text;
    } else {
      break;
    }
  }
  if (table.empty()) {
    throw Error(kReadOnlyRows, "", "The query reads no table that could be written back.");
  }
  return table;
}

void InsertRow(Driver& driver, const std::string& table, const Change& change) {
  std::string names;
  std::string marks;
  std::vector<Value> parameters;
  for (size_t i = 0; i < change.columns.size(); ++i) {
    if (!change.edits[i]) continue;
    names += (names.empty() ? "" : ", ") + Quoted(change.columns[i]);
    marks += marks.empty() ? "?" : ", ?";
    parameters.push_back(ToView(*change.edits[i]));
  }
  if (parameters.empty()) throw Error(kRowNotFound, "", "The new row has no values.");
  driver.ChangeOneRow("insert into " + table + " (" + names + ") values (" + marks + ")",
                      parameters);
}

void UpdateRow(Driver& driver, const std::string& table, const Change& change) {
  std::string statement = "update " + table + " set ";
  std::vector<Value> parameters;
  for (size_t i = 0; i < change.columns.size(); ++i) {
    if (!change.edits[i]) continue;
    statement += (parameters.empty() ? "" : ", ") + Quoted(change.columns[i]) + " = ?";
    parameters.push_back(ToView(*change.edits[i]));
  }
  if (parameters.empty()) return;

  statement += " where ";
  const std::vector<std::string> key = driver.PrimaryKey(table);
  const auto in_key = [&](const std::string& column) {
    return std::any_of(key.begin(), key.end(), [&](const std::string& name) {
      return text::EqualsIgnoringCase(name, column);
    });
  };
  const bool whole_key =
      !key.empty() && static_cast<size_t>(std::count_if(
                          change.columns.begin(), change.columns.end(), in_key)) == key.size();
  for (size_t i = 0; i < change.columns.size(); ++i) {
    if (!whole_key || in_key(change.columns[i])) {
      AppendCondition(change.columns[i], change.original[i], statement, parameters);
    }
  }
  driver.ChangeOneRow(statement, parameters);
}

}  // namespace quillan::ado
