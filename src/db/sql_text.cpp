#include "db/sql_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {

std::string SqlText(std::string_view text) {
  return (text::IsAscii(text) ? "'" : "N'") + text::ReplaceAll(text, "'", "''") + "'";
}

std::string SqlKey(std::string_view text) {
  // Most are whole numbers as they are; every stored row passes here before a save.
  constexpr size_t kMostDigits = 18;  // Always within 64 bits.
  if (!text.empty() && text.size() <= kMostDigits && text.front() != '0' &&
      std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; })) {
    return std::string(text);
  }
  const std::string_view digits = text::TrimSpaces(text);
  std::int64_t whole = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), whole);
  if (error == std::errc() && end == digits.data() + digits.size()) return std::to_string(whole);
  return text::FormatDigits(text::RoundHalfToEven(text::ReadLeadingNumber(text)));
}

}  // namespace quillan
