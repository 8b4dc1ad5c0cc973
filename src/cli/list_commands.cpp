#include "cli/list_commands.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "cli/json.h"
#include "lists/address_group_list.h"
#include "lists/list_import.h"
#include "lists/refusal.h"

namespace quillan {
namespace {

void PrintConflicts(const std::vector<Conflict>& conflicts) {
  for (const Conflict& conflict : conflicts) {
    std::string line = conflict.name + ": ";
    if (!conflict.loaded.empty()) line += "was " + conflict.loaded + "; ";
    line += conflict.theirs.empty() ? "is gone" : "is " + conflict.theirs;
    Console::Print(line + "; would become " + conflict.ours);
  }
}

// Whether the save may go on.
bool SettleConflicts(CheckableList& list, Session& session, ExitStatus& status) {
  std::vector<Conflict> conflicts;
  if (!list.NeedsConflictCheck()) return true;
  if (!list.FindConflicts(conflicts)) {
    Console::PrintError(list.ConflictError());
    status = kNoSession;
    return false;
  }
  if (conflicts.empty()) return true;
  PrintConflicts(conflicts);
  if (!session.console().Ask("Rows have been changed by somebody else. Overwrite them?")) {
    status = kDifferent;
    return false;
  }
  list.Resolve(conflicts, ConflictAnswer::kOverwrite);
  return true;
}

// How many endpoints a group's range holds; empty for the row of another list.
std::string Endpoints(const CheckableList& list, int row) {
  const auto* groups = dynamic_cast<const AddressGroupList*>(&list);
  const auto count = groups != nullptr ? groups->CountEndpoints(row) : std::nullopt;
  return count ? std::to_string(*count) : "";
}

std::string_view ChangeWord(RowState state) {
  if (state == RowState::kNew) return "new";
  return state == RowState::kDeleted ? "deleted" : "changed";
}

// "Description: http -> web, Monitored: yes -> no".
std::string DescribeValues(const PendingRow& row) {
  std::string text;
  for (const auto& [column, from, to] : row.values) {
    if (!text.empty()) text += ", ";
    text += column + ": ";
    if (row.state == RowState::kChanged) text += from + " -> ";
    text += row.state == RowState::kDeleted ? from : to;
  }
  return text;
}

nlohmann::ordered_json JsonOf(const PendingRow& row, const std::string& endpoints) {
  nlohmann::ordered_json values = nlohmann::ordered_json::array();
  for (const auto& [column, from, to] : row.values) {
    values.push_back({{"column", column}, {"from", from}, {"to", to}});
  }
  nlohmann::ordered_json object = {
      {"change", ChangeWord(row.state)}, {"row", row.name}, {"values", values}};
  object["endpoints"] = nullptr;
  if (!endpoints.empty()) object["endpoints"] = std::stoll(endpoints);
  return object;
}

ExitStatus PrintPending(const CheckableList& list, Session& session) {
  const bool json = session.options().format == OutputFormat::kJson;
  nlohmann::ordered_json objects = nlohmann::ordered_json::array();
  RowPrinter printer(
      session.options().format,
      {{"Change", "change"}, {"Row", "row"}, {"Endpoints", "endpoints"}, {"Values", "values"}});
  for (const PendingRow& row : list.Pending()) {
    const std::string endpoints = Endpoints(list, row.row);
    if (json) {
      objects.push_back(JsonOf(row, endpoints));
    } else {
      printer.Row({{ChangeWord(row.state), row.name, endpoints, DescribeValues(row)}});
    }
  }
  const bool printed = json ? PrintData(DumpJson(objects)) : printer.Finish();
  return printed ? kDone : kFailed;
}

std::optional<std::string> ReadFile(const std::string& file) {
  if (file == "-") {
    return std::string(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  }
  std::ifstream stream(file, std::ios::binary);
  std::string content(std::istreambuf_iterator<char>(stream), {});
  if (!stream.is_open() || stream.bad()) {
    Console::PrintError("cannot read " + file);
    return std::nullopt;
  }
  return content;
}

std::optional<ImportPlan> PlanFile(EditableList& list, const std::string& file, ImportMode mode) {
  const auto content = ReadFile(file);
  if (!content) return std::nullopt;
  ImportPlan plan = list.PlanImport(*content, mode);
  if (!plan.error.empty()) {
    Console::PrintError(plan.error);
    return std::nullopt;
  }
  for (const ImportLine& line : plan.lines) {
    if (line.reason.empty()) continue;
    const bool refused = line.verdict == ImportVerdict::kRefused;
    Console::Print("line " + std::to_string(line.line) + (refused ? " refused: " : ": ") +
                   line.reason);
  }
  for (const int row : plan.kept_rows) {
    Console::Print("kept, since the system defines it: " + list.RowName(list.Table(), row));
  }
  return plan;
}

void Press(CheckableList& list, std::string_view button) {
  for (const ListCommand& command : list.Commands()) {
    if (command.name == button) command.run();
  }
}

// Selects the rows that the keys name, and presses one of the list's buttons.
ExitStatus RunOnRows(CommandList& commands, std::string_view button, Session& session) {
  EditableList& list = commands.List();
  if (!Load(list)) return kNoSession;
  const Options& options = session.options();
  std::set<int> rows;
  bool refused = false;
  for (const std::string& key : options.keys) {
    std::string reason;
    const int row = commands.Find(key, reason);
    if (row != 0) {
      rows.insert(row);
    } else {
      Console::PrintError(reason);
      refused = true;
    }
  }
  if (rows.empty() || (refused && !options.skip_refused)) return kDifferent;
  list.Table().SelectOnly(*rows.begin(), 1);
  for (const int row : rows) list.Table().SetSelected(row, row, true);
  Press(list, button);
  // A row that the command left alone was refused, or the user's question was answered no.
  const auto pending = static_cast<size_t>(list.PendingCount());
  if (pending < rows.size() && (pending == 0 || !options.skip_refused)) return kDifferent;
  const ExitStatus status = SaveList(list, session);
  return status == kDone && (refused || pending < rows.size()) ? kDifferent : status;
}

}  // namespace

bool Load(CheckableList& list) {
  if (list.Refresh()) return true;
  Console::PrintError(list.LoadError());
  return false;
}

ExitStatus SaveList(CheckableList& list, Session& session) {
  if (session.options().dry_run) return PrintPending(list, session);
  if (list.PendingCount() == 0) {
    Console::Print("nothing to change");
    return kDone;
  }
  ExitStatus status = kDone;
  if (!SettleConflicts(list, session, status)) return status;
  SaveOutcome outcome;
  try {
    outcome = list.Sync();
  } catch (const std::exception& failure) {
    // The list of interfaces ends at the first failure; the rows before it are written.
    Console::PrintError(failure.what());
    status = kFailed;
  }
  for (const SaveFailure& failure : list.Failures()) {
    Console::Print(failure.name + " failed: " + failure.message);
    status = kFailed;
  }
  if (outcome.stopped) {
    Console::Print("stopped");
    status = kFailed;
  }
  if (outcome.total > 0) {
    Console::Print(std::to_string(outcome.written) + " of " + std::to_string(outcome.total) +
                   " rows written");
  }
  return status;
}

std::nullopt_t CommandList::Refuse(std::string_view reason) {
  Console::PrintError(reason);
  refused_ = true;
  return std::nullopt;
}

ExitStatus PrintList(CommandList& commands, Session& session) {
  EditableList& list = commands.List();
  const ListOutput& output = commands.Output();
  const Options& options = session.options();
  if (!Load(list)) return kNoSession;
  const Grid& grid = list.Table();
  const ListFilter filter(options.filter, output.filter);
  RowPrinter printer(options.format, output.columns);
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    if (!filter.Matches(grid, row)) continue;
    const std::vector<std::string> values = output.values(grid, row);
    printer.Row(std::vector<std::string_view>(values.begin(), values.end()));
  }
  return printer.Finish() ? kDone : kFailed;
}

ExitStatus AddRow(CommandList& commands, Session& session) {
  EditableList& list = commands.List();
  if (!Load(list)) return kNoSession;
  Press(list, commands.Output().add_button);
  return commands.Refused() ? kDifferent : SaveList(list, session);
}

ExitStatus EnableRows(CommandList& commands, Session& session) {
  return RunOnRows(commands, "cmdCheck", session);
}

ExitStatus DisableRows(CommandList& commands, Session& session) {
  return RunOnRows(commands, "cmdUncheck", session);
}

ExitStatus DeleteRows(CommandList& commands, Session& session) {
  return RunOnRows(commands, commands.Output().delete_button, session);
}

ExitStatus RenameRow(CommandList& commands, Session& session) {
  EditableList& list = commands.List();
  if (!Load(list)) return kNoSession;
  std::string reason;
  const int row = commands.Find(session.options().key, reason);
  if (row == 0) {
    Console::PrintError(reason);
    return kDifferent;
  }
  const int column = list.Description().editable_column;
  reason = RefuseDescription(session.options().name, list.MaxLength(column));
  if (!reason.empty()) {
    Console::PrintError(reason);
    return kDifferent;
  }
  if (list.Table().Text(row, column) != session.options().name) {
    list.OnBeforeEdit(row, column);
    list.Table().SetText(row, column, session.options().name);
    list.OnAfterEdit(row, column);
  }
  return SaveList(list, session);
}

ExitStatus ExportRows(CommandList& commands, Session& /*session*/) {
  EditableList& list = commands.List();
  if (!Load(list)) return kNoSession;
  return PrintData(ExportList(list.Table(), ',')) ? kDone : kFailed;
}

ExitStatus ImportFile(CommandList& commands, Session& session) {
  EditableList& list = commands.List();
  if (!Load(list)) return kNoSession;
  const Options& options = session.options();
  const auto plan =
      PlanFile(list, options.file, options.replace ? ImportMode::kReplace : ImportMode::kMerge);
  if (!plan) return kDifferent;
  const int refused = plan->Count(ImportVerdict::kRefused);
  if (refused > 0 && !options.skip_refused) {
    Console::PrintError("nothing was written: " + std::to_string(refused) +
                        " lines were refused (--skip-refused passes them over)");
    return kDifferent;
  }
  list.ApplyImport(*plan);
  const ExitStatus status = SaveList(list, session);
  return status == kDone && refused > 0 ? kDifferent : status;
}

ExitStatus DiffFile(CommandList& commands, Session& session) {
  EditableList& list = commands.List();
  if (!Load(list)) return kNoSession;
  const auto plan = PlanFile(list, session.options().file, ImportMode::kReplace);
  if (!plan) return kDifferent;
  const bool same = plan->ChangesNothing() && plan->Count(ImportVerdict::kRefused) == 0;
  list.ApplyImport(*plan);
  const ExitStatus status = PrintPending(list, session);
  return status != kDone || same ? status : kDifferent;
}

}  // namespace quillan
