#include "settings/periods.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fakes.h"

namespace quillan {
namespace {

using text::DateTime;

class PeriodsTest : public testing::Test {
 protected:
  PeriodsTest() { clock_.now = At("2007-05-31T13:20:30"); }

  DateTime At(const char* iso) const { return locale_.ReadDateTime(iso).value(); }

  void ExpectRange(std::string text, const char* start, const char* end, int sample_minutes,
                   std::string_view sample_size) const {
    const PeriodRange range = periods_.Parse(text);
    EXPECT_EQ(range.start, At(start)) << text;
    EXPECT_EQ(range.end, At(end)) << text;
    EXPECT_EQ(range.sample_minutes, sample_minutes) << text;
    EXPECT_EQ(range.sample_size, sample_size) << text;
  }

  text::UserLocale locale_{"C"};
  test::FixedClock clock_;
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
  EXPECT_EQ(periods_.Item(14), nullptr);
}

TEST_F(PeriodsTest, RefreshBringsBackTheBuiltInPeriods) {
  periods_.Remove("Today");
  periods_.Remove(1);
  EXPECT_EQ(periods_.Count(), 11);
  EXPECT_EQ(periods_.begin()->Name(), "Last 2 Hours");
  periods_.Refresh();
  EXPECT_EQ(periods_.Count(), 13);
}

TEST_F(PeriodsTest, NamedPeriodsGiveTheirRanges) {
  ExpectRange("past hour", "2007-05-31 12:20:30", "2007-05-31 13:21:30", 10, "10M");
  ExpectRange("Last 24 Hours", "2007-05-30 13:20:30", "2007-05-31 13:21:30", 30, "30M");
  ExpectRange(" today ", "2007-05-31 00:00:00", "2007-06-01 00:00:00", 30, "30M");
  ExpectRange("yesterday", "2007-05-30 00:00:00", "2007-05-30 23:59:59", 30, "30M");
  ExpectRange("this week", "2007-05-24 00:00:00", "2007-05-31 14:00:00", 60, "1H");
  ExpectRange("this month", "2007-05-01 00:00:00", "2007-06-01 00:00:00", 60, "1H");
  ExpectRange("last month", "2007-04-01 00:00:00", "2007-04-30 23:59:59", 1440, "1D");
  ExpectRange("last 30 days", "2007-05-01 00:00:00", "2007-06-01 00:00:00", 1440, "1D");
  ExpectRange("this year", "2007-01-01 00:00:00", "2007-06-01 00:00:00", 1440, "1D");
  ExpectRange("last 12 months", "2006-05-31 00:00:00", "2007-06-01 00:00:00", 1440, "1D");
  clock_.now = At("2008-01-15T23:30:00");
  ExpectRange("last month", "2007-12-01 00:00:00", "2007-12-31 23:59:59", 1440, "1D");
  ExpectRange("this week", "2008-01-08 00:00:00", "2008-01-16 00:00:00", 60, "1H");
}

TEST_F(PeriodsTest, AnEmptyTextIsReplacedByTodayInPlace) {
  std::string text = "  ";
  EXPECT_EQ(periods_.Parse(text).start, At("2007-05-31"));
  EXPECT_EQ(text, "Today");
}

TEST_F(PeriodsTest, CustomRangesAreReadFromOneOrTwoExpressions) {
  ExpectRange("-2 H~now", "2007-05-31 11:20:30", "2007-05-31 13:20:30", 60, "1H");
  ExpectRange("5/1/2007~5/2/2007 6:30 PM", "2007-05-01 00:00:00", "2007-05-02 18:30:00", 60, "1H");
  ExpectRange("custom~-1", "1899-12-30 00:00:00", "2007-05-30 13:20:30", 60, "1H");
}

TEST_F(PeriodsTest, DateExpressionsAreReadOrGiveTheZeroDate) {
  EXPECT_EQ(periods_.Period2DateTime(" NOW "), clock_.now);
  EXPECT_EQ(periods_.Period2DateTime("-30 M"), At("2007-05-31T12:50:30"));
  EXPECT_EQ(periods_.Period2DateTime("-30 seconds"), At("2007-05-31T13:20:00"));
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
}

}  // namespace
}  // namespace quillan
