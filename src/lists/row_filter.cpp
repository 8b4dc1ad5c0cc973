#include "lists/row_filter.h"

#include <algorithm>

#include "ip/ip_functions.h"
#include "lists/new_group.h"
#include "lists/new_port.h"
#include "platform/text/ascii.h"
#include "platform/text/case_fold.h"

namespace quillan {
namespace {

std::optional<double> ReadKey(std::string_view text, FilterKind kind) {
  text = text::TrimSpaces(text);
  if (kind == FilterKind::kPorts) return ReadPortNumber(text);
  if (kind == FilterKind::kGroups && IsValidIPAddress(text)) return IPAddressToSortValue(text);
  return std::nullopt;
}

}  // namespace

WordFilter::WordFilter(std::string_view text) {
  const std::string folded = text::FoldCase(text);
  size_t start = 0;
  while ((start = folded.find_first_not_of(" \t", start)) != std::string::npos) {
    const size_t end = std::min(folded.find_first_of(" \t", start), folded.size());
    words_.push_back(folded.substr(start, end - start));
    start = end;
  }
}

bool WordFilter::Matches(std::span<const std::string_view> columns) const {
  if (words_.empty()) return true;
  std::vector<std::string> folded;
  folded.reserve(columns.size());
  for (const std::string_view column : columns) folded.push_back(text::FoldCase(column));
  return std::all_of(words_.begin(), words_.end(), [&](const std::string& word) {
    return std::any_of(folded.begin(), folded.end(), [&](const std::string& column) {
      return column.find(word) != std::string::npos;
    });
  });
}

RowFilter::RowFilter(const Grid& grid, std::string_view text, FilterKind kind)
    : grid_(grid), kind_(kind), words_(text), key_(ReadKey(text, kind)) {}

bool RowFilter::Matches(int row) const {
  if (key_ && kind_ == FilterKind::kPorts) {
    return ReadPortNumber(grid_.Text(row, kPortColumn)) == key_;
  }
  if (key_) {
    return grid_.RowData(row).has_range &&
           IPAddressToSortValue(grid_.Text(row, kGroupStartColumn)) <= *key_ &&
           *key_ <= IPAddressToSortValue(grid_.Text(row, kGroupEndColumn));
  }
  std::vector<std::string_view> columns;
  for (int column = 1; column < grid_.Columns(); ++column) {
    if (!grid_.Column(column).hidden) columns.push_back(grid_.Text(row, column));
  }
  return words_.Matches(columns);
}

std::optional<double> RowFilter::Address() const {
  return kind_ == FilterKind::kGroups ? key_ : std::nullopt;
}

}  // namespace quillan
