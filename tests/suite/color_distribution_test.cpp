#include "suite/color_distribution.h"

#include <gtest/gtest.h>

namespace quillan {
namespace {

TEST(ColorDistributionTest, ColorsRepeatAfterFifteenAndANegativeIndexBecomesZero) {
  struct Row {
    std::int16_t index;
    Color color;
    std::int16_t left;
  };
  for (const Row& row :
       {Row{0, Rgb(255, 0, 0), 0}, Row{1, Rgb(0, 153, 0), 1}, Row{14, Rgb(102, 102, 0), 14},
        Row{15, Rgb(255, 0, 0), 15}, Row{29, Rgb(102, 102, 0), 29}, Row{-3, Rgb(255, 0, 0), 0},
        Row{32767, Rgb(255, 102, 102), 32767}}) {
    std::int16_t index = row.index;
    EXPECT_EQ(ColorDistribution().LookupColor(index), row.color) << row.index;
    EXPECT_EQ(index, row.left);
  }
}

}  // namespace
}  // namespace quillan
