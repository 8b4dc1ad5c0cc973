#include "platform/text/date_time.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillan::text {
namespace {

TEST(DateTimeTest, DurationsNameAUnitOnlyWhenMoreThanOneIsLeft) {
  EXPECT_EQ(DurationText(0, 0, 0, 90), "1 minutes, 30 seconds");
  EXPECT_EQ(DurationText(1, 0, 0, 0), "24 hours");
  EXPECT_EQ(DurationText(0, 26, 0, 0), "1 days, 2 hours");
  EXPECT_EQ(DurationText(0, 0, 1, 0), "60 seconds");
  EXPECT_EQ(DurationText(1, 1, 1, 1), "1 days, 1 hours, 1 minutes, 1 seconds");
  EXPECT_EQ(DurationText(0, 0, 0, -5), "");
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(DurationText(0, kMost, 0, 0), "89478485 days, 7 hours");
}

}  // namespace
}  // namespace quillan::text
