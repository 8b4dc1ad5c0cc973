#pragma once

#include <vector>

#include "bench/comparison.h"

namespace quillan::bench {

/// Reading the three lists from the database.
std::vector<Row> LoadRows();
/// The memory of a loaded list.
std::vector<Row> MemoryRows();
/// Writing changed rows.
std::vector<Row> SaveRows();
/// Reassigning endpoints to overlapping groups.
std::vector<Row> RegroupRows();
/// Checking, sorting and searching rows in memory.
std::vector<Row> GridRows();
/// Addresses as text and as numbers.
std::vector<Row> AddressRows();
/// Scrolling a list.
std::vector<Row> ScrollRows();
/// From the start of the process to the first painted page.
std::vector<Row> StartUpRows();

}  // namespace quillan::bench
