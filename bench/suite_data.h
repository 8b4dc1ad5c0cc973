#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/sqlite_file.h"

namespace quillan::bench {

// Everything here is made from a fixed seed, so that each run measures the same.

/// Fills the tables of a new database.
using Fill = std::function<void(test::SqliteFile&)>;

/// The ports 1 .. `count` (at most 65,536).
Fill Ports(std::size_t count);
/// `count` groups with random bounds over most of the address space; neighbours overlap, none is
/// nested with another.
Fill Groups(std::size_t count);
/// `count` interfaces of 48 a node, every tenth a NetFlow source.
Fill Interfaces(std::size_t count);

/// The groups of the regrouping: one, named as below, over all endpoints, and 63 that overlap it,
/// 31 its start and 32 its end.
inline constexpr std::uint32_t kOverlappingGroups = 64;
inline constexpr char kWidestGroup[] = "all endpoints";
/// `count` endpoints, evenly spread over the widest of the groups and seen in the order of their
/// addresses.
Fill Endpoints(std::size_t count);

/// A range of 32-bit addresses.
struct Range {
  std::uint32_t start;
  std::uint32_t end;
};
/// The ranges of `Groups(count)`, ascending.
std::vector<Range> GroupRanges(std::size_t count);

/// The dotted quad of a 32-bit address, and its packed number in decimal digits.
std::string DottedQuad(std::uint32_t address);
std::string PackedDigits(std::uint32_t address);

}  // namespace quillan::bench
