#include "lists/interfaces_list.h"

#include <string>

#include "lists/list_fixture.h"

namespace quillan {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class InterfacesListTest : public test::ListTest {
 protected:
  InterfacesListTest() {
    program_.suite.Run(
        "Insert Into Nodes Values (1,'core'), (2,'édge');"
        "Insert Into Interfaces Values (11,1,'eth0'), (12,1,'eth1'), (21,2,NULL), (31,3,'lost');"
        "Insert Into NetFlowSources Values (12)");
    list_.Refresh();
    list_.Table().Sort(3, SortDirection::kAscending);
  }
  std::vector<std::string> Sources() {
    return program_.suite.Rows("Select InterfaceID From NetFlowSources Order By InterfaceID");
  }
  static std::string Insert(const std::string& id) {
    return "if not exists (select * from NetFlowSources where InterfaceID = " + id +
           ") insert into NetFlowSources (InterfaceID) values (" + id + ")";
  }

  InterfacesList list_{Services()};
};

TEST_F(InterfacesListTest, CheckedInterfacesBecomeSourcesAndOthersCeaseToBe) {
  EXPECT_THAT(script_.statements,
              Contains("SELECT n.Caption NodeCaption, i.Caption InterfaceCaption, i.InterfaceID, "
                       "ISNUMERIC(s.InterfaceID ) IsNetFlowSource FROM Interfaces i INNER JOIN "
                       "Nodes n ON i.NodeID = n.NodeID LEFT JOIN NetflowSources s on "
                       "i.InterfaceID = s.InterfaceID"));
  EXPECT_THAT(Rows(list_), ElementsAre("-|core|eth0|11|0", "x|core|eth1|12|0", "-|édge||21|0"));
  for (const int column : {0, 1, 2, 3}) EXPECT_FALSE(Edit(list_, 1, column, "x"));
  Press(list_, "cmdSelectAll");
  list_.OnClick(3, 0);
  EXPECT_EQ(list_.Table().ForeColor(3, 3), Rgb(255, 0, 0));
  EXPECT_THAT(Saved(list_), ElementsAre(Insert("11"), Insert("12"),
                                        "delete from NetFlowSources where InterfaceID = 21"));
  EXPECT_THAT(Sources(), ElementsAre("11", "12"));
  EXPECT_FALSE(host_.busy);
  list_.Refresh();
  EXPECT_THAT(Saved(list_), IsEmpty());
  Press(list_, "cmdSelectNone");
  EXPECT_THAT(Saved(list_), SizeIs(3));
  EXPECT_THAT(Sources(), IsEmpty());
}

}  // namespace
}  // namespace quillan
