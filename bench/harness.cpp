// Measures the program's work against yardsticks in the same run.

#include "bench/harness.h"

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <QApplication>

#include "platform/qt/appearance.h"
#include "support/temporary_folder.h"

namespace quillan::bench {
namespace {

// Set by --short: every row small and twice, and only to compare results.
bool short_mode = false;

double Now(TimedBy timed_by) {
  timespec now{};
  clock_gettime(timed_by == TimedBy::kProcessor ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double SecondsOf(const Side& side, TimedBy timed_by) {
  if (side.prepare) side.prepare();
  const double start = Now(timed_by);
  side.run();
  return Now(timed_by) - start;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

void Compare(const Comparison& sides, TimedBy timed_by, benchmark::State& state) {
  // Neither side alone is to find cold caches.
  SecondsOf(sides.yardstick, timed_by);
  SecondsOf(sides.ours, timed_by);
  ExpectSame(sides.ours.result(), sides.yardstick.result());
  std::vector<double> ours;
  std::vector<double> yardstick;
  for ([[maybe_unused]] auto iteration : state) {
    const bool ours_first = ours.size() % 2 == 0;
    if (ours_first) ours.push_back(SecondsOf(sides.ours, timed_by));
    yardstick.push_back(SecondsOf(sides.yardstick, timed_by));
    if (!ours_first) ours.push_back(SecondsOf(sides.ours, timed_by));
    state.SetIterationTime(ours.back());
  }
  // Whatever the first runs left behind must not have changed the last ones.
  ExpectSame(sides.ours.result(), sides.yardstick.result());
  if (short_mode) return;
  state.counters["ours"] = Median(ours);
  state.counters["yardstick"] = Median(yardstick);
  state.counters["ratio"] = Median(ours) / Median(yardstick);
}

using RunRow = std::function<void(std::size_t size, benchmark::State& state)>;

void Register(const Row& row, const RunRow& run) {
  const auto add = [&](Size size, bool goal_counts) {
    const auto checked = [run, size, goal = goal_counts ? row.goal : 0](benchmark::State& state) {
      try {
        run(size.work, state);
        if (goal > 0 && !short_mode) state.counters["goal"] = goal;
      } catch (const std::exception& error) {
        state.SkipWithError(error.what());
      }
    };
    benchmark::RegisterBenchmark((row.work + "/" + std::to_string(size.work)).c_str(), checked)
        ->Iterations(size.runs)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  };
  if (short_mode) return add({row.short_size, 2}, false);
  for (const Size& size : row.sizes) add(size, &size == &row.sizes.front());
}

// The usual table; it keeps in mind whether a row failed.
class Reporter final : public benchmark::ConsoleReporter {
 public:
  Reporter() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) failed_ |= run.error_occurred;
    ConsoleReporter::ReportRuns(runs);
  }
  bool failed() const { return failed_; }

 private:
  bool failed_ = false;
};

}  // namespace

void AddTimedRow(const Row& row, std::function<Comparison(std::size_t)> make, TimedBy timed_by) {
  Register(row, [make = std::move(make), timed_by](std::size_t size, benchmark::State& state) {
    Compare(make(size), timed_by, state);
  });
}

void AddMeasuredRow(const Row& row, std::string_view unit,
                    std::function<double(std::size_t)> measure) {
  Register(row, [measure = std::move(measure), unit](std::size_t size, benchmark::State& state) {
    double figure = 0;
    for ([[maybe_unused]] auto iteration : state) {
      figure = measure(size);
      state.SetIterationTime(0);
    }
    if (!short_mode) state.counters[std::string(unit)] = figure;
  });
}

void ExpectSame(const std::string& ours, const std::string& yardstick) {
  if (ours == yardstick) return;
  throw std::runtime_error("our result is \"" + ours + "\", that of the yardstick \"" + yardstick +
                           "\"");
}

int Main(int count, char** arguments) {
  bool large = false;
  if (count > 1) {
    short_mode = std::string_view(arguments[1]) == "--short";
    large = std::string_view(arguments[1]) == "--large";
    if (short_mode || large) std::rotate(arguments + 1, arguments + 2, arguments + count--);
  }
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
  // No display is needed, and no disk is measured.
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  if (std::filesystem::exists("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1);
  const test::TemporaryFolder folder;
  setenv("TMPDIR", folder.path().c_str(), 1);
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
  const QApplication application(count, arguments);
  InstallAppearance();
  if (large) {
    AddLargeRows();
  } else {
    AddLoadRows();
    AddSaveRows();
    AddServerRows();
    AddListRows();
    AddCoverageRows();
    AddAddressRows();
    AddProcessRows();
    AddScrollRows();
    AddWindowRows();
  }
  Reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return reporter.failed() ? 1 : 0;
}

}  // namespace quillan::bench

int main(int argc, char** argv) { return quillan::bench::Main(argc, argv); }
