#include "platform/text/user_locale.h"

#include <iconv.h>
#include <langinfo.h>
#include <time.h>

#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <initializer_list>

#include "platform/text/number.h"

namespace quillan::text {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view TrimBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The name that the environment gives to the category `variable`.
std::string EnvironmentName(const char* variable) {
  for (const char* name : {"LC_ALL", variable, "LANG"}) {
    const char* value = getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

bool UsesUnitedStatesForms(std::string_view name) {
  return name == "C" || name == "POSIX" || name.starts_with("C.") || name.starts_with("en_US");
}

// `text` from one character set to another; nothing when a character has no place in the other.
std::optional<std::string> Convert(const std::string& text, const std::string& from,
                                   const std::string& to) {
  if (from == to) return text;
  iconv_t converter = iconv_open(to.c_str(), from.c_str());
  if (reinterpret_cast<std::intptr_t>(converter) == -1) return std::nullopt;
  std::string source = text;
  std::string result(text.size() * 4 + 4, '\0');
  char* input = source.data();
  char* output = result.data();
  size_t input_left = source.size();
  size_t output_left = result.size();
  const size_t outcome = iconv(converter, &input, &input_left, &output, &output_left);
  iconv_close(converter);
  if (outcome == static_cast<size_t>(-1)) return std::nullopt;
  result.resize(result.size() - output_left);
  return result;
}

// A strftime format reduced to conversions that strptime reads back: years in four digits of the
// common calendar, no time zone, composite forms spelled out.
std::string PlainFormat(std::string_view format, locale_t locale) {
  std::string plain;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      plain += format[i];
      continue;
    }
    size_t end = format.find_first_not_of("EO_-0^#", i + 1);
    if (end == std::string_view::npos) break;
    const bool unpadded = format.substr(i, end - i).find('-') != std::string_view::npos;
    const char conversion = format[end];
    i = end;
    switch (conversion) {
      case 'Z':
      case 'z':
        plain.resize(plain.find_last_not_of(' ') + 1);
        break;
      case 'C':  // The century, in front of the year without it.
        break;
      case 'y':
        plain += "%Y";
        break;
      case 'T':
        plain += "%H:%M:%S";
        break;
      case 'R':
        plain += "%H:%M";
        break;
      case 'D':
        plain += "%m/%d/%Y";
        break;
      case 'F':
        plain += "%Y-%m-%d";
        break;
      case 'r': {
        const std::string_view form = nl_langinfo_l(T_FMT_AMPM, locale);
        const bool usable = !form.empty() && form.find("%r") == std::string_view::npos;
        plain += usable ? PlainFormat(form, locale) : "%I:%M:%S %p";
        break;
      }
      default:
        plain += unpadded ? "%-" : "%";
        plain += conversion;
    }
  }
  return plain;
}

// A time format that has seconds, after the minutes and with the same mark before them if the
// locale leaves them out.
std::string WithSeconds(std::string format) {
  const size_t minutes = format.find("%M");
  if (minutes == std::string::npos || minutes == 0 || format.find("%S") != std::string::npos) {
    return format;
  }
  return format.insert(minutes + 2, format.substr(minutes - 1, 1) + "%S");
}

// A time format without its seconds and the mark before them.
std::string WithoutSeconds(std::string format) {
  const size_t seconds = format.find("%S");
  if (seconds == std::string::npos || seconds == 0) return format;
  return format.erase(seconds - 1, 3);
}

tm CalendarParts(DateTime value) {
  const auto day = std::chrono::floor<std::chrono::days>(value);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(value - day);
  tm parts{};
  parts.tm_year = static_cast<int>(date.year()) - 1900;
  parts.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  parts.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  parts.tm_wday = static_cast<int>(std::chrono::weekday(day).c_encoding());
  parts.tm_hour = static_cast<int>(time.hours().count());
  parts.tm_min = static_cast<int>(time.minutes().count());
  parts.tm_sec = static_cast<int>(time.seconds().count());
  return parts;
}

// The date-time of the parts, when there is such a day.
std::optional<DateTime> FromCalendarParts(const tm& parts) {
  int year = parts.tm_year + 1900;
  if (year >= 0 && year < 100) year += year < 30 ? 2000 : 1900;
  const std::chrono::year_month_day date{
      std::chrono::year(year), std::chrono::month(static_cast<unsigned>(parts.tm_mon + 1)),
      std::chrono::day(static_cast<unsigned>(parts.tm_mday))};
  if (!date.ok() || parts.tm_sec > 59) return std::nullopt;
  return DateTime{std::chrono::local_days{date}} + std::chrono::hours(parts.tm_hour) +
         std::chrono::minutes(parts.tm_min) + std::chrono::seconds(parts.tm_sec);
}

}  // namespace

UserLocale UserLocale::FromEnvironment() {
  return {EnvironmentName("LC_TIME"), EnvironmentName("LC_NUMERIC")};
}

UserLocale::UserLocale(const std::string& time_name, const std::string& number_name)
    : time_(Open(LC_TIME_MASK | LC_CTYPE_MASK, time_name)) {
  const bool known = time_ != nullptr && !UsesUnitedStatesForms(time_name);
  if (!known) time_ = Open(LC_ALL_MASK, "C");
  SetTimeForms(!known);
  if (UsesUnitedStatesForms(number_name)) return;
  if (const Locale numbers = Open(LC_NUMERIC_MASK | LC_CTYPE_MASK, number_name)) {
    SetNumberForms(numbers.get());
  }
}

