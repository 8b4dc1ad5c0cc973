#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/automation.h"
#include "platform/grid/grid.h"

namespace quillan {

/// The rows that a grid shows as a table that the export engine reads: properties `Rows`, `Cols`
/// and `FixedRows`; `TextMatrix`(row, column), the text of a cell as the user sees it, a check box
/// as a word; and `ColHidden`(column). Rows and columns count from 0, the header is row 0.
class GridTable final : public automation::Object {
 public:
  using CheckWord = std::string_view (*)(CheckState state);

  /// The grid must outlive the object and keep its rows meanwhile. `check_word` names the check
  /// states of column 0.
  GridTable(const Grid& grid, CheckWord check_word);

  std::string TypeName() const override { return "GridTable"; }
  automation::Value Get(std::string_view property) override;
  void Put(std::string_view property, const automation::Value& value) override;
  automation::Value Call(std::string_view member, std::span<automation::Value> arguments) override;

 private:
  std::string CellText(int row, int column) const;

  const Grid& grid_;
  CheckWord check_word_;
  std::vector<int> rows_;  // Of the grid, those that are shown.
};

}  // namespace quillan
