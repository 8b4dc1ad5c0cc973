#include "lists/address_lookup.h"

#include <random>

#include "ip/ip_functions.h"
#include "lists/address_coverage.h"
#include "lists/list_fixture.h"

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

class AddressLookupTest : public test::GroupEditsTest {
 protected:
  std::string Answer(std::string_view address) {
    const AddressLookup lookup = LookUpAddress(list_.Table(), IPAddressToSortValue(address));
    const auto hint = DescribeStoredGroup(list_.Table(), lookup, program_.database);
    return DescribeLookup(list_.Table(), lookup) + (hint ? " " + *hint : "");
  }
};

TEST_F(AddressLookupTest, TheSmallestEnabledRowThatStaysGetsTheAddress) {
  program_.suite.Run(
      "Insert Into IPAddressGroups Values (1,10000000000,10000000255,'large',0,1), "
      "(2,10000000100,10000000199,'second',0,1), (3,10000000050,10000000149,'third',0,1), "
      "(4,10000000120,10000000121,'small',0,0), (5,10000000240,10000000300,'odd',0,1); "
      "Insert Into FlowCorrelation Values ('10.0.0.120',10000000120,NULL,2), "
      "('10.0.0.7',10000000007,NULL,0), ('10.0.0.200',10000000200,NULL,1), "
      "('10.0.0.8',10000000008,NULL,77)");
  list_.Refresh();
  EXPECT_EQ(Answer("10.0.0.120"),
            "10.0.0.120 goes to third, the smallest of 3 enabled groups. "
            "The database still has it in second.");
  EXPECT_EQ(Answer("10.0.0.200"),
            "10.0.0.200 goes to large, the only enabled group that holds it.");
  EXPECT_EQ(Answer("10.0.0.8"),
            "10.0.0.8 goes to large, the only enabled group that holds it. "
            "The database still has it in a group that does not exist any more.");
  program_.suite.Run(
      "Update FlowCorrelation Set FullHostname='core.net' Where IPAddressSort=10000000200");
  const ListFilter filter("10.0.0.200", FilterKind::kGroups);
  EXPECT_EQ(list_.FilterNote(filter, true), Answer("10.0.0.200") + " Its host name is core.net.");
  EXPECT_TRUE(filter.Matches(list_.Table(), RowAt(0)) && !filter.Matches(list_.Table(), RowAt(50)));
  EXPECT_EQ(Answer("11.0.0.0"), "11.0.0.0 goes to no group: no range holds it.");
  // Pending edits count: a new row of the same size wins, a deleted one does not.
  Add(80, 179);
  EXPECT_EQ(Answer("10.0.0.120"),
            "10.0.0.120 goes to new, the smallest of 4 enabled groups. "
            "The database still has it in second.");
  Delete(0);
  EXPECT_EQ(Answer("10.0.0.7"),
            "10.0.0.7 goes to no group: no group that holds it is enabled (1 disabled or to be "
            "deleted).");
}

}  // namespace
}  // namespace quillan
