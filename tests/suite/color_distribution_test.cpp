#include "suite/color_distribution.h"

#include <gtest/gtest.h>

namespace quillan {
namespace {

TEST(ColorDistributionTest, ColorsRepeatAfterFifteenAndANegativeIndexBecomesZero) {
  std::int16_t index = -3;
  EXPECT_EQ(ColorDistribution().LookupColor(index), Rgb(255, 0, 0));
  EXPECT_EQ(index, 0);
  index = 29;
  EXPECT_EQ(ColorDistribution().LookupColor(index), Rgb(102, 102, 0));
}

}  // namespace
}  // namespace quillan
