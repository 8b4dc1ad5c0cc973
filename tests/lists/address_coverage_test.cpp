#include "lists/address_coverage.h"

#include <random>

#include "ip/ip_functions.h"
#include "lists/address_lookup.h"
#include "lists/group_edits.h"

namespace quillan {
namespace {

using AddressCoverageTest = test::GroupEditsTest;

// The row at each of the addresses 0 .. `count` - 1 behind 10.0.0.0, by the parts.
std::vector<int> RowsOfParts(const Grid& grid, int count) {
  constexpr std::uint32_t kFirst = 10U << 24;
  std::vector<int> rows(static_cast<size_t>(count));
  int last = 0;
  std::uint32_t behind = 0;
  for (const CoveragePart& part : FindCoverage(grid)) {
    EXPECT_TRUE(part.start > behind || (part.start == behind && part.row != last));
    for (std::uint32_t at = part.start; at <= part.end; ++at) rows.at(at - kFirst) = part.row;
    last = part.row;
    behind = part.end + 1;
  }
  return rows;
}

TEST_F(AddressCoverageTest, EveryAddressBelongsToTheRowThatTheLookupNames) {
  constexpr int kAddresses = 400;
  std::mt19937 random(7);
  const auto below = [&](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  for (int round = 0; round < 20; ++round) {
    program_.suite.Run("Delete From IPAddressGroups");
    std::vector<test::Group> groups;
    for (int id = 1; id <= 12; ++id) {
      const int start = below(kAddresses - 60);
      // Some of the same size.
      groups.push_back({id, start, start + (id % 3 == 0 ? 40 : below(60)), below(5) > 0});
    }
    Store(groups);
    Add(100, 140);
    Delete(groups[4].start);
    std::vector<int> expected;
    for (int at = 0; at < kAddresses; ++at) {
      const double address = IPAddressToSortValue(test::Dotted(at));
      expected.push_back(LookUpAddress(list_.Table(), address).winner);
    }
    EXPECT_EQ(RowsOfParts(list_.Table(), kAddresses), expected) << "round " << round;
  }
}

TEST_F(AddressCoverageTest, TheWholeAddressSpaceCanBeCoveredAndAnEmptiedGridHasNoParts) {
  program_.suite.Run("Insert Into IPAddressGroups Values (1,0,255255255255,'all',0,1)");
  list_.Refresh();
  const auto parts = FindCoverage(list_.Table());
  ASSERT_EQ(parts.size(), 1U);
  EXPECT_EQ(parts[0].start, 0U);
  EXPECT_EQ(parts[0].end, 0xFFFFFFFFU);
  list_.Table().Reset(0, {});
  EXPECT_TRUE(FindCoverage(list_.Table()).empty());
}

}  // namespace
}  // namespace quillan
