#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/value.h"

namespace quillan::ado {

/// The rows of one query in memory, compactly: a row takes its texts' bytes, one or two bytes a
/// column besides, and a pointer. A driver fills it column by column, row by row; rows are only
/// ever appended. Movable, not copyable.
class RowStore {
 public:
  explicit RowStore(std::vector<std::string> columns) : columns_(std::move(columns)) {}

  const std::vector<std::string>& columns() const { return columns_; }
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

  static constexpr size_t kBlockBytes = size_t{1} << 20;

  void AddTag(Tag tag) {
    row_ += static_cast<char>(tag);
    ++written_columns_;
  }
  void AddLength(std::uint64_t value);
  char* Reserve(size_t bytes);

  std::vector<std::string> columns_;
  std::string row_;  // The row being written.
  size_t written_columns_ = 0;
  std::vector<const char*> rows_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  size_t free_bytes_ = 0;
};

}  // namespace quillan::ado
