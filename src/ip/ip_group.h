#pragma once

#include <cstdint>

namespace quillan {

/// An address group as the regrouping of endpoints needs it.
struct IPGroup {
  std::int32_t GroupID = 0;  // IPAddressGroups.IPAddressGroupID
  double StartRange = 0;     // IPSortValue of the first address.
  double EndRange = 0;       // IPSortValue of the last address.
  double RangeValue = 0;     // Addresses in the range; set by whoever fills the group.
};

}  // namespace quillan
