#include <array>
#include <map>

#include "cli/commands.h"
#include "cli/list_commands.h"
#include "lists/interfaces_list.h"
#include "platform/text/ascii.h"

namespace quillan {
namespace {

std::vector<OutputColumn> SourceColumns() {
  return {{"Monitored", "monitored", ValueKind::kBoolean},
          {"Node Name", "node"},
          {"Interface Name", "interface"},
          {"Interface Id", "id", ValueKind::kNumber}};
}

// The rows that the command line names. All of its keys must name one.
std::vector<int> NamedRows(const Grid& grid, const Options& options, bool& refused) {
  std::vector<int> rows;
  std::map<std::string_view, bool> found;
  for (const std::string& id : options.keys) found[id] = false;
  bool node_found = options.node.empty();
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    bool named = options.all;
    if (!options.node.empty() &&
        text::EqualsIgnoringCase(grid.Text(row, kSourceNodeColumn), options.node)) {
      named = node_found = true;
    }
    if (const auto id = found.find(grid.Text(row, kSourceIdColumn)); id != found.end()) {
      named = id->second = true;
    }
    if (named) rows.push_back(row);
  }
  if (!node_found) {
    Console::PrintError("there is no node " + options.node);
    refused = true;
  }
  for (const auto& [id, is_found] : found) {
    if (is_found) continue;
    Console::PrintError("there is no interface " + std::string(id));
    refused = true;
  }
  return rows;
}

ExitStatus CheckSources(Session& session, char32_t key) {
  InterfacesList list(session.Services());
  if (!Load(list)) return kNoSession;
  Grid& grid = list.Table();
  bool refused = false;
  const std::vector<int> rows = NamedRows(grid, session.options(), refused);
  if (refused && !session.options().skip_refused) return kDifferent;
  {
    const Grid::Batch batch(grid);
    for (const int row : rows) grid.SetSelected(row, row, true);
    list.OnKeyPress(key);
  }
  const ExitStatus status = SaveList(list, session);
  return status == kDone && refused ? kDifferent : status;
}

}  // namespace

// Passes the rows on as they come, since there can be millions of them.
ExitStatus ListSources(Session& session) {
  const Options& options = session.options();
  const RowFilter filter(options.filter);
  RowPrinter printer(options.format, SourceColumns());
  const bool read = ForEachInterface(session.database(), [&](const InterfaceRow& row) {
    const std::array<std::string_view, 4> values = {row.monitored ? "yes" : "no", row.node,
                                                    row.name, row.id};
    if (filter.Matches(std::span(values).subspan(1))) printer.Row(values);
    return !Console::Interrupted();
  });
  if (!read) {
    Console::PrintError(session.database().LastError());
    return kNoSession;
  }
  return printer.Finish() && !Console::Interrupted() ? kDone : kFailed;
}

ExitStatus EnableSources(Session& session) { return CheckSources(session, '+'); }
ExitStatus DisableSources(Session& session) { return CheckSources(session, '-'); }

}  // namespace quillan
