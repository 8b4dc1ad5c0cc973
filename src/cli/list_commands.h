#pragma once

#include <functional>
#include <memory>
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
  std::string_view add_button;  ///< The list's buttons.
  std::string_view delete_button;
};

/// A list that the command line edits: the user of its add button enters what the command line
/// says.
class CommandList {
 public:
  virtual ~CommandList() = default;
  virtual EditableList& List() = 0;
  virtual const ListOutput& Output() const = 0;
  /// The row that a key names; 0 if there is none, with the reason in `reason`.
  virtual int Find(std::string_view key, std::string& reason) = 0;
  /// Whether the new row was refused; the reason has been printed.
  bool Refused() const { return refused_; }

 protected:
  /// Prints why the new row is refused.
  std::nullopt_t Refuse(std::string_view reason);

 private:
  bool refused_ = false;
};

/// The lists of a session.
std::unique_ptr<CommandList> Ports(Session& session);
std::unique_ptr<CommandList> Groups(Session& session);

// The commands for a list, over the keys, names and files of the command line.

/// Prints the rows that match the filter.
ExitStatus PrintList(CommandList& list, Session& session);
ExitStatus AddRow(CommandList& list, Session& session);
// Without --skip-refused one key that names no row is enough to do nothing.
ExitStatus EnableRows(CommandList& list, Session& session);
ExitStatus DisableRows(CommandList& list, Session& session);
ExitStatus DeleteRows(CommandList& list, Session& session);
ExitStatus RenameRow(CommandList& list, Session& session);
ExitStatus ImportFile(CommandList& list, Session& session);
/// Prints the rows as a file that can be imported.
ExitStatus ExportRows(CommandList& list, Session& session);
/// Prints how the list differs from the file, without changing anything.
ExitStatus DiffFile(CommandList& list, Session& session);

// What commands for other lists share with these.

/// Writes the list's pending rows, or prints them if this is a dry run. Conflicts are printed and
/// overwritten if the user said yes to all questions.
ExitStatus SaveList(CheckableList& list, Session& session);

/// Reads `list` from the database; false, and said on standard error, if it cannot.
bool Load(CheckableList& list);

}  // namespace quillan
