#include "settings/option_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

template <typename Whole>
std::optional<Whole> ReadWhole(std::string_view text, const text::UserLocale& locale) {
  const auto number = locale.ReadNumber(text);
  if (!number) return std::nullopt;
  const double rounded = text::RoundHalfToEven(*number);
  if (!(rounded >= std::numeric_limits<Whole>::min() &&
        rounded <= std::numeric_limits<Whole>::max())) {
    return std::nullopt;
  }
  return static_cast<Whole>(rounded);
}

}  // namespace

std::string ToOptionText(bool value, const text::UserLocale& /*locale*/) {
  return value ? "True" : "False";
}

std::string ToOptionText(std::int16_t value, const text::UserLocale& /*locale*/) {
  return std::to_string(value);
}

std::string ToOptionText(std::int32_t value, const text::UserLocale& /*locale*/) {
  return std::to_string(value);
}

std::string ToOptionText(float value, const text::UserLocale& locale) {
  // By way of the shortest text, so that 0.1 does not become 0.100000001490116.
  std::array<char, 40> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  double shortest = 0;
  std::from_chars(digits.data(), end.ptr, shortest);
  return locale.FormatNumber(shortest);
}

std::string ToOptionText(const std::string& value, const text::UserLocale& /*locale*/) {
  return value;
}

template <>
std::optional<bool> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  const std::string_view word = text::TrimSpaces(text);
  if (text::EqualsIgnoringCase(word, "True")) return true;
  if (text::EqualsIgnoringCase(word, "False")) return false;
  const auto number = locale.ReadNumber(text);
  return number ? std::optional(*number != 0) : std::nullopt;
}

template <>
std::optional<std::int16_t> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  return ReadWhole<std::int16_t>(text, locale);
}

template <>
std::optional<std::int32_t> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  return ReadWhole<std::int32_t>(text, locale);
}

template <>
std::optional<float> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  const auto number = locale.ReadNumber(text);
  if (!number || std::abs(*number) > std::numeric_limits<float>::max()) return std::nullopt;
  return static_cast<float>(*number);
}

template <>
std::optional<std::string> FromOptionText(std::string_view text,
                                          const text::UserLocale& /*locale*/) {
  return std::string(text);
}

}  // namespace quillan
