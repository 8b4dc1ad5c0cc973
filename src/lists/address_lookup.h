#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "db/flow_database.h"
#include "platform/grid/grid.h"

namespace quillan {

/// Which rows of the group list hold an address, and which of them gets it.
struct AddressLookup {
  double address;         ///< An IPSortValue.
  std::vector<int> rows;  ///< Whose range holds the address, whatever their state, as displayed.
  int enabled_rows = 0;   ///< How many of them are enabled and not to be deleted.
  int winner = 0;         ///< The row that gets the address once all edits are saved; 0: none.
};

/// Ranks the rows that hold an address; the largest gets it.
using GroupRank = std::tuple<double, bool, std::int32_t, int>;
/// The rank of an enabled row; `size` tells how many addresses are behind the first one of its
/// range.
GroupRank RankOf(const Grid& grid, int row, double size);

/// Looks the address up in the rows of a group grid, pending edits included. The smallest enabled
/// range wins; of equally large ones a new row over a stored one, then the larger identifier.
AddressLookup LookUpAddress(const Grid& grid, double address);

/// Who gets the address, and why, as a sentence: "10.0.128.7 goes to Server halls, the smallest of
/// 3 enabled groups."
std::string DescribeLookup(const Grid& grid, const AddressLookup& lookup);

/// A sentence when the endpoint's stored group is another one than `lookup.winner`; nothing when it
/// is the same, no such endpoint was seen, or the database cannot be read.
std::optional<std::string> DescribeStoredGroup(const Grid& grid, const AddressLookup& lookup,
                                               FlowDatabase& database);

}  // namespace quillan
