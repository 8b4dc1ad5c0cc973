#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/row_printer.h"
#include "cli/session.h"
#include "lists/editable_list.h"
#include "lists/list_filter.h"

namespace quillan {

/// How a list appears on the command line.
struct ListOutput {
  std::vector<OutputColumn> columns;
  /// The values of a row, one for each column.
  std::function<std::vector<std::string>(const Grid& grid, int row)> values;
  FilterKind filter = FilterKind::kText;
};

/// The row that a key names; 0 if there is none, with the reason in `reason`.
using FindRow = std::function<int(std::string_view key, std::string& reason)>;

/// Prints the rows that match the filter.
ExitStatus PrintList(CheckableList& list, const ListOutput& output, const Options& options);

/// Writes the list's pending rows, or prints them if this is a dry run. Conflicts are printed and
/// overwritten if the user said yes to all questions.
ExitStatus SaveList(CheckableList& list, Session& session);

/// Selects the rows that the keys of the command line name, and runs one of the list's commands on
/// them. Without --skip-refused one key that names no row is enough to do nothing.
ExitStatus RunOnRows(CheckableList& list, const FindRow& find, std::string_view command,
                     Session& session);

/// Renames the row that the key names.
ExitStatus RenameRow(CheckableList& list, const FindRow& find, Session& session);

/// Prints the rows as a file that can be imported.
ExitStatus ExportRows(CheckableList& list);
/// Imports the file of the command line into `list`.
ExitStatus ImportFile(EditableList& list, Session& session);
/// Prints how `list` differs from the file, without changing anything.
ExitStatus DiffFile(EditableList& list, Session& session);

/// Reads `list` from the database; false, and said on standard error, if it cannot.
bool Load(CheckableList& list);

/// Presses a button of the list.
void RunCommand(CheckableList& list, std::string_view name);

}  // namespace quillan
