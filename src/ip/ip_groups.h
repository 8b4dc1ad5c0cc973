#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quillan {

/// An address group as the regrouping of endpoints needs it.
struct IPGroup {
  std::int32_t GroupID = 0;  // IPAddressGroups.IPAddressGroupID
  double StartRange = 0;     // IPSortValue of the first address.
  double EndRange = 0;       // IPSortValue of the last address.
  double RangeValue = 0;     // Addresses in the range; set by whoever fills the group.
};

/// Address groups, the largest `RangeValue` first, equal ones in the order in which they were
/// added. The key of each is its `GroupID` in decimal digits. The groups are shared with the
/// caller, who leaves their identifiers and sizes alone while they are held here.
class IPGroups {
 public:
  using Group = std::shared_ptr<IPGroup>;

  /// Inserts a group by its size. Throws std::invalid_argument, and adds nothing, if the collection
  /// already has a group with its key or if `group` is null.
  void Add(Group group);
  /// The group at a position, from 1, or with a key; null if there is none.
  Group Item(int position) const;
  Group Item(std::string_view key) const;
  void Clear();
  std::int32_t Count() const { return static_cast<std::int32_t>(groups_.size()); }
  /// Removes a group; does nothing if there is none.
  void Remove(int position);
  void Remove(std::string_view key);
  auto begin() const { return groups_.begin(); }
  auto end() const { return groups_.end(); }

 private:
  int PositionOf(std::string_view key) const;

  std::vector<Group> groups_;
  std::unordered_set<std::int32_t> ids_;
};

}  // namespace quillan
