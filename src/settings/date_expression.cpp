#include "settings/date_expression.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <optional>

#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

using text::DateTime;

constexpr DateTime kEarliest{
    std::chrono::local_days{std::chrono::year{100} / std::chrono::January / 1}};
constexpr DateTime kEnd{
    std::chrono::local_days{std::chrono::year{10000} / std::chrono::January / 1}};
constexpr double kDaySeconds = 86400;
constexpr int kQuarterMonths = 3;

// Seconds of the units of one fixed length; 0 for any other letter.
constexpr int UnitSeconds(char unit) {
  switch (unit) {
    case 'S':
      return 1;
    case 'M':
    case 'N':
      return 60;
    case 'H':
      return 3600;
    case 'D':
    case 'W':  // Weekday and day of the year step by days when they are added.
    case 'Y':
      return 86400;
    default:
      return 0;
  }
}

std::optional<DateTime> AddSeconds(DateTime value, double seconds) {
  constexpr double kMost = 1e12;  // More than all the years together.
  if (!(std::abs(seconds) < kMost)) return std::nullopt;
  return value + std::chrono::seconds{std::llround(seconds)};
}

std::optional<DateTime> ReadOffset(std::string_view text, DateTime now) {
  const size_t blank = text.find(' ');
  if (blank == std::string_view::npos) {
    return AddSeconds(now, text::ReadLeadingNumber(text) * kDaySeconds);
  }
  const auto amount = text::ReadLeadingWhole(text);
  const char unit = text::ToUpperAscii(text[blank + 1]);
  if (!amount) return std::nullopt;
  if (unit == 'Q') {
    constexpr std::int32_t kMostQuarters = 40000;  // Ten thousand years.
    if (*amount < -kMostQuarters || *amount > kMostQuarters) return std::nullopt;
    return AddMonths(now, *amount * kQuarterMonths);
  }
  if (UnitSeconds(unit) == 0) return std::nullopt;
  return AddSeconds(now, static_cast<double>(*amount) * UnitSeconds(unit));
}

}  // namespace

DateTime ReadDateExpression(std::string_view text, DateTime now, const text::UserLocale& locale) {
  text = text::TrimSpaces(text);
  if (text::EqualsIgnoringCase(text, "NOW")) return now;
  const auto value = text.starts_with('-') ? ReadOffset(text, now) : locale.ReadDateTime(text);
  const bool usable = value && *value >= kEarliest && *value < kEnd;
  return usable ? *value : text::kZeroDate;
}

DateTime AddMonths(DateTime value, int months) {
  const auto day = std::chrono::floor<std::chrono::days>(value);
  std::chrono::year_month_day date = std::chrono::year_month_day(day) + std::chrono::months(months);
  if (!date.ok()) date = date.year() / date.month() / std::chrono::last;
  return DateTime{std::chrono::local_days{date}} + (value - day);
}

}  // namespace quillan
