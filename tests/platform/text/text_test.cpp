#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text/date_time.h"
#include "platform/text/delimited_text.h"
#include "platform/text/encoding.h"
#include "platform/text/number.h"
#include "platform/text/user_locale.h"

namespace quillan::text {
namespace {

using std::chrono::June;
using std::chrono::local_days;

constexpr DateTime kMidnight{local_days{std::chrono::year{2007} / June / 1}};
constexpr DateTime kAfternoon = kMidnight + std::chrono::seconds{13 * 3600 + 5 * 60 + 9};

// Without the locale's data its forms cannot be told apart from those of the United States.
bool IsInstalled(const char* name) {
  locale_t locale = newlocale(LC_ALL_MASK, name, nullptr);
  if (locale == nullptr) return false;
  freelocale(locale);
  return true;
}

TEST(UserLocaleTest, TheCLocaleWritesUnitedStatesForms) {
  for (const char* name : {"C", "C.UTF-8", "en_US.UTF-8", "no_such_locale"}) {
    const UserLocale locale{name};
    EXPECT_EQ(locale.GeneralDateText(kAfternoon), "6/1/2007 1:05:09 PM") << name;
    EXPECT_EQ(locale.GeneralDateText(kMidnight + std::chrono::seconds{1}), "6/1/2007 12:00:01 AM");
    EXPECT_EQ(locale.GeneralDateText(kMidnight), "6/1/2007");
    EXPECT_EQ(locale.GroupedNumber(-1234567), "-1,234,567");
    EXPECT_EQ(locale.FormatNumber(-6000.5), "-6000.5");
  }
}

TEST(UserLocaleTest, AnInstalledLocaleWritesAndReadsItsOwnForms) {
  if (!IsInstalled("de_DE.UTF-8")) GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed";
  const UserLocale locale{"de_DE.UTF-8"};
  EXPECT_EQ(locale.GeneralDateText(kAfternoon), "01.06.2007 13:05:09");
  EXPECT_EQ(locale.GroupedNumber(1234567), "1.234.567");
  EXPECT_EQ(locale.FormatNumber(0.5), "0,5");
  EXPECT_EQ(locale.ReadNumber("6000.25"), 6000.25);
  EXPECT_EQ(locale.ReadNumber("1.234,5"), std::nullopt);
  EXPECT_EQ(locale.ReadDateTime("1.6.2007"), kMidnight);
  EXPECT_EQ(locale.ReadDateTime("2007-06-01T13:05:09"), kAfternoon);
  EXPECT_EQ(locale.ReadDateTime("6/1/2007"), std::nullopt);
  // Each category has a variable of its own.
  unsetenv("LC_ALL");
  setenv("LANG", "C", 1);
  setenv("LC_TIME", "", 1);
  setenv("LC_NUMERIC", "de_DE.UTF-8", 1);
  EXPECT_EQ(UserLocale::FromEnvironment().GeneralDateText(kMidnight), "6/1/2007");
  EXPECT_EQ(UserLocale::FromEnvironment().GroupedNumber(1000), "1.000");
}

// The test build makes the locales whose forms are the hardest to read back; to test every locale
// of the system, compile them all into a folder and set LOCPATH to it.
TEST(UserLocaleTest, EveryLocaleReadsItsOwnDateTimesBack) {
  const char* folder = getenv("LOCPATH");
  if (folder == nullptr) GTEST_SKIP() << "LOCPATH does not name a folder with locales";
  int locales = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().filename();
    if (!entry.is_directory() || !IsInstalled(name.c_str())) continue;
    ++locales;
    const UserLocale locale{name};
    for (int month = 1; month <= 12; ++month) {
      for (const int year : {1931, 2007, 2150}) {
        const DateTime day{local_days{std::chrono::year{year} / month / (month + 9)}};
        for (const int seconds : {0, 9, 3600, 12 * 3600 + 600, 23 * 3600 + 59 * 60 + 50}) {
          const DateTime value = day + std::chrono::seconds{seconds};
          const std::string text = locale.GeneralDateText(value);
          ASSERT_EQ(locale.ReadDateTime(text), value) << name << ": " << text;
        }
      }
    }
  }
  EXPECT_GT(locales, 0);
}

TEST(UserLocaleTest, WholeTextsAreReadAsNumbersOrDateTimesOrNotAtAll) {
  const UserLocale locale{"C"};
  EXPECT_EQ(locale.ReadNumber(" -12.5 "), -12.5);
  EXPECT_EQ(locale.ReadNumber("+.5e1"), 5);
  for (const char* text : {"", "-", ".", "+-1", "1 2", "1,000", "1e", "0x10", "inf", "1e999"}) {
    EXPECT_EQ(locale.ReadNumber(text), std::nullopt) << text;
  }
  const DateTime minute = kAfternoon - std::chrono::seconds{9};
  for (const char* text : {"6/1/2007 1:05:09 PM", " 06/01/2007 13:05:09 ", "6/1/07 1:05:09 pm",
                           "2007-06-01 13:05:09", "2007-06-01T13:05:09"}) {
    EXPECT_EQ(locale.ReadDateTime(text), kAfternoon) << text;
  }
  EXPECT_EQ(locale.ReadDateTime("6/1/2007 1:05 PM"), minute);
  EXPECT_EQ(locale.ReadDateTime("6/1/2007"), kMidnight);
  EXPECT_EQ(locale.ReadDateTime("6/1/1930"), locale.ReadDateTime("6/1/30"));
  for (const char* text : {"", "2/30/2007", "2007-02-30", "6/1/2007 25:00", "6/1/2007 1:05:60 PM",
                           "6/1", "6/1/2007 1:05:09 PM x"}) {
    EXPECT_EQ(locale.ReadDateTime(text), std::nullopt) << text;
  }
}

TEST(NumberTest, TheNumberAtTheStartOfATextIsRead) {
  const std::string zeros(350, '0');
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::pair<std::string, double> rows[] = {
      {" \t+20 55x6", 2055},      {"-.5e1", -5},
      {"1 e - 2 a", 0.01},        {"0." + zeros + "1e351", 1},
      {"1" + zeros + "e-350", 1}, {"1e999", kInfinity},
  };
  for (const auto& [text, value] : rows) {
    EXPECT_DOUBLE_EQ(ReadLeadingNumber(text), value) << text;
    EXPECT_TRUE(StartsWithNumber(text)) << text;
  }
  for (const char* text : {"", ".", "-", "--5", "-e5", "abc", "inf", "nan", "+-1"}) {
    EXPECT_EQ(ReadLeadingNumber(text), 0) << text;
    EXPECT_FALSE(StartsWithNumber(text)) << text;
  }
}

TEST(NumberTest, IntegersAreRoundedToEvenAndNumbersWrittenInPlainOrGeneralForm) {
  const std::pair<const char*, std::optional<std::int32_t>> rows[] = {
      {"0.5", 0},
      {"-2.5", -2},
      {"2147483647.5", std::nullopt},
      {"-2147483648.5", std::numeric_limits<std::int32_t>::min()},
      {"1e999", std::nullopt},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(ReadLeadingWhole(text), value) << text;
  EXPECT_EQ(FormatDigits(1e22), "10000000000000000000000");
  EXPECT_EQ(FormatGeneral(39232.5), "39232.5");
  EXPECT_EQ(FormatGeneral(1e20), "1E+20");
}

TEST(DurationTest, AUnitIsNamedOnlyWhenMoreThanOneIsLeft) {
  EXPECT_EQ(DurationText(0, 0, 0, 90), "1 minutes, 30 seconds");
  EXPECT_EQ(DurationText(1, 0, 0, 0), "24 hours");
  EXPECT_EQ(DurationText(1, 1, 1, 1), "1 days, 1 hours, 1 minutes, 1 seconds");
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(DurationText(0, kMost, 0, 0), "89478485 days, 7 hours");
}

// The records as "line: field|field", and last the error, if any.
std::vector<std::string> Read(std::string_view text) {
  DelimitedReader reader(text);
  std::vector<std::string> records;
  for (DelimitedRecord record; reader.Next(record);) {
    std::string line = std::to_string(record.line) + ":";
    for (const std::string& field : record.fields) line += " [" + field + "]";
    records.push_back(line);
  }
  if (reader.error()) {
    records.push_back("error in line " + std::to_string(reader.error()->line));
  }
  return records;
}

TEST(DelimitedTextTest, RecordsAreReadInEveryCommonFormUpToAnError) {
  const std::string long_line = "80," + std::string(1'000'000, 'x');
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"\r\n\n", {}},
      {"80,a\r81,b\n\n\n82,c", {"1: [80] [a]", "2: [81] [b]", "5: [82] [c]"}},
      {"80;a, b\n81;c", {"1: [80] [a, b]", "2: [81] [c]"}},
      {"\"80;1\",a;b\n", {"1: [80;1] [a;b]"}},
      {"80\tsay \"a\"\n81\t\"b\tc\"\n", {"1: [80] [say \"a\"]", "2: [81] [b\tc]"}},
      {"80,\"a \"\"b\"\",\r\nc\"\r\n81,\"\"\n", {"1: [80] [a \"b\",\r\nc]", "3: [81] []"}},
      {"80,a\n81,\"b\n82,c\n", {"1: [80] [a]", "error in line 2"}},
      {"80,a\n\n81,b\"c\n", {"1: [80] [a]", "error in line 3"}},
      {"80,a\n" + long_line + "\n82,c", {"1: [80] [a]", "error in line 2"}},
      {"80,\"" + std::string(1'000'000, '\n') + "\"\n", {"error in line 1"}},
  };
  for (const auto& [text, records] : cases) EXPECT_EQ(Read(text), records) << text.substr(0, 40);
}

TEST(DelimitedTextTest, WhatIsWrittenIsReadBack) {
  const std::vector<std::string_view> fields = {"",    "a b",  " a", "a,b",
                                                "a;b", "a\tb", "\"", "é\r\n"};
  for (const char separator : {',', ';', '\t'}) {
    std::string text;
    AppendDelimitedRecord(fields, separator, text);
    DelimitedReader reader(text);
    DelimitedRecord record;
    ASSERT_TRUE(reader.Next(record)) << text;
    EXPECT_THAT(record.fields, testing::ElementsAreArray(fields)) << text;
  }
}

TEST(DelimitedTextTest, EveryUnicodeFormIsDecoded) {
  const std::string text = "80,é €\n";
  std::string little;
  std::string big;
  for (const char16_t unit : Utf8ToUtf16(text)) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    little.append({low, high});
    big.append({high, low});
  }
  for (const std::string& bytes : {text, "\xEF\xBB\xBF" + text, little, big, "\xFF\xFE" + little,
                                   "\xFE\xFF" + big, std::string("80,\xE9 \x80\n")}) {
    EXPECT_EQ(DecodeTable(bytes), text);
  }
}

}  // namespace
}  // namespace quillan::text
