#include "platform/text/number.h"

#include <array>
#include <charconv>
#include <cmath>
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

}  // namespace

double ReadLeadingNumber(std::string_view text) {
  size_t at = 0;
  std::string number;
  const char sign = Next(text, at);
  if (sign == '+' || sign == '-') ++at;
  TakeDigits(text, at, number);
  const bool whole_digits = !number.empty();
  if (Next(text, at) == '.') {
    ++at;
    number += '.';
    TakeDigits(text, at, number);
  }
  if (!whole_digits && number.size() <= 1) return 0;
  TakeExponent(text, at, number);

  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // Too small to tell from 0, or too large for any whole number.
    const bool whole_part = number.find_first_of("123456789") < number.find('.');
    const size_t e = number.find('e');
    const bool tiny = e == std::string::npos ? !whole_part : number[e + 1] == '-';
    value = tiny ? 0 : std::numeric_limits<double>::infinity();
  }
  return sign == '-' ? -value : value;
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

std::string FormatDigits(double value) { return std::to_string(static_cast<std::int64_t>(value)); }

}  // namespace quillan::text
