#include "settings/periods.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using text::DateTime;

DateTime Midnight(DateTime value) { return std::chrono::floor<days>(value); }

DateTime FirstOfMonth(DateTime value) {
  const std::chrono::year_month_day date(std::chrono::floor<days>(value));
  return std::chrono::local_days{date.year() / date.month() / 1};
}

DateTime FirstOfYear(DateTime value) {
  const std::chrono::year_month_day date(std::chrono::floor<days>(value));
  return std::chrono::local_days{date.year() / std::chrono::January / 1};
}

DateTime NextHour(DateTime value) { return std::chrono::floor<hours>(value) + hours{1}; }

DateTime Tomorrow(DateTime now) { return Midnight(now) + days{1}; }

// `value` moved by calendar months; a day that the month does not have becomes its last one.
DateTime AddMonths(DateTime value, int months) {
  const auto day = std::chrono::floor<days>(value);
  std::chrono::year_month_day date = std::chrono::year_month_day(day) + std::chrono::months(months);
  if (!date.ok()) date = date.year() / date.month() / std::chrono::last;
  return DateTime{std::chrono::local_days{date}} + (value - day);
}

using RangeRule = PeriodRange (*)(DateTime now);

struct BuiltInPeriod {
  std::string_view name;
  std::string_view aliases;
  std::string_view sample_size;
  bool includes_present;
  RangeRule range;  // Its sample sizes are its own, not always those of the period.
};

constexpr std::array<BuiltInPeriod, 13> kBuiltIn = {{
    {"Last Hour", "LASTHOUR,LAST HOUR,PASTHOUR,PAST HOUR", "10M", true,
     [](DateTime now) {
       return PeriodRange{now - hours{1}, now + minutes{1}, 10, "10M"};
     }},
    {"Last 2 Hours", "LAST2HOURS,LAST 2 HOURS,PAST2HOURS,PAST 2 HOURS", "10M", true,
     [](DateTime now) {
       return PeriodRange{now - hours{2}, now + minutes{1}, 10, "10M"};
     }},
    {"Last 24 Hours", "LAST24HOURS,LAST 24 HOURS,PAST24HOURS,PAST 24 HOURS", "30M", true,
     [](DateTime now) {
       return PeriodRange{now - days{1}, now + minutes{1}, 30, "30M"};
     }},
    {"Today", "TODAY", "30M", true,
     [](DateTime now) {
       return PeriodRange{Midnight(now), Tomorrow(now), 30, "30M"};
     }},
    {"Yesterday", "YESTERDAY", "30M", false,
     [](DateTime now) {
       return PeriodRange{Midnight(now) - days{1}, Midnight(now) - seconds{1}, 30, "30M"};
     }},
    {"Last 7 Days", "THISWEEK,THIS WEEK,LAST7DAYS,LAST 7 DAYS", "1H", true,
     [](DateTime now) {
       return PeriodRange{Midnight(now) - days{7}, NextHour(now), 60, "1H"};
     }},
    {"This Month", "THISMONTH,THIS MONTH,MONTH TO DATE,THIS MONTH TO DATE", "1H", true,
     [](DateTime now) {
       return PeriodRange{FirstOfMonth(now), Tomorrow(now), 60, "1H"};
     }},
    {"Last Month", "LASTMONTH,LAST MONTH", "1H", false,
     [](DateTime now) {
       const DateTime first = FirstOfMonth(now);
       return PeriodRange{AddMonths(first, -1), first - seconds{1}, 1440, "1D"};
     }},
    {"Last 30 Days", "LAST30DAYS,LAST 30 DAYS", "6H", true,
     [](DateTime now) {
       return PeriodRange{Midnight(now) - days{30}, Tomorrow(now), 1440, "1D"};
     }},
    {"Last 3 Months", "LAST3MONTHS,LAST 3 MONTHS", "1D", true,
     [](DateTime now) {
       return PeriodRange{AddMonths(Midnight(now), -3), Tomorrow(now), 1440, "1D"};
     }},
    {"This Year", "THISYEAR,THIS YEAR,YEAR TO DATE", "1D", true,
     [](DateTime now) {
       return PeriodRange{FirstOfYear(now), Tomorrow(now), 1440, "1D"};
     }},
    {"Last 12 Months", "LAST12MONTHS,LAST 12 MONTHS", "1D", true,
     [](DateTime now) {
       return PeriodRange{AddMonths(Midnight(now), -12), Tomorrow(now), 1440, "1D"};
     }},
    {"Custom", "CUSTOM", "30M", false, nullptr},
}};

constexpr int kQuarterMonths = 3;

