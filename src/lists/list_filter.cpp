#include "lists/list_filter.h"

#include "ip/ip_functions.h"
#include "lists/new_group.h"
#include "lists/new_port.h"
#include "platform/text/ascii.h"

namespace quillan {
namespace {

std::optional<double> ReadKey(std::string_view typed, FilterKind kind) {
  typed = text::TrimSpaces(typed);
  if (kind == FilterKind::kPorts) return ReadPortNumber(typed);
  if (kind == FilterKind::kGroups && IsValidIPAddress(typed)) return IPAddressToSortValue(typed);
  return std::nullopt;
}

}  // namespace

ListFilter::ListFilter(std::string_view typed, FilterKind kind)
    : kind_(kind), words_(typed), key_(ReadKey(typed, kind)) {}

bool ListFilter::Matches(const Grid& grid, int row) const {
  if (key_ && kind_ == FilterKind::kPorts) {
    return ReadPortNumber(grid.Text(row, kPortColumn)) == key_;
  }
  if (key_) {
    return grid.RowData(row).has_range &&
           IPAddressToSortValue(grid.Text(row, kGroupStartColumn)) <= *key_ &&
           *key_ <= IPAddressToSortValue(grid.Text(row, kGroupEndColumn));
  }
  return words_.Matches(grid, row);
}

std::optional<double> ListFilter::Address() const {
  return kind_ == FilterKind::kGroups ? key_ : std::nullopt;
}

}  // namespace quillan
