#include "platform/ado/value.h"

#include <charconv>
#include <limits>
#include <system_error>

#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan::ado {

double ToNumber(const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return static_cast<double>(*whole);
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* text = std::get_if<std::string_view>(&value)) {
    return text::ReadLeadingNumber(*text);
  }
  return 0;
}

std::int64_t ToWhole(const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole;
  if (const auto* text = std::get_if<std::string_view>(&value)) {
    // A double would round digits beyond 2^53.
    std::int64_t whole = 0;
    const char* const end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, whole);
    if (error == std::errc() && stop == end) return whole;
  }
  const double rounded = text::RoundHalfToEven(ToNumber(value));
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (rounded >= kLimit) return std::numeric_limits<std::int64_t>::max();
  if (!(rounded >= -kLimit)) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(rounded);
}

bool ToBoolean(const Value& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) {
    if (text::EqualsIgnoringCase(text::TrimSpaces(*text), "true")) return true;
  }
  return ToNumber(value) != 0;
}

std::string ToText(const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
  if (const auto* real = std::get_if<double>(&value)) return text::FormatGeneral(*real);
  if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
  return {};
}

OwnedValue ToOwned(const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole;
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
  return Null{};
}

Value ToView(const OwnedValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole;
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* text = std::get_if<std::string>(&value)) return std::string_view{*text};
  return Null{};
}

}  // namespace quillan::ado
