#include "platform/ado/row_store.h"

#include <cstring>

namespace quillan::ado {
namespace {

template <typename Number>
Number TakeNumber(const char*& at) {
  Number value{};
  std::memcpy(&value, at, sizeof value);
  at += sizeof value;
  return value;
}

}  // namespace

void RowStore::AddWhole(std::int64_t value) {
  AddTag(Tag::kWhole);
  AddNumber(value);
}

void RowStore::AddReal(double value) {
  AddTag(Tag::kReal);
  AddNumber(value);
}

void RowStore::AddText(std::string_view value) {
  AddTag(Tag::kText);
  AddNumber(static_cast<std::uint32_t>(value.size()));
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

void RowStore::EndRow() {
  while (written_columns_ < columns_.size()) AddNull();
  rows_.push_back(values_.Add(row_));
  row_.clear();
  written_columns_ = 0;
}

void RowStore::ReplaceByLast(size_t row) {
  rows_[row] = rows_.back();
  rows_.pop_back();
}

void RowStore::Read(size_t row, std::span<Value> values) const {
  const char* at = text::StringArena::View(rows_[row]).data();
  for (Value& value : values) {
    switch (static_cast<Tag>(*at++)) {
      case Tag::kNull:
        value = Null{};
        break;
      case Tag::kWhole:
        value = TakeNumber<std::int64_t>(at);
        break;
      case Tag::kReal:
        value = TakeNumber<double>(at);
        break;
      case Tag::kText: {
        const auto length = TakeNumber<std::uint32_t>(at);
        value = std::string_view(at, length);
        at += length;
        break;
      }
    }
  }
}

}  // namespace quillan::ado
