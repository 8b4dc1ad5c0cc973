#include "settings/periods.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "platform/text/case_fold.h"
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
  EXPECT_EQ(periods_.Item("last 2 hours"), periods_.Item(2));
  EXPECT_EQ(periods_.GetPeriod("Past 2 Hours"), periods_.Item(2));
  for (const char* text : {"Last  Hour", "", "TODAY,YESTERDAY", ","}) {
    EXPECT_EQ(periods_.GetPeriod(text), nullptr) << text;
  }
  periods_.Remove("Today");
  EXPECT_EQ(periods_.Count(), 12);
  periods_.Refresh();
  EXPECT_EQ(periods_.Count(), 13);
  EXPECT_EQ(periods_.Item(14), nullptr);
}

TEST_F(PeriodsTest, EveryBuiltInPeriodHasItsRangeUnderEveryAlias) {
  struct Row {
    const char *name, *start, *end;
    int minutes;
    const char* sample_size;
  } const rows[] = {
      {"Last Hour", "2007-05-31 12:20:30", "2007-05-31 13:21:30", 10, "10M"},
      {"Last 2 Hours", "2007-05-31 11:20:30", "2007-05-31 13:21:30", 10, "10M"},
      {"Last 24 Hours", "2007-05-30 13:20:30", "2007-05-31 13:21:30", 30, "30M"},
      {"Today", "2007-05-31", "2007-06-01", 30, "30M"},
      {"Yesterday", "2007-05-30", "2007-05-30 23:59:59", 30, "30M"},
      {"Last 7 Days", "2007-05-24", "2007-05-31 14:00:00", 60, "1H"},
      {"This Month", "2007-05-01", "2007-06-01", 60, "1H"},
      {"Last Month", "2007-04-01", "2007-04-30 23:59:59", 1440, "1D"},
      {"Last 30 Days", "2007-05-01", "2007-06-01", 1440, "1D"},
      {"Last 3 Months", "2007-02-28", "2007-06-01", 1440, "1D"},
      {"This Year", "2007-01-01", "2007-06-01", 1440, "1D"},
      {"Last 12 Months", "2006-05-31", "2007-06-01", 1440, "1D"},
  };
  int position = 0;
  for (const Row& row : rows) {
    const Period* period = periods_.Item(++position);
    EXPECT_EQ(period->Name(), row.name);
    ExpectRange(row.name, row.start, row.end, row.minutes, row.sample_size);
    std::istringstream aliases{std::string(period->Aliases())};
    for (std::string alias; std::getline(aliases, alias, ',');) {
      ExpectRange(" " + text::FoldCase(alias), row.start, row.end, row.minutes, row.sample_size);
    }
  }
  clock_.now = At("2008-01-15T23:30:00");
  ExpectRange("last month", "2007-12-01 00:00:00", "2007-12-31 23:59:59", 1440, "1D");
  ExpectRange("this week", "2008-01-08 00:00:00", "2008-01-16 00:00:00", 60, "1H");
}

TEST_F(PeriodsTest, CustomRangesAreReadFromOneOrTwoExpressions) {
  std::string text = "  ";
  EXPECT_EQ(periods_.Parse(text).start, At("2007-05-31"));
  EXPECT_EQ(text, "Today");
  ExpectRange("-2 H~now", "2007-05-31 11:20:30", "2007-05-31 13:20:30", 60, "1H");
  ExpectRange("5/1/2007~5/2/2007 6:30 PM", "2007-05-01 00:00:00", "2007-05-02 18:30:00", 60, "1H");
  ExpectRange("custom~-1", "1899-12-30 00:00:00", "2007-05-30 13:20:30", 60, "1H");
}

TEST_F(PeriodsTest, DateExpressionsAreReadOrGiveTheZeroDate) {
  const std::pair<const char*, const char*> rows[] = {
      {" NOW ", "2007-05-31T13:20:30"},  {"-30 M", "2007-05-31T12:50:30"},
      {"-1 n", "2007-05-31T13:19:30"},   {"-30 seconds", "2007-05-31T13:20:00"},
      {"-1 d", "2007-05-30T13:20:30"},   {"-7 W", "2007-05-24T13:20:30"},
      {"-365 Y", "2006-05-31T13:20:30"}, {"-1 q", "2007-02-28T13:20:30"},
      {"-.5 D", "2007-05-31T13:20:30"},  {"-1.5 H", "2007-05-31T11:20:30"},
      {"-1.5", "2007-05-29T13:20:30"},   {"6/1/2007", "2007-06-01"},
  };
  for (const auto& [text, value] : rows) {
    EXPECT_EQ(periods_.Period2DateTime(text), At(value)) << text;
  }
  for (const char* text :
       {"", "-1 X", "-2  H", "-9e999", "-800000", "-2000000000 Q", "2/30/2007", "-", "--5"}) {
    EXPECT_EQ(periods_.Period2DateTime(text), text::kZeroDate) << text;
  }
}

}  // namespace
}  // namespace quillan
