#include "lists/address_lookup.h"

#include "ip/ip_functions.h"
#include "lists/list_changes.h"
#include "lists/new_group.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

std::string NameOf(const Grid& grid, int row) {
  return std::string(grid.Text(row, kGroupNameColumn));
}

}  // namespace

GroupRank RankOf(const Grid& grid, int row, double size) {
  const GridRowData& data = grid.RowData(row);
  // New rows get their identifiers in displayed order.
  return {-size, data.state == static_cast<int>(RowState::kNew), data.id, row};
}

AddressLookup LookUpAddress(const Grid& grid, double address) {
  AddressLookup lookup{.address = address, .rows = {}};
  GroupRank best;
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    if (!grid.RowData(row).has_range) continue;
    const double start = IPAddressToSortValue(grid.Text(row, kGroupStartColumn));
    const double end = IPAddressToSortValue(grid.Text(row, kGroupEndColumn));
    if (address < start || address > end) continue;
    lookup.rows.push_back(row);
    // A row to be deleted has no check box.
    if (grid.Check(row, 0) != CheckState::kChecked) continue;
    const GroupRank rank =
        RankOf(grid, row, SortValueToAddressNumber(end) - SortValueToAddressNumber(start));
    if (lookup.enabled_rows++ > 0 && rank < best) continue;
    best = rank;
    lookup.winner = row;
  }
  return lookup;
}

std::string DescribeLookup(const Grid& grid, const AddressLookup& lookup) {
  const std::string goes = SortValueToIPAddress(lookup.address) + " goes to ";
  if (lookup.rows.empty()) return goes + "no group: no range holds it.";
  if (lookup.winner == 0) {
    return goes + "no group: no group that holds it is enabled (" +
           std::to_string(lookup.rows.size()) + " disabled or to be deleted).";
  }
  const std::string name = goes + NameOf(grid, lookup.winner);
  if (lookup.enabled_rows == 1) return name + ", the only enabled group that holds it.";
  return name + ", the smallest of " + std::to_string(lookup.enabled_rows) + " enabled groups.";
}

std::optional<std::string> DescribeStoredGroup(const Grid& grid, const AddressLookup& lookup,
                                               FlowDatabase& database) {
  const auto rows =
      database.OpenRecordset("Select IPAddressGroupID From FlowCorrelation Where IPAddressSort=" +
                             text::FormatDigits(lookup.address));
  if (!rows || rows->Eof()) return std::nullopt;
  const std::int64_t stored = ado::ToWhole(rows->Fields("IPAddressGroupID").Value());
  // A new group has no identifier yet, and is not the group of any stored endpoint.
  if (lookup.winner == 0 ? stored == 0 : stored != 0 && stored == grid.RowData(lookup.winner).id) {
    return std::nullopt;
  }
  const std::string still = "The database still has it in ";
  if (stored == 0) return still + "no group.";
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    if (grid.RowData(row).id == stored) return still + NameOf(grid, row) + ".";
  }
  return still + "a group that does not exist any more.";
}

}  // namespace quillan
