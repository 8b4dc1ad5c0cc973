#pragma once

#include <cstdint>
#include <vector>

#include "platform/grid/grid.h"

namespace quillan {

/// A stretch of addresses, both ends included, that one group gets. Addresses are ordinary 32-bit
/// numbers.
struct CoveragePart {
  std::uint32_t start;
  std::uint32_t end;
  int row;  ///< Of the group.
};

/// Which row of a group grid gets which part of the address space once all edits are saved, by the
/// rule of `LookUpAddress`, in the order of the addresses. Neighbouring parts belong to different
/// rows or have a gap between them that no enabled group holds. Takes n log n time.
std::vector<CoveragePart> FindCoverage(const Grid& grid);

}  // namespace quillan
