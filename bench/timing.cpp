#include "bench/timing.h"

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <stdexcept>

namespace quillan::bench {
namespace {

double Now(TimedBy timed_by) {
  timespec now{};
  clock_gettime(timed_by == TimedBy::kProcessor ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double SecondsOf(Side& side, TimedBy timed_by) {
  side.Prepare();
  const double start = Now(timed_by);
  side.Run();
  return Now(timed_by) - start;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

Figures Time(const Comparison& sides, benchmark::State& state, TimedBy timed_by) {
  // Neither side meets cold caches alone.
  SecondsOf(*sides.yardstick, timed_by);
  SecondsOf(*sides.ours, timed_by);
  ExpectSame(sides.ours->Result(), sides.yardstick->Result());
  std::vector<double> ours;
  std::vector<double> yardstick;
  for ([[maybe_unused]] auto iteration : state) {
    const bool ours_first = ours.size() % 2 == 0;
    if (ours_first) ours.push_back(SecondsOf(*sides.ours, timed_by));
    yardstick.push_back(SecondsOf(*sides.yardstick, timed_by));
    if (!ours_first) ours.push_back(SecondsOf(*sides.ours, timed_by));
    state.SetIterationTime(ours.back());
  }
  return {Median(std::move(ours)), Median(std::move(yardstick))};
}

}  // namespace

Row Timed(Row row, MakeComparison make, TimedBy timed_by) {
  row.run = [make, timed_by](size_t size, benchmark::State& state) {
    return Time(make(size), state, timed_by);
  };
  row.verify = [make = std::move(make)](size_t size) {
    const Comparison sides = make(size);
    // Twice, as what the first run leaves behind must not disturb the second.
    for (int i = 0; i < 2; ++i) {
      for (Side* side : {sides.ours.get(), sides.yardstick.get()}) {
        side->Prepare();
        side->Run();
      }
      ExpectSame(sides.ours->Result(), sides.yardstick->Result());
    }
  };
  return row;
}

void ExpectSame(const std::string& ours, const std::string& yardstick) {
  if (ours == yardstick) return;
  throw std::runtime_error("the program's result is \"" + ours + "\", the yardstick's \"" +
                           yardstick + "\"");
}

}  // namespace quillan::bench
