#include "platform/ado/row_store.h"

#include <algorithm>
#include <cstring>

namespace quillan::ado {
namespace {

// Sign in the lowest bit, so that small negative numbers stay short.
std::uint64_t ZigZag(std::int64_t value) {
  return static_cast<std::uint64_t>(value) << 1 ^ static_cast<std::uint64_t>(value >> 63);
}

std::int64_t UnZigZag(std::uint64_t value) {
  return static_cast<std::int64_t>(value >> 1 ^ (~(value & 1) + 1));
}

// Seven bits a byte, lowest first; the high bit says that another byte follows.
std::uint64_t ReadLength(const char*& at) {
  std::uint64_t value = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto byte = static_cast<std::uint8_t>(*at++);
    value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return value;
  }
}

}  // namespace

void RowStore::AddLength(std::uint64_t value) {
  for (; value >= 0x80; value >>= 7) row_ += static_cast<char>(value | 0x80);
  row_ += static_cast<char>(value);
}

void RowStore::AddWhole(std::int64_t value) {
  AddTag(Tag::kWhole);
  AddLength(ZigZag(value));
}

void RowStore::AddReal(double value) {
  AddTag(Tag::kReal);
  row_.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void RowStore::AddText(std::string_view value) {
  AddTag(Tag::kText);
  AddLength(value.size());
  row_ += value;
}

void RowStore::Add(const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    AddWhole(*whole);
  } else if (const auto* real = std::get_if<double>(&value)) {
    AddReal(*real);
  } else if (const auto* text = std::get_if<std::string_view>(&value)) {
    AddText(*text);
  } else {
    AddNull();
  }
}

char* RowStore::Reserve(size_t bytes) {
  if (bytes > free_bytes_) {
    const size_t block = std::max(bytes, kBlockBytes);
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(block));
    free_ = blocks_.back().get();
    free_bytes_ = block;
  }
  char* const reserved = free_;
  free_ += bytes;
  free_bytes_ -= bytes;
  return reserved;
}

void RowStore::EndRow() {
  while (written_columns_ < columns_.size()) AddNull();
  char* const row = Reserve(row_.size());
  std::memcpy(row, row_.data(), row_.size());
  rows_.push_back(row);
  row_.clear();
  written_columns_ = 0;
}

void RowStore::ReplaceByLast(size_t row) {
  rows_[row] = rows_.back();
  rows_.pop_back();
}

void RowStore::Read(size_t row, std::span<Value> values) const {
  const char* at = rows_[row];
  for (Value& value : values) {
    switch (static_cast<Tag>(*at++)) {
      case Tag::kNull:
        value = Null{};
        break;
      case Tag::kWhole:
        value = UnZigZag(ReadLength(at));
        break;
      case Tag::kReal: {
        double real = 0;
        std::memcpy(&real, at, sizeof real);
        at += sizeof real;
        value = real;
        break;
      }
      case Tag::kText: {
        const size_t length = ReadLength(at);
        value = std::string_view(at, length);
        at += length;
        break;
      }
    }
  }
}

}  // namespace quillan::ado
