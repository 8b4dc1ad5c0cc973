#include "platform/text/number.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/text/date_time.h"

namespace quillan::text {
namespace {

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

TEST(NumberTest, IntegersAreRoundedToEvenAndMustFit32Bits) {
  const std::pair<const char*, std::optional<std::int32_t>> rows[] = {
      {"0.5", 0},
      {"-2.5", -2},
      {"2147483647.5", std::nullopt},
      {"-2147483648.5", std::numeric_limits<std::int32_t>::min()},
      {"1e999", std::nullopt},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(ReadLeadingWhole(text), value) << text;
}

TEST(NumberTest, NumbersAreWrittenInPlainOrGeneralForm) {
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

}  // namespace
}  // namespace quillan::text
