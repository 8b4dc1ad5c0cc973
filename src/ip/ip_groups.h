#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "ip/ip_group.h"

namespace quillan {

/// Address groups, the largest `RangeValue` first, equal ones in the order in which they were
/// added. Each has its `GroupID` in decimal digits as its key. The groups are shared with the
/// caller, who leaves their identifiers and sizes alone while they are held here.
class IPGroups {
 public:
  using Group = std::shared_ptr<IPGroup>;

  /// Puts a group in its place. Throws std::invalid_argument, and adds nothing, when a group with
  /// its key is held already or when there is no group.
  void Add(Group group);
  /// The group at a position, from 1, or with a key; null when there is none.
  Group Item(int position) const;
  Group Item(std::string_view key) const;
  void Clear();
  std::int32_t Count() const { return static_cast<std::int32_t>(groups_.size()); }
  /// Takes a group out; nothing happens when there is none.
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
