#pragma once

#include <optional>
#include <string_view>

#include "platform/grid/row_filter.h"

namespace quillan {

/// What else than words a list's filter understands.
enum class FilterKind {
  kText,
  kPorts,   ///< A number matches the port of that number alone.
  kGroups,  ///< An address matches every range that holds it.
};

/// What is typed to filter a list: words that must all occur in a row, or a port or an address.
class ListFilter {
 public:
  ListFilter(std::string_view typed, FilterKind kind);

  bool Matches(const Grid& grid, int row) const;
  /// The address that the filter looks for, as an IPSortValue; nothing if it looks for words.
  std::optional<double> Address() const;

 private:
  FilterKind kind_;
  RowFilter words_;
  std::optional<double> key_;  // A port or an address.
};

}  // namespace quillan
