#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "platform/grid/grid.h"
#include "platform/text/ascii.h"
#include "platform/text/collation.h"

namespace quillan {
namespace {

struct NumberKey {
  double value;
  std::uint32_t row;
};

struct TextKey {
  std::string key;
  std::uint32_t row;
};

// The value of a string that is a decimal number and nothing else.
std::optional<double> WholeTextNumber(std::string_view text) {
  text = text::TrimSpaces(text);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  // The words "inf" and "nan" convert too, and nothing can be ordered by the latter.
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

bool SmallerNumber(const NumberKey& a, const NumberKey& b) { return a.value < b.value; }
bool SmallerText(const TextKey& a, const TextKey& b) { return a.key < b.key; }

// Sorts stably in either direction: equal keys keep their order in both.
template <typename Key, typename Before>
std::vector<std::uint32_t> OrderOf(std::vector<Key>& keys, SortDirection direction, Before before) {
  if (direction == SortDirection::kAscending) {
    std::stable_sort(keys.begin(), keys.end(), before);
  } else {
    std::stable_sort(keys.begin(), keys.end(),
                     [&](const Key& a, const Key& b) { return before(b, a); });
  }
  std::vector<std::uint32_t> order;
  order.reserve(keys.size());
  for (const Key& key : keys) order.push_back(key.row);
  return order;
}

}  // namespace

std::vector<std::uint32_t> Grid::OrderByNumber(const std::vector<double>& keys,
                                               SortDirection direction) const {
  std::vector<NumberKey> numbered;
  numbered.reserve(keys.size());
  for (size_t i = 0; i < keys.size(); ++i) {
    numbered.push_back({keys[i], static_cast<std::uint32_t>(i) + kFixedRows});
  }
  return OrderOf(numbered, direction, SmallerNumber);
}

std::vector<std::uint32_t> Grid::OrderByText(int column, SortDirection direction) const {
  std::vector<NumberKey> numbers;
  std::vector<TextKey> others;
  for (int row = kFixedRows; row < Rows(); ++row) {
    const std::string_view string = Text(row, column);
    const auto place = static_cast<std::uint32_t>(row);
    if (const auto number = WholeTextNumber(string)) {
      numbers.push_back({*number, place});
    } else if (Column(column).digits_by_value) {
      others.push_back({text::CollationKey(text::DigitsByValue(string)), place});
    } else {
      others.push_back({text::CollationKey(string), place});
    }
  }
  std::vector<std::uint32_t> first = OrderOf(numbers, direction, SmallerNumber);
  std::vector<std::uint32_t> second = OrderOf(others, direction, SmallerText);
  if (direction == SortDirection::kDescending) first.swap(second);
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

void Grid::Sort(int column, SortDirection direction) {
  const Batch batch(*this);
  if (column != 0) {
    Permute(OrderByText(column, direction));
  } else {
    std::vector<double> states;
    states.reserve(rows_.size());
    for (int row = kFixedRows; row < Rows(); ++row) {
      states.push_back(static_cast<double>(Check(row, column)));
    }
    Permute(OrderByNumber(states, direction));
  }
  sort_column_ = column;
  sort_direction_ = direction;
}

void Grid::SortByKey(int column, SortDirection direction, const std::function<double(int)>& key) {
  const Batch batch(*this);
  std::vector<double> keys;
  keys.reserve(rows_.size());
  for (int row = kFixedRows; row < Rows(); ++row) {
    // Once the rows have been sorted their texts lie scattered; waiting for each took half the
    // sort.
    constexpr int kRowsAhead = 16;
    if (row + kRowsAhead < Rows()) __builtin_prefetch(At(row + kRowsAhead, column).text);
    keys.push_back(key(row));
  }
  Permute(OrderByNumber(keys, direction));
  sort_column_ = column;
  sort_direction_ = direction;
}

void Grid::Permute(const std::vector<std::uint32_t>& order) {
  std::vector<Cell> cells;
  std::vector<Row> rows;
  cells.reserve(cells_.size());
  rows.reserve(rows_.size());
  const auto take = [&](size_t row) {
    const auto first = cells_.begin() + static_cast<std::ptrdiff_t>(row * width_);
    cells.insert(cells.end(), first, first + static_cast<std::ptrdiff_t>(width_));
    rows.push_back(rows_[row]);
  };
  for (size_t row = 0; row < std::min<size_t>(kFixedRows, rows_.size()); ++row) take(row);
  int current = current_row_;
  for (const std::uint32_t row : order) {
    if (static_cast<int>(row) == current_row_) current = static_cast<int>(rows.size());
    take(row);
  }
  cells_.swap(cells);
  rows_.swap(rows);
  current_row_ = current;
  first_selected_ = kFixedRows;
  last_selected_ = Rows() - 1;
  reset_ = true;
  selection_set_ = true;
}

}  // namespace quillan
