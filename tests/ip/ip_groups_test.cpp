#include "ip/ip_groups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace quillan {
namespace {

using testing::ElementsAre;

IPGroups::Group MakeGroup(std::int32_t id, double size) {
  return std::make_shared<IPGroup>(IPGroup{id, 0, 0, size});
}

std::vector<std::int32_t> Ids(const IPGroups& groups) {
  std::vector<std::int32_t> ids;
  for (const auto& group : groups) ids.push_back(group->GroupID);
  return ids;
}

TEST(IPGroupsTest, LargerGroupsComeFirstInTheOrderTheyCameAndAKeyIsTakenOnce) {
  IPGroups groups;
  for (const auto& [id, size] : {std::pair{1, 256}, {2, 65536}, {3, 256}, {40000, 16777216}}) {
    groups.Add(MakeGroup(id, size));
  }
  EXPECT_THAT(Ids(groups), ElementsAre(40000, 2, 1, 3));
  EXPECT_THROW(groups.Add(MakeGroup(1, 512)), std::invalid_argument);
  EXPECT_THROW(groups.Add(nullptr), std::invalid_argument);
  EXPECT_EQ(groups.Item("40000"), groups.Item(1));
  for (const int position : {0, 5}) EXPECT_EQ(groups.Item(position), nullptr);
  groups.Remove(4);
  groups.Remove("1");
  EXPECT_THAT(Ids(groups), ElementsAre(40000, 2));
}

}  // namespace
}  // namespace quillan
