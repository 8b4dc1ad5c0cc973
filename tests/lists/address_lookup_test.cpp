#include "lists/address_lookup.h"

#include "ip/ip_functions.h"
#include "lists/group_edits.h"

namespace quillan {
namespace {

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
