#include "ip/ip_groups.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

namespace quillan {

void IPGroups::Add(Group group) {
  if (group == nullptr) throw std::invalid_argument("No group was given.");
  if (!ids_.insert(group->GroupID).second) {
    throw std::invalid_argument("The collection already has the group " +
                                std::to_string(group->GroupID) + ".");
  }
  const auto place = std::partition_point(groups_.begin(), groups_.end(), [&](const Group& held) {
    return group->RangeValue <= held->RangeValue;
  });
  groups_.insert(place, std::move(group));
}

IPGroups::Group IPGroups::Item(int position) const {
  if (position < 1 || position > Count()) return nullptr;
  return groups_[static_cast<size_t>(position) - 1];
}

IPGroups::Group IPGroups::Item(std::string_view key) const { return Item(PositionOf(key)); }

void IPGroups::Clear() {
  groups_.clear();
  ids_.clear();
}

void IPGroups::Remove(int position) {
  if (position < 1 || position > Count()) return;
  const auto group = groups_.begin() + position - 1;
  ids_.erase((*group)->GroupID);
  groups_.erase(group);
}

void IPGroups::Remove(std::string_view key) { Remove(PositionOf(key)); }

// The position of the group with `key`; 0 if there is none.
int IPGroups::PositionOf(std::string_view key) const {
  const auto found = std::find_if(groups_.begin(), groups_.end(), [&](const Group& group) {
    return std::to_string(group->GroupID) == key;
  });
  return found != groups_.end() ? static_cast<int>(found - groups_.begin()) + 1 : 0;
}

}  // namespace quillan
