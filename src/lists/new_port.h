#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "db/flow_database.h"
#include "lists/refusal.h"

namespace quillan {

inline constexpr std::int32_t kLowestPort = 1;
inline constexpr std::int32_t kHighestPort = 65536;

/// The number that `text` is, digits alone; nothing for any other text.
std::optional<std::int32_t> ReadPortNumber(std::string_view text);

/// Where the rows of a port grid hold the number and its name.
inline constexpr int kPortColumn = 1;
inline constexpr int kPortDescriptionColumn = 2;

/// A port to be added.
struct NewPort {
  std::int32_t number;  ///< kLowestPort..kHighestPort.
  std::string description;
};

/// The port that the two texts name, or why it cannot be added: its number (the number at the start
/// of the text) is out of range, `database` already holds it, the query fails, or the description
/// is too long.
std::variant<NewPort, Refusal> ValidateNewPort(std::string_view port_number,
                                               std::string_view description,
                                               FlowDatabase& database);

}  // namespace quillan
