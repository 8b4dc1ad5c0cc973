#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/grid/grid.h"

namespace quillan {

/// Words that must all occur in a row, each in any of its columns, without regard to case.
class WordFilter {
 public:
  /// `text` holds the words, separated by blanks; without any every row matches.
  explicit WordFilter(std::string_view text);
  bool Matches(std::span<const std::string_view> columns) const;

 private:
  std::vector<std::string> words_;
};

/// What else than words a list's filter understands.
enum class FilterKind {
  kText,
  kPorts,   ///< A number matches the port of that number alone.
  kGroups,  ///< An address matches every range that holds it.
};

/// The filter of a list over its visible columns.
class RowFilter {
 public:
  RowFilter(const Grid& grid, std::string_view text, FilterKind kind);
  bool Matches(int row) const;
  /// The address that the filter looks for, as an IPSortValue; nothing if it looks for words.
  std::optional<double> Address() const;

 private:
  const Grid& grid_;
  FilterKind kind_;
  WordFilter words_;
  std::optional<double> key_;  // A port or an address.
};

}  // namespace quillan