UserLocale::Locale UserLocale::Open(int categories, const std::string& name) {
  locale_t locale = newlocale(categories, name.c_str(), nullptr);
  if (locale == nullptr) return nullptr;
  return {locale, [](locale_t l) { freelocale(l); }};
}

void UserLocale::SetTimeForms(bool united_states) {
  locale_t locale = time_.get();
  codeset_ = united_states ? "UTF-8" : nl_langinfo_l(CODESET, locale);
  date_format_ = united_states ? "%-m/%-d/%Y" : PlainFormat(nl_langinfo_l(D_FMT, locale), locale);
  time_format_ = united_states ? "%-I:%M:%S %p"
                               : WithSeconds(PlainFormat(nl_langinfo_l(T_FMT, locale), locale));
  SetReadableFormats();
  if (ReadsBackItsOwnTexts()) return;
  time_format_ = "%H:%M:%S";
  SetReadableFormats();
  if (ReadsBackItsOwnTexts()) return;
  date_format_ = "%Y-%m-%d";
  SetReadableFormats();
}

void UserLocale::SetReadableFormats() {
  readable_formats_ = {date_format_};
  for (const std::string& time : {time_format_, WithoutSeconds(time_format_),
                                  std::string("%H:%M:%S"), std::string("%H:%M")}) {
    readable_formats_.push_back(date_format_ + " " + time);
  }
  for (const char* iso : {"%Y-%m-%d", "%Y-%m-%dT%H:%M:%S", "%Y-%m-%dT%H:%M", "%Y-%m-%dt%H:%M:%S",
                          "%Y-%m-%dt%H:%M", "%Y-%m-%d %H:%M:%S", "%Y-%m-%d %H:%M"}) {
    readable_formats_.emplace_back(iso);
  }
}

// Some locales have forms that strptime cannot read: the same word for both halves of the day,
// month names that begin like others, digits that are not ASCII.
bool UserLocale::ReadsBackItsOwnTexts() const {
  using std::chrono::hours;
  for (int month = 1; month <= 12; ++month) {
    const DateTime midnight{std::chrono::local_days{std::chrono::year{2009} / month / 8}};
    for (const DateTime value : {midnight, midnight + std::chrono::seconds{9},
                                 midnight + hours{21} + std::chrono::seconds{2047}}) {
      if (ReadDateTime(GeneralDateText(value)) != value) return false;
    }
  }
  return true;
}

void UserLocale::SetNumberForms(locale_t numbers) {
  const std::string codeset = nl_langinfo_l(CODESET, numbers);
  decimal_separator_ = Convert(nl_langinfo_l(RADIXCHAR, numbers), codeset, "UTF-8").value_or(".");
  group_separator_ = Convert(nl_langinfo_l(THOUSEP, numbers), codeset, "UTF-8").value_or("");
  grouping_ = nl_langinfo_l(GROUPING, numbers);
}

std::string UserLocale::GeneralDateText(DateTime value) const {
  const tm parts = CalendarParts(value);
  const bool midnight = parts.tm_hour == 0 && parts.tm_min == 0 && parts.tm_sec == 0;
  const std::string format = midnight ? date_format_ : date_format_ + " " + time_format_;
  std::array<char, 256> buffer{};
  const size_t length =
      strftime_l(buffer.data(), buffer.size(), format.c_str(), &parts, time_.get());
  const std::string text(buffer.data(), length);
  return Convert(text, codeset_, "UTF-8").value_or(text);
}

std::string UserLocale::GroupedNumber(std::int64_t value) const {
  std::string text = std::to_string(value);
  const size_t first_digit = value < 0 ? 1 : 0;
  size_t end = text.size();
  size_t rule = 0;
  while (rule < grouping_.size() && !group_separator_.empty()) {
    const char digits = grouping_[rule];
    if (digits <= 0 || digits == CHAR_MAX) break;
    if (end - first_digit <= static_cast<size_t>(digits)) break;
    end -= static_cast<size_t>(digits);
    text.insert(end, group_separator_);
    if (rule + 1 < grouping_.size()) ++rule;
  }
  return text;
}

std::string UserLocale::FormatNumber(double value) const {
  std::string text = FormatGeneral(value);
  if (const size_t point = text.find('.'); point != std::string::npos) {
    text.replace(point, 1, decimal_separator_);
  }
  return text;
}

std::optional<double> UserLocale::ReadNumber(std::string_view text) const {
  text = TrimBlanks(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  std::string number(text);
  const size_t separator = number.find(decimal_separator_);
  if (separator != std::string::npos) number.replace(separator, decimal_separator_.size(), ".");
  const auto value = ParseDecimal(number);
  if (!value || std::isinf(*value)) return std::nullopt;
  return negative ? -*value : *value;
}

std::optional<DateTime> UserLocale::ReadDateTime(std::string_view text) const {
  const auto local = Convert(std::string(TrimBlanks(text)), "UTF-8", codeset_);
  if (!local || local->empty() || local->find('\0') != std::string::npos) return std::nullopt;
  for (const std::string& format : readable_formats_) {
    tm parts{};
    const char* end = strptime_l(local->c_str(), format.c_str(), &parts, time_.get());
    if (end != nullptr && *end == '\0') return FromCalendarParts(parts);
  }
  return std::nullopt;
}

}  // namespace quillan::text
