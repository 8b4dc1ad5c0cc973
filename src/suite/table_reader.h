#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/automation.h"

namespace quillan {

/// Reads the header and the rows of a table object (see `GridTable`) one by one, without hidden
/// columns.
class TableReader {
 public:
  /// `column_list` names the headers of the columns to read, separated by commas and without regard
  /// to case; all if it is empty. Throws `automation::Error`, as `Next` does, if the table does.
  TableReader(automation::ObjectRef table, std::string_view column_list);

  /// Reads the next row into `cells`, the header first; false at the end.
  bool Next(std::vector<std::string>& cells);

 private:
  automation::Value Call(std::string_view member, std::vector<automation::Value> arguments) const;
  int Number(std::string_view property) const;
  std::string Text(int row, int column) const;

  automation::ObjectRef table_;
  int rows_;
  int row_;
  std::vector<int> columns_;
};

}  // namespace quillan
