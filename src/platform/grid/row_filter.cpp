#include "platform/grid/row_filter.h"

#include <algorithm>

#include "platform/text/ascii.h"
#include "platform/text/case_fold.h"

namespace quillan {
namespace {

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }

// Folding every text would take several times as long as the search.
bool ContainsAscii(std::string_view text, std::string_view folded) {
  const auto found = std::search(text.begin(), text.end(), folded.begin(), folded.end(),
                                 [](char c, char wanted) { return LowerAscii(c) == wanted; });
  return found != text.end();
}

}  // namespace

RowFilter::RowFilter(std::string_view typed) {
  const std::string folded = text::FoldCase(typed);
  std::string_view rest = folded;
  while (!rest.empty()) {
    const size_t length = std::min(rest.find_first_of(" \t"), rest.size());
    const std::string_view word = rest.substr(0, length);
    if (!word.empty()) words_.push_back({std::string(word), text::IsAscii(word)});
    rest.remove_prefix(std::min(length + 1, rest.size()));
  }
}

bool RowFilter::Contains(std::string_view text, const Word& word) {
  if (word.ascii) return ContainsAscii(text, word.folded);
  if (text::IsAscii(text)) return false;
  return text::FoldCase(text).find(word.folded) != std::string::npos;
}

bool RowFilter::Matches(const Grid& grid, int row) const {
  return std::all_of(words_.begin(), words_.end(), [&](const Word& word) {
    for (int column = 0; column < grid.Columns(); ++column) {
      if (!grid.Column(column).hidden && Contains(grid.Text(row, column), word)) return true;
    }
    return false;
  });
}

bool RowFilter::Matches(std::span<const std::string_view> columns) const {
  return std::all_of(words_.begin(), words_.end(), [&](const Word& word) {
    return std::any_of(columns.begin(), columns.end(),
                       [&](std::string_view text) { return Contains(text, word); });
  });
}

}  // namespace quillan
