#include "platform/text/number.h"

#include <locale.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace quillan::text {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsSkipped(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// The next character that counts, from `at` on; NUL at the end of the text.
char Next(std::string_view text, size_t& at) {
  while (at < text.size() && IsSkipped(text[at])) ++at;
  return at < text.size() ? text[at] : '\0';
}

void TakeDigits(std::string_view text, size_t& at, std::string& number) {
  for (char c = Next(text, at); IsDigit(c); c = Next(text, at)) {
    number += c;
    ++at;
  }
}

// Appends "e", sign and digits where a whole exponent follows.
void TakeExponent(std::string_view text, size_t at, std::string& number) {
  const char e = Next(text, at);
  if (e != 'e' && e != 'E') return;
  ++at;
  std::string exponent = "e";
  const char sign = Next(text, at);
  if (sign == '+' || sign == '-') {
    exponent += sign;
    ++at;
  }
  const size_t before = exponent.size();
  TakeDigits(text, at, exponent);
  if (exponent.size() > before) number += exponent;
}

// The decimal number at the start of `text` without its sign; empty if there is none.
std::string TakeDecimal(std::string_view text, bool& negative) {
  size_t at = 0;
  std::string number;
  const char sign = Next(text, at);
  negative = sign == '-';
  if (negative || sign == '+') ++at;
  TakeDigits(text, at, number);
  const bool whole_digits = !number.empty();
  if (Next(text, at) == '.') {
    ++at;
    number += '.';
    TakeDigits(text, at, number);
  }
  if (!whole_digits && number.size() <= 1) return {};
  TakeExponent(text, at, number);
  return number;
}

}  // namespace

std::optional<double> ParseDecimal(const std::string& text) {
  if (text.find_first_not_of("0123456789.eE+-") != std::string::npos) return std::nullopt;
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return std::nullopt;
  // Unlike std::from_chars it tells numbers that are too large from those that are too small.
  static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);
  char* end = nullptr;
  const double value = strtod_l(text.c_str(), &end, c_locale);
  return end == text.c_str() + text.size() ? std::optional(value) : std::nullopt;
}

double ReadLeadingNumber(std::string_view text) {
  bool negative = false;
  const double value = ParseDecimal(TakeDecimal(text, negative)).value_or(0);
  return negative ? -value : value;
}

bool StartsWithNumber(std::string_view text) {
  bool negative = false;
  return !TakeDecimal(text, negative).empty();
}

std::optional<std::int32_t> ReadLeadingWhole(std::string_view text) {
  const double value = RoundHalfToEven(ReadLeadingNumber(text));
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(value);
}

double RoundHalfToEven(double value) {
  const double below = std::floor(value);
  const double fraction = value - below;
  if (fraction < 0.5) return below;
  if (fraction > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::string FormatGeneral(double value) {
  std::array<char, 40> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::general, 15);
  std::string text(digits.data(), end.ptr);
  if (const size_t e = text.find('e'); e != std::string::npos) text[e] = 'E';
  return text;
}

std::string FormatDigits(double value) {
  std::array<char, 320> digits{};  // The largest double has 309 digits.
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::fixed, 0);
  return {digits.data(), end.ptr};
}

}  // namespace quillan::text
