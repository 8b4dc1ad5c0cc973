#include "suite/table_reader.h"

#include <algorithm>
#include <utility>

#include "platform/text/ascii.h"

namespace quillan {
namespace {

bool IsListed(std::string_view header, std::string_view column_list) {
  if (column_list.empty()) return true;
  while (true) {
    const size_t comma = std::min(column_list.find(','), column_list.size());
    const std::string_view name = text::TrimSpaces(column_list.substr(0, comma));
    if (text::EqualsIgnoringCase(name, text::TrimSpaces(header))) return true;
    if (comma == column_list.size()) return false;
    column_list.remove_prefix(comma + 1);
  }
}

}  // namespace

TableReader::TableReader(automation::ObjectRef table, std::string_view column_list)
    : table_(std::move(table)), rows_(Number("Rows")), row_(std::max(Number("FixedRows") - 1, 0)) {
  const int columns = Number("Cols");
  for (int column = 0; column < columns; ++column) {
    if (automation::ToBoolean(Call("ColHidden", {column}))) continue;
    if (rows_ > 0 && IsListed(Text(row_, column), column_list)) columns_.push_back(column);
  }
}

bool TableReader::Next(std::vector<std::string>& cells) {
  if (row_ >= rows_) return false;
  cells.clear();
  for (const int column : columns_) cells.push_back(Text(row_, column));
  ++row_;
  return true;
}

automation::Value TableReader::Call(std::string_view member,
                                    std::vector<automation::Value> arguments) const {
  return table_->Call(member, arguments);
}

int TableReader::Number(std::string_view property) const {
  const automation::Value value = table_->Get(property);
  const auto* number = std::get_if<std::int32_t>(&value);
  return number != nullptr ? *number : 0;
}

std::string TableReader::Text(int row, int column) const {
  return automation::ToText(Call("TextMatrix", {row, column}));
}

}  // namespace quillan
