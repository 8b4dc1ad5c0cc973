#include "lists/address_coverage.h"

#include <algorithm>
#include <limits>

#include <queue>

#include "ip/ip_functions.h"
#include "lists/address_lookup.h"
#include "lists/new_group.h"

namespace quillan {
namespace {

// Wide enough for the number behind the last address.
using Address = std::uint64_t;

constexpr Address kBehindAll = Address{std::numeric_limits<std::uint32_t>::max()} + 1;

struct Range {
  Address start;
  Address end;
  GroupRank rank;
  int row;
};

struct RanksLower {
  bool operator()(const Range* a, const Range* b) const { return a->rank < b->rank; }
};

std::vector<Range> EnabledRanges(const Grid& grid) {
  std::vector<Range> ranges;
  // A list that waits to be read again has no columns.
  if (grid.Columns() <= kGroupEndColumn) return ranges;
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    // A row to be deleted has no check box.
    if (grid.Check(row, 0) != CheckState::kChecked || !grid.RowData(row).has_range) continue;
    const auto address = [&](int column) {
      return SortValueToAddressNumber(IPAddressToSortValue(grid.Text(row, column)));
    };
    const double start = address(kGroupStartColumn);
    const double end = address(kGroupEndColumn);
    if (start > end) continue;
    ranges.push_back({static_cast<Address>(start), static_cast<Address>(end),
                      RankOf(grid, row, end - start), row});
  }
  std::sort(ranges.begin(), ranges.end(),
            [](const Range& a, const Range& b) { return a.start < b.start; });
  return ranges;
}

}  // namespace

std::vector<CoveragePart> FindCoverage(const Grid& grid) {
  const std::vector<Range> ranges = EnabledRanges(grid);
  std::vector<CoveragePart> parts;
  // The ranges that have begun, the one that wins first; some of the others have ended.
  std::priority_queue<const Range*, std::vector<const Range*>, RanksLower> begun;
  auto next = ranges.begin();
  Address at = 0;
  while (true) {
    while (!begun.empty() && begun.top()->end < at) begun.pop();
    if (begun.empty()) {
      if (next == ranges.end()) return parts;
      at = next->start;
    }
    for (; next != ranges.end() && next->start <= at; ++next) begun.push(&*next);
    const Range& winner = *begun.top();
    const Address behind =
        std::min(winner.end + 1, next != ranges.end() ? next->start : kBehindAll);
    const auto end = static_cast<std::uint32_t>(behind - 1);
    if (!parts.empty() && parts.back().row == winner.row && Address{parts.back().end} + 1 == at) {
      parts.back().end = end;
    } else {
      parts.push_back({static_cast<std::uint32_t>(at), end, winner.row});
    }
    at = behind;
  }
}

}  // namespace quillan
