#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/value.h"
#include "platform/text/string_arena.h"

namespace quillan::ado {

/// The rows of one query in memory: besides the bytes of its texts a row takes five bytes for each
/// text, nine for each number, and twelve. A driver fills it column by column, row by row; rows are
/// only ever appended. Movable, not copyable.
class RowStore {
 public:
  /// `sizes`: for each column the most characters that a text in it may have, 0 where there is no
  /// limit; may be empty.
  explicit RowStore(std::vector<std::string> columns, std::vector<size_t> sizes = {})
      : columns_(std::move(columns)), sizes_(std::move(sizes)) {
    sizes_.resize(columns_.size());
  }

  const std::vector<std::string>& columns() const { return columns_; }
  const std::vector<size_t>& sizes() const { return sizes_; }
  size_t row_count() const { return rows_.size(); }

  /// The next column of the row being written; after the last column `EndRow`.
  void AddNull() { AddTag(Tag::kNull); }
  void AddWhole(std::int64_t value);
  void AddReal(double value);
  void AddText(std::string_view value);
  void Add(const Value& value);
  /// Stores the row that was written since the last call; columns not written are Null.
  void EndRow();
  /// Puts the last row in the place of row `row`.
  void ReplaceByLast(size_t row);

  /// Reads row `row` (0 .. row_count() - 1) into `values`, one for each column. Its texts stay
  /// valid as long as the store.
  void Read(size_t row, std::span<Value> values) const;

 private:
  enum class Tag : char { kNull, kWhole, kReal, kText };

  void AddTag(Tag tag) {
    row_ += static_cast<char>(tag);
    ++written_columns_;
  }
  template <typename Number>
  void AddNumber(Number value) {
    row_.append(reinterpret_cast<const char*>(&value), sizeof value);
  }

  std::vector<std::string> columns_;
  std::vector<size_t> sizes_;
  std::string row_;  // The row being written: for each column its tag and its value.
  size_t written_columns_ = 0;
  std::vector<const char*> rows_;  // In values_.
  text::StringArena values_;
};

}  // namespace quillan::ado
