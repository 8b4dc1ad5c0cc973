#include "lists/list_search.h"

#include "lists/list_fixture.h"

namespace quillan {
namespace {

using testing::ElementsAre;

class ListSearchTest : public test::GroupListTest {
 protected:
  // Rows 1 to 5; row 4 is to be deleted.
  ListSearchTest() {
    program_.suite.Run(
        "Insert Into IPAddressGroups Values (1,1000000000,1000000001,'Net one',0,1), "
        "(2,2000000000,2000000001,'other',0,1), (3,3000000000,3000000001,'net three',0,1), "
        "(4,4000000000,4000000001,'net four',0,1), (5,5000000000,5000000001,'net five',0,1)");
    list_.Refresh();
    Select(list_, {4});
    Press(list_, "cmdDeleteGroup");
    search_.SetTexts("net", "subnet", false);
  }

  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (int row = 1; row < list_.Table().Rows(); ++row) {
      names.emplace_back(list_.Table().Text(row, kGroupNameColumn));
    }
    return names;
  }

  ListSearch search_{list_};
};

TEST_F(ListSearchTest, FindingGoesOnFromTheCurrentRowAndRoundTheList) {
  using enum SearchResult;
  const auto found = [&](SearchResult result) {
    return std::pair(result, list_.Table().CurrentRow());
  };
  EXPECT_EQ(found(search_.FindPrevious()), std::pair(kFound, 5));
  EXPECT_EQ(found(search_.FindPrevious()), std::pair(kFound, 3));
  EXPECT_EQ(found(search_.FindNext()), std::pair(kFound, 5));
  EXPECT_EQ(found(search_.FindNext()), std::pair(kFoundFromOtherEnd, 1));
  EXPECT_EQ(found(search_.FindPrevious()), std::pair(kFoundFromOtherEnd, 5));
  list_.Table().SelectOnly(2, 1);
  EXPECT_EQ(found(search_.FindNext()), std::pair(kFound, 3));
  EXPECT_THAT(list_.Table().SelectedRows(), ElementsAre(3));
  search_.SetTexts("net", "", true);
  list_.Table().SetFilter([](int row) { return row < 4; });
  EXPECT_EQ(found(search_.FindNext()), std::pair(kFoundFromOtherEnd, 3)) << "the only one";
  search_.SetTexts("four", "", false);
  EXPECT_EQ(found(search_.FindNext()), std::pair(kNotFound, 3)) << "it is to be deleted";
  EXPECT_EQ(list_.PendingCount(), 1);
}

TEST_F(ListSearchTest, ADescriptionThatWouldBeTooLongForTheDatabaseStays) {
  const std::string name = "net " + std::string(250, 'x');
  Edit(list_, 1, kGroupNameColumn, name.c_str());
  list_.Table().SetFilter([](int row) { return row != 5; });
  EXPECT_EQ(search_.ReplaceAll(), 1);
  EXPECT_THAT(list_.Table().SelectedRows(), ElementsAre(1, 3));
  EXPECT_EQ(search_.TooLong(), "The description has 257 characters; the database takes 255.");
  EXPECT_THAT(Names(), ElementsAre(name, "other", "subnet three", "net four", "net five"));
  search_.SetTexts("three", "3", false);
  EXPECT_EQ(search_.ReplaceAll(), 1);
  EXPECT_EQ(search_.TooLong(), "");
}

TEST_F(ListSearchTest, ReplacingRowByRowTakesEachOnceThoughItStillContainsTheText) {
  using enum SearchResult;
  list_.Table().SelectOnly(2, 1);
  EXPECT_EQ(search_.ReplaceNext(), kFound);
  EXPECT_THAT(list_.Table().SelectedRows(), ElementsAre(3));
  EXPECT_EQ(search_.ReplaceNext(), kFound);
  EXPECT_EQ(search_.ReplaceNext(), kFoundFromOtherEnd);
  EXPECT_THAT(Names(),
              ElementsAre("subnet one", "other", "subnet three", "net four", "subnet five"));
  list_.RevertSelected();
  EXPECT_EQ(Names()[0], "Net one");
  search_.SetTexts("one", "one one", false);
  EXPECT_EQ(search_.FindNext(), kFoundFromOtherEnd);
  EXPECT_EQ(search_.ReplaceNext(), kFound);
  EXPECT_EQ(search_.ReplaceNext(), kNotFound) << "there is no other row";
  EXPECT_EQ(Names()[0], "Net one one");
}

}  // namespace
}  // namespace quillan