// The date-time that an offset names: "-7" days, or "-30 M" of the unit whose letter follows the
// first blank.
std::optional<DateTime> AddOffset(DateTime now, std::string_view text) {
  const size_t blank = std::min(text.find(' '), text.size());
  const std::string_view amount_text = text.substr(0, blank);
  const auto amount = text::ReadLeadingWhole(amount_text);
  if (!amount || !text::StartsWithNumber(amount_text)) return std::nullopt;
  const std::int64_t count = *amount;
  switch (blank == text.size() ? 'D' : text::ToUpperAscii(text[blank + 1])) {
    case 'S':
      return now + seconds{count};
    case 'M':
    case 'N':
      return now + minutes{count};
    case 'H':
      return now + hours{count};
    case 'D':
    case 'W':  // Weekday and day of the year step by days when they are added.
    case 'Y':
      return now + days{count};
    case 'Q': {
      constexpr std::int64_t kMostQuarters = 40000;  // Ten thousand years.
      if (std::abs(count) > kMostQuarters) return std::nullopt;
      return AddMonths(now, static_cast<int>(count) * kQuarterMonths);
    }
    default:
      return std::nullopt;
  }
}

std::optional<DateTime> ReadDateExpression(std::string_view text, DateTime now,
                                           const text::UserLocale& locale) {
  text = text::TrimSpaces(text);
  if (text::EqualsIgnoringCase(text, "NOW")) return now;
  return text.starts_with('-') ? AddOffset(now, text) : locale.ReadDateTime(text);
}

}  // namespace

Periods::Periods(const Clock& clock, const text::UserLocale& locale)
    : clock_(clock), locale_(locale) {
  Refresh();
}

void Periods::Refresh() {
  periods_.clear();
  for (const BuiltInPeriod& period : kBuiltIn) {
    periods_.emplace_back(period.name, period.aliases, period.sample_size, period.includes_present);
  }
}

std::vector<Period>::const_iterator Periods::Find(std::string_view name) const {
  return std::find_if(periods_.begin(), periods_.end(), [&](const Period& period) {
    return text::EqualsIgnoringCase(period.Name(), name);
  });
}

const Period* Periods::Item(int position) const {
  if (position < 1 || position > Count()) return nullptr;
  return &periods_[static_cast<size_t>(position) - 1];
}

const Period* Periods::Item(std::string_view name) const {
  const auto found = Find(name);
  return found != periods_.end() ? &*found : nullptr;
}

void Periods::Remove(int position) {
  if (position >= 1 && position <= Count()) periods_.erase(periods_.begin() + position - 1);
}

void Periods::Remove(std::string_view name) {
  if (const auto found = Find(name); found != periods_.end()) periods_.erase(found);
}

const Period* Periods::GetPeriod(std::string_view text) const {
  const auto found = std::find_if(periods_.begin(), periods_.end(),
                                  [&](const Period& period) { return period.IsAlias(text); });
  return found != periods_.end() ? &*found : nullptr;
}

DateTime Periods::Period2DateTime(std::string_view text) const {
  return ToDateTime(text, clock_.Now());
}

DateTime Periods::ToDateTime(std::string_view text, DateTime now) const {
  constexpr DateTime kEarliest{
      std::chrono::local_days{std::chrono::year{100} / std::chrono::January / 1}};
  constexpr DateTime kEnd{
      std::chrono::local_days{std::chrono::year{10000} / std::chrono::January / 1}};
  const auto value = ReadDateExpression(text, now, locale_);
  return value && *value >= kEarliest && *value < kEnd ? *value : text::kZeroDate;
}

PeriodRange Periods::Parse(std::string& text) const {
  text = std::string(text::TrimSpaces(text));
  if (text.empty()) text = "Today";
  const DateTime now = clock_.Now();
  const std::string upper = text::ToUpperAscii(text);
  for (const BuiltInPeriod& period : kBuiltIn) {
    if (period.range != nullptr && IsListedAlias(period.aliases, upper)) return period.range(now);
  }
  const std::string_view whole = text;
  const size_t tilde = whole.find('~');
  PeriodRange range{now, now + minutes{5}, 60, "1H"};
  range.start = ToDateTime(whole.substr(0, tilde), now);
  if (tilde != std::string_view::npos) range.end = ToDateTime(whole.substr(tilde + 1), now);
  return range;
}

std::string Periods::GenerateSelectionList(std::string_view current_period) const {
  std::string list;
  for (const Period& period : periods_) {
    list.append("<option ")
        .append(period.IsAlias(current_period) ? "selected" : "")
        .append(" value=\"")
        .append(period.Name())
        .append("\">")
        .append(period.Name())
        .append("</option>\r\n");
  }
  return list;
}

}  // namespace quillan
