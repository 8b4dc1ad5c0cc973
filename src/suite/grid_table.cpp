#include "suite/grid_table.h"

#include "platform/text/ascii.h"

namespace quillan {

using automation::Value;

GridTable::GridTable(const Grid& grid, CheckWord check_word)
    : grid_(grid), check_word_(check_word) {
  for (int row = 0; row < grid.Rows(); ++row) {
    if (grid.IsShown(row)) rows_.push_back(row);
  }
}

Value GridTable::Get(std::string_view property) {
  if (property == "Rows") return static_cast<std::int32_t>(rows_.size());
  if (property == "Cols") return grid_.Columns();
  if (property == "FixedRows") return Grid::kFixedRows;
  automation::RefuseMember(TypeName(), property);
}

void GridTable::Put(std::string_view property, const Value& /*value*/) {
  automation::RefuseMember(TypeName(), property);
}

Value GridTable::Call(std::string_view member, std::span<Value> arguments) {
  const auto index = [&](size_t argument, int end) {
    const auto* number = std::get_if<std::int32_t>(&arguments[argument]);
    if (number == nullptr || *number < 0 || *number >= end) {
      throw automation::Error(automation::kSubscriptOutOfRange, "The table has no such cell.");
    }
    return *number;
  };
  if (member == "TextMatrix" && arguments.size() == 2) {
    const int row = index(0, static_cast<int>(rows_.size()));
    return CellText(rows_[static_cast<size_t>(row)], index(1, grid_.Columns()));
  }
  if (member == "ColHidden" && arguments.size() == 1) {
    return grid_.Column(index(0, grid_.Columns())).hidden;
  }
  automation::RefuseMember(TypeName(), member);
}

std::string GridTable::CellText(int row, int column) const {
  const std::string_view text = grid_.Text(row, column);
  if (row < Grid::kFixedRows) return std::string(text::TrimSpaces(text));
  return std::string(column == 0 ? check_word_(grid_.Check(row, column)) : text);
}

}  // namespace quillan
