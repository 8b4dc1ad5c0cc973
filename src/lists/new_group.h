#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "db/flow_database.h"
#include "lists/refusal.h"
#include "platform/grid/grid.h"

namespace quillan {

/// An address group to be added; the texts as the user typed them.
struct NewGroup {
  std::string start;
  std::string end;
  std::string description;
};

/// Where the rows of a group grid hold a range and its name.
inline constexpr int kGroupStartColumn = 1;
inline constexpr int kGroupEndColumn = 2;
inline constexpr int kGroupNameColumn = 3;

/// Why the group cannot be added, the first reason in this order: an invalid start, an invalid end,
/// a reversed range, a range nested with a row of `grid` (may be null; rows to be deleted count
/// too), a range nested with a stored group, disabled ones included, a failed query, or a
/// description that is too long.
std::optional<Refusal> RefuseNewGroup(std::string_view start, std::string_view end,
                                      const Grid* grid, FlowDatabase& database,
                                      std::string_view description = {});

}  // namespace quillan
