#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lists/checkable_list.h"
#include "lists/list_import.h"

namespace quillan {

/// What makes a row of a list one of its own: first and last port or address, as numbers.
using ImportKey = std::pair<double, double>;

/// How lines of a file are judged for one list.
class ImportRules {
 public:
  virtual ~ImportRules() = default;
  virtual const ImportColumns& Columns() const = 0;
  /// The key of a row; nothing if it has none.
  virtual std::optional<ImportKey> KeyOf(int row) const = 0;
  /// The key of a line, its strings put into `line` in their usual form; nothing, and
  /// `line.reason` set, if it has none.
  virtual std::optional<ImportKey> ReadKey(const ImportRecord& record, ImportLine& line) const = 0;
  /// Called once before the members below: `remaining` are the rows that will not be deleted,
  /// `keys` those that may be asked for. Returns why the database cannot be read; empty if it can.
  virtual std::string Prepare(const std::vector<int>& remaining,
                              const std::vector<ImportKey>& keys) = 0;
  /// Why a row of this key cannot be added to the remaining rows and those added before; empty if
  /// it can, and then it has been added.
  virtual std::string AddNew(const ImportKey& key, int line) = 0;
};

/// Judges the file `bytes` line by line against the rows of `list`: a key that the list has means
/// changed or unchanged, any other one a new row, unless the rules refuse it, an earlier line has
/// the same key or the database cannot take the description. Rows to be deleted count as gone, and
/// come back where the file has their key.
ImportPlan PlanImport(std::string_view bytes, ImportMode mode, const CheckableList& list,
                      ImportRules& rules);

}  // namespace quillan
