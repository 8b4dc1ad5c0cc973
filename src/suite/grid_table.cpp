#include "suite/grid_table.h"

namespace quillan {

using automation::Value;

Value GridTable::Get(std::string_view property) {
  if (property == "Rows") return grid_.Rows();
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
    return CellText(index(0, grid_.Rows()), index(1, grid_.Columns()));
  }
  if (member == "ColHidden" && arguments.size() == 1) {
    return grid_.Column(index(0, grid_.Columns())).hidden;
  }
  automation::RefuseMember(TypeName(), member);
}

std::string GridTable::CellText(int row, int column) const {
  if (row >= Grid::kFixedRows && column == 0) {
    return std::string(check_word_(grid_.Check(row, column)));
  }
  return std::string(grid_.Text(row, column));
}

}  // namespace quillan
