#pragma once

#include <functional>

#include "bench/comparison.h"

namespace quillan::bench {

/// What a run is timed by. The processor's time of this process leaves out what other processes
/// take from it; work that other processes do needs the clock on the wall.
enum class TimedBy { kProcessor, kWall };

/// Makes both sides of a comparison at a size.
using MakeComparison = std::function<Comparison(std::size_t size)>;

/// Completes `row` with the timing of what `make` makes: both sides in turn, each first as often as
/// the other, the median of each; and with the proof that their results are the same.
Row Timed(Row row, MakeComparison make, TimedBy timed_by = TimedBy::kProcessor);

/// Throws std::runtime_error when the texts are not the same.
void ExpectSame(const std::string& ours, const std::string& yardstick);

}  // namespace quillan::bench
