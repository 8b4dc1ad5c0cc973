#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/grid/grid.h"

namespace quillan {

/// The rows that hold every word of a typed string in some visible column, without regard to case.
/// Blanks separate words; no word at all matches every row.
class RowFilter {
 public:
  explicit RowFilter(std::string_view typed);

  bool Matches(const Grid& grid, int row) const;
  /// The same for a row that no grid holds.
  bool Matches(std::span<const std::string_view> columns) const;

 private:
  struct Word {
    std::string folded;
    bool ascii;
  };

  static bool Contains(std::string_view text, const Word& word);

  std::vector<Word> words_;
};

}  // namespace quillan
