#pragma once

#include <locale.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/text/date_time.h"

namespace quillan::text {

/// The user's regional forms of dates and numbers. All strings are UTF-8, whatever the locale's
/// character set; the current locale of the process is neither used nor changed.
class UserLocale {
 public:
  /// The locale that LC_ALL, or else LC_TIME and LC_NUMERIC, or else LANG names.
  static UserLocale FromEnvironment();
  /// The locale `name` ("de_DE.UTF-8"); "C", "POSIX" and a locale that is not installed give the
  /// forms of the United States.
  explicit UserLocale(const std::string& name) : UserLocale(name, name) {}

  /// Short date, blank, long time without a zone ("6/1/2007 1:05:09 PM"); at exactly midnight the
  /// date alone. `ReadDateTime` reads the text back: the year has its century, the time its
  /// seconds, and forms that strptime cannot read are replaced by those of ISO 8601.
  std::string GeneralDateText(DateTime value) const;
  /// `value` with its digits grouped ("1,234,567").
  std::string GroupedNumber(std::int64_t value) const;
  /// The shortest general decimal form (see text::FormatGeneral) with the decimal separator of the
  /// locale, not grouped.
  std::string FormatNumber(double value) const;

  /// The number that the whole of `text` is, blanks around it aside: sign, digits, the locale's
  /// decimal separator or a point, exponent. Nothing for any other text, a grouped one included.
  std::optional<double> ReadNumber(std::string_view text) const;
  /// The date-time that the whole of `text` is, blanks around it aside: a date, or a date and a
  /// time with or without seconds, as GeneralDateText writes them or by ISO 8601 with "T" or a
  /// blank. A year of two digits lies in 1930..2029, as OLE Automation reads it.
  std::optional<DateTime> ReadDateTime(std::string_view text) const;

 private:
  using Locale = std::shared_ptr<std::remove_pointer_t<locale_t>>;

  UserLocale(const std::string& time_name, const std::string& number_name);
  static Locale Open(int categories, const std::string& name);
  void SetTimeForms(bool united_states);
  void SetReadableFormats();
  bool ReadsBackItsOwnTexts() const;
  void SetNumberForms(locale_t numbers);

  Locale time_;
  std::string codeset_;  // Of the formats below and of every text that `time_` makes.
  std::string date_format_;
  std::string time_format_;
  std::vector<std::string> readable_formats_;
  std::string decimal_separator_ = ".";
  std::string group_separator_ = ",";
  std::string grouping_ = "\3";  // Digits of each group, from the right; the last one repeats.
};

}  // namespace quillan::text
