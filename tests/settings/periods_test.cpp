#include "settings/periods.h"

#include <gtest/gtest.h>

#include <string>

namespace quillan {
namespace {

using text::DateTime;

class FixedClock final : public Clock {
 public:
  DateTime Now() const override { return now; }
  DateTime now;
};

class PeriodsTest : public testing::Test {
 protected:
  explicit PeriodsTest() { clock_.now = At("2007-05-31T13:20:30"); }

  DateTime At(const char* iso) const { return locale_.ReadDateTime(iso).value(); }

  // "start to end" of what `text` means, in ISO form, then the sample sizes.
  std::string Parsed(std::string text) const {
    const PeriodRange range = periods_.Parse(text);
    const auto iso = [](DateTime value) {
      const auto day = std::chrono::floor<std::chrono::days>(value);
      const std::chrono::year_month_day date(day);
      const std::chrono::hh_mm_ss time(value - day);
      char buffer[64];
      snprintf(buffer, sizeof buffer, "%d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
               static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
               static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
               static_cast<int>(time.seconds().count()));
      return std::string(buffer);
    };
    return iso(range.start) + " to " + iso(range.end) + " " + std::to_string(range.sample_minutes) +
           " " + std::string(range.sample_size);
  }

  text::UserLocale locale_{"C"};
  FixedClock clock_;
  Periods periods_{clock_, locale_};
};

TEST_F(PeriodsTest, PeriodsAreFoundByPositionNameAndAlias) {
  EXPECT_EQ(periods_.Count(), 13);
  EXPECT_EQ(periods_.GetPeriod("last hour"), periods_.Item(1));
  EXPECT_EQ(periods_.GetPeriod("PAST 2 HOURS"), periods_.Item("Last 2 Hours"));
  EXPECT_EQ(periods_.GetPeriod("year to date"), periods_.Item(11));
  for (const char* text : {"Last  Hour", "", " today", "TODAY,YESTERDAY", ","}) {
    EXPECT_EQ(periods_.GetPeriod(text), nullptr) << text;
  }
  EXPECT_EQ(periods_.Item(9)->SampleSize(), "6H");
  EXPECT_FALSE(periods_.Item("Custom")->IncludesPresent());
  EXPECT_EQ(periods_.Item(0), nullptr);
  EXPECT_EQ(periods_.Item(14), nullptr);
}

TEST_F(PeriodsTest, RefreshBringsBackTheBuiltInPeriods) {
  periods_.Remove("Today");
  periods_.Remove(1);
  periods_.Remove(99);
  periods_.Remove("no such period");
  EXPECT_EQ(periods_.Count(), 11);
  EXPECT_EQ(periods_.begin()->Name(), "Last 2 Hours");
  periods_.Refresh();
  EXPECT_EQ(periods_.Count(), 13);
}

TEST_F(PeriodsTest, NamedPeriodsGiveTheirRanges) {
  EXPECT_EQ(Parsed("past hour"), "2007-05-31 12:20:30 to 2007-05-31 13:21:30 10 10M");
  EXPECT_EQ(Parsed("LAST2HOURS"), "2007-05-31 11:20:30 to 2007-05-31 13:21:30 10 10M");
  EXPECT_EQ(Parsed("Last 24 Hours"), "2007-05-30 13:20:30 to 2007-05-31 13:21:30 30 30M");
  EXPECT_EQ(Parsed(" today "), "2007-05-31 00:00:00 to 2007-06-01 00:00:00 30 30M");
  EXPECT_EQ(Parsed("yesterday"), "2007-05-30 00:00:00 to 2007-05-30 23:59:59 30 30M");
  EXPECT_EQ(Parsed("this week"), "2007-05-24 00:00:00 to 2007-05-31 14:00:00 60 1H");
  EXPECT_EQ(Parsed("this month"), "2007-05-01 00:00:00 to 2007-06-01 00:00:00 60 1H");
  EXPECT_EQ(Parsed("last month"), "2007-04-01 00:00:00 to 2007-04-30 23:59:59 1440 1D");
  EXPECT_EQ(Parsed("last 30 days"), "2007-05-01 00:00:00 to 2007-06-01 00:00:00 1440 1D");
  EXPECT_EQ(Parsed("last 3 months"), "2007-02-28 00:00:00 to 2007-06-01 00:00:00 1440 1D");
  EXPECT_EQ(Parsed("this year"), "2007-01-01 00:00:00 to 2007-06-01 00:00:00 1440 1D");
  EXPECT_EQ(Parsed("last 12 months"), "2006-05-31 00:00:00 to 2007-06-01 00:00:00 1440 1D");
  clock_.now = At("2008-01-15T23:30:00");
  EXPECT_EQ(Parsed("last month"), "2007-12-01 00:00:00 to 2007-12-31 23:59:59 1440 1D");
  EXPECT_EQ(Parsed("this week"), "2008-01-08 00:00:00 to 2008-01-16 00:00:00 60 1H");
}

TEST_F(PeriodsTest, AnEmptyTextIsReplacedByTodayInPlace) {
  std::string text = "  ";
  EXPECT_EQ(periods_.Parse(text).start, At("2007-05-31"));
  EXPECT_EQ(text, "Today");
}

TEST_F(PeriodsTest, CustomRangesAreReadFromOneOrTwoExpressions) {
  EXPECT_EQ(Parsed("-2 H~now"), "2007-05-31 11:20:30 to 2007-05-31 13:20:30 60 1H");
  EXPECT_EQ(Parsed("-3"), "2007-05-28 13:20:30 to 2007-05-31 13:25:30 60 1H");
  EXPECT_EQ(Parsed("5/1/2007~5/2/2007 6:30 PM"),
            "2007-05-01 00:00:00 to 2007-05-02 18:30:00 60 1H");
  EXPECT_EQ(Parsed("custom~-1"), "1899-12-30 00:00:00 to 2007-05-30 13:20:30 60 1H");
}

TEST_F(PeriodsTest, DateExpressionsAreReadOrGiveTheZeroDate) {
  EXPECT_EQ(periods_.Period2DateTime(" NOW "), clock_.now);
  EXPECT_EQ(periods_.Period2DateTime("-30 M"), At("2007-05-31T12:50:30"));
  EXPECT_EQ(periods_.Period2DateTime("-30 seconds"), At("2007-05-31T13:20:00"));
  EXPECT_EQ(periods_.Period2DateTime("-1"), At("2007-05-30T13:20:30"));
  EXPECT_EQ(periods_.Period2DateTime("-0.5"), At("2007-05-31T01:20:30"));
  EXPECT_EQ(periods_.Period2DateTime("-1 q"), At("2007-02-28T13:20:30"));
  EXPECT_EQ(periods_.Period2DateTime("-7 W"), At("2007-05-24T13:20:30"));
  for (const char* text : {"yesterday", "", "-1 X", "-2  H", "-9999999999 S", "-9e999", "-800000",
                           "-2000000000 Q", "2/30/2007"}) {
    EXPECT_EQ(periods_.Period2DateTime(text), text::kZeroDate) << text;
  }
}

TEST_F(PeriodsTest, TheSelectionListMarksTheCurrentPeriod) {
  const std::string list = periods_.GenerateSelectionList("Today");
  EXPECT_NE(list.find("<option selected value=\"Today\">Today</option>\r\n"), std::string::npos);
  EXPECT_EQ(list.find("selected"), list.rfind("selected"));
  EXPECT_TRUE(list.starts_with("<option  value=\"Last Hour\">Last Hour</option>\r\n"));
  EXPECT_EQ(periods_.GenerateSelectionList("").find("selected"), std::string::npos);
}

}  // namespace
}  // namespace quillan
