#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "bench/comparison.h"

namespace quillan::bench {

/// What came out for a row at one of its sizes.
struct Outcome {
  const Row* row;
  std::size_t size;
  Figures figures;
  bool goal_counts;  ///< Whether the size is the one that the goal is for.

  /// What is held against the goal.
  double Figure() const;
  bool Met() const { return Figure() <= row->goal; }
  /// The cost of one unit of the work.
  double CostPerUnit() const;
};

/// The cost of a unit of `outcomes[i]` by that at the next smaller size of its row; nothing where
/// there is none.
std::optional<double> GrowthOf(const std::vector<Outcome>& outcomes, std::size_t i);

/// Writes the table that a person reads.
void PrintTable(const std::vector<Outcome>& outcomes, std::ostream& out);
/// Writes the same as JSON: times in seconds, memory in bytes a row.
void WriteJson(const std::vector<Outcome>& outcomes, std::ostream& out);

}  // namespace quillan::bench
