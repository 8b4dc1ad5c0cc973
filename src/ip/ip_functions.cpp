#include "ip/ip_functions.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace quillan {
namespace {

constexpr double kNoAddress = -1;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Whether `part` is an integer 0..255, with an optional sign and with blanks around it.
bool IsValidPart(std::string_view part) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!part.empty() && is_blank(part.front())) part.remove_prefix(1);
  while (!part.empty() && is_blank(part.back())) part.remove_suffix(1);
  const bool negative = part.starts_with('-');
  if (negative || part.starts_with('+')) part.remove_prefix(1);
  if (part.empty()) return false;
  int number = 0;
  for (const char c : part) {
    if (!IsDigit(c)) return false;
    number = number * 10 + (c - '0');
    if (number > 255) return false;
  }
  return !negative || number == 0;
}

bool IsValidWithSignsAndBlanks(std::string_view text) {
  for (int part = 1; part < 4; ++part) {
    const size_t dot = text.find('.');
    if (dot == std::string_view::npos || !IsValidPart(text.substr(0, dot))) return false;
    text.remove_prefix(dot + 1);
  }
  return IsValidPart(text);  // A further dot is not a digit.
}

}  // namespace

double ReadIPAddress(const char* text, std::size_t size) noexcept {
  std::int64_t value = 0;
  int number = 0;
  int digits = 0;
  int dots = 0;
  for (const char c : std::string_view(text, size)) {
    if (IsDigit(c)) {
      number = number * 10 + (c - '0');
      if (number > 255) return kNoAddress;
      ++digits;
    } else if (c == '.' && digits > 0 && dots < 3) {
      value = value * 1000 + number;
      number = 0;
      digits = 0;
      ++dots;
    } else {
      // Rarely an address; if it is one, signs and blanks do not count.
      return IsValidWithSignsAndBlanks({text, size}) ? IPSortValueOfAnyText(text, size)
                                                     : kNoAddress;
    }
  }
  return digits > 0 && dots == 3 ? static_cast<double>(value * 1000 + number) : kNoAddress;
}

double IPSortValueOfAnyText(const char* text, std::size_t size) {
  double value = 0;
  double number = 0;
  bool has_digits = false;
  int parts = 1;
  const auto take_part = [&] {
    // A part of hundreds of digits, which a double cannot hold, is skipped like an empty one.
    const double next = value * 1000 + number;
    if (has_digits && std::isfinite(next)) value = next;
    number = 0;
    has_digits = false;
  };
  for (const char c : std::string_view(text, size)) {
    if (IsDigit(c)) {
      number = number * 10 + (c - '0');
      has_digits = true;
    } else if (c == '.') {
      take_part();
      if (++parts > 4) return value;
    }
  }
  take_part();
  return parts == 4 ? value : 0;
}

std::string SortValueToIPAddress(double value) {
  constexpr double kLimit = 1e18;  // Fits 64 bits.
  if (!(std::abs(value) < kLimit)) return "0.0.0.0";
  auto rest = static_cast<std::int64_t>(std::floor(value));
  std::array<int, 3> last_parts{};
  for (int& part : last_parts) {
    part = static_cast<int>(rest % 1000);
    if (part < 0) part += 1000;
    rest = (rest - part) / 1000;
  }
  std::array<char, 20> text;  // Four parts of at most five characters.
  char* end =
      std::to_chars(text.data(), text.data() + text.size(), static_cast<int>(rest % 1000)).ptr;
  for (auto part = last_parts.rbegin(); part != last_parts.rend(); ++part) {
    *end++ = '.';
    end = std::to_chars(end, text.data() + text.size(), *part).ptr;
  }
  return {text.data(), end};
}

double SortValueToAddressNumber(double value) {
  // The part of the address that counts in units of `divisor`.
  const auto part = [value](double divisor) {
    const double above = divisor * 1000;
    return std::floor((value - std::floor(value / above) * above) / divisor);
  };
  return std::floor(value / 1e9) * 16777216 + part(1e6) * 65536 + part(1e3) * 256 + part(1);
}

double AddressNumberToSortValue(std::uint32_t number) {
  double value = 0;
  for (const unsigned shift : {24U, 16U, 8U, 0U}) value = value * 1000 + (number >> shift & 0xFF);
  return value;
}

}  // namespace quillan
