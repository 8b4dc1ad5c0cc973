#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/grid/grid.h"

namespace quillan {

enum class ImportMode {
  kMerge,    ///< Adds and changes rows; rows that the file lacks stay.
  kReplace,  ///< Rows that the file lacks are deleted, but for system-defined ones.
};

enum class ImportVerdict { kNew, kChanged, kUnchanged, kRefused };

/// What becomes of one line of an imported file.
struct ImportLine {
  int line = 0;  ///< From 1.
  ImportVerdict verdict = ImportVerdict::kRefused;
  std::string key;   ///< The port, or the start of the range; as in the file if refused.
  std::string end;   ///< The end of the range.
  std::string name;  ///< What the row's description will be; as in the file if refused.
  bool enabled = true;
  std::string reason;  ///< Why the line is refused, or a note on an accepted one.
  int row = 0;         ///< The existing row; 0 if there is none.
};

/// What an import would do to a list; valid until the list's rows change.
struct ImportPlan {
  std::string error;  ///< Why nothing can be imported; empty if `lines` holds the verdicts.
  std::vector<ImportLine> lines;
  std::vector<int> deleted_rows;  ///< Rows that the file lacks, ascending.
  std::vector<int> kept_rows;     ///< System-defined rows that stay though the file lacks them.

  int Count(ImportVerdict verdict) const;
  /// Whether accepted lines and deletions leave the list as it is.
  bool ChangesNothing() const;
};

/// The names under which a file's header may give the columns of a list, in lower case, and what
/// the first key of a file without a header looks like.
struct ImportColumns {
  std::span<const std::string_view> key;
  std::span<const std::string_view> end;  ///< Empty in a list whose key is one column.
  std::span<const std::string_view> name;
  std::span<const std::string_view> enabled;
  bool (*looks_like_key)(std::string_view text);
  /// Whether the field after `key` is the end of the range that begins there.
  bool (*has_end)(std::string_view key, std::string_view next) = nullptr;
};

/// One line of a file, taken apart but not judged.
struct ImportRecord {
  int line = 0;
  std::string key;
  std::string end;
  std::optional<std::string> name;  ///< Nothing if the line has no such field.
  std::optional<bool> enabled;
  std::string fault;  ///< Why the line cannot be used; empty if it can.
};

/// The lines of a file: CSV or tab-separated (see text::DelimitedReader), in UTF-8, UTF-16 or
/// Windows-1252. The first line may name the columns; other columns are then ignored. Without names
/// the columns are key, end, name and check state, the last two optional, or the check state comes
/// first, as in a list. Nothing, and `error` set, if the file cannot be read.
std::vector<ImportRecord> ReadImport(std::string_view bytes, const ImportColumns& columns,
                                     std::string& error);

/// The state of a check box as a word in a file: "yes", "no", or "deleted" for a row without one.
std::string_view CheckWord(CheckState state);

/// The rows that `grid` shows, with a header, as separated text that `ReadImport` reads back.
std::string ExportList(const Grid& grid, char separator);

/// The selected rows without a header, tabs between their columns, as `ReadImport` reads them back.
std::string SelectedRowsText(const Grid& grid);

}  // namespace quillan
