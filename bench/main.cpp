// Measures the program's work beside yardsticks in the same run.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>

#include <QApplication>

#include "bench/report.h"
#include "bench/rows.h"
#include "platform/qt/appearance.h"
#include "support/temporary_folder.h"

namespace quillan::bench {
namespace {

constexpr std::string_view kUsage =
    "usage: quillan_bench [--short] [--json FILE] [--benchmark_filter=<regex>]\n\n"
    "Measures the program's work beside yardsticks and prints both with their ratios.\n\n"
    "  --short       do everything small and once, and only prove that both sides do the same\n"
    "  --json FILE   write the figures into FILE as well\n";

struct Options {
  bool short_mode = false;
  std::string json_file;
};

// Takes this program's own options out of `arguments`; false when one is wrong.
bool TakeOptions(std::vector<char*>& arguments, Options& options) {
  for (auto at = arguments.begin() + 1; at != arguments.end();) {
    const std::string_view argument = *at;
    if (argument == "--short") {
      options.short_mode = true;
    } else if (argument == "--json" && at + 1 != arguments.end()) {
      at = arguments.erase(at);
      options.json_file = *at;
    } else {
      if (argument == "--json" || argument == "--help") return false;
      ++at;
      continue;
    }
    at = arguments.erase(at);
  }
  return true;
}

std::vector<Row> AllRows() {
  std::vector<Row> all;
  for (const auto rows : {&LoadRows, &MemoryRows, &SaveRows, &RegroupRows, &GridRows, &AddressRows,
                          &StartUpRows, &ScrollRows}) {
    for (Row& row : rows()) all.push_back(std::move(row));
  }
  return all;
}

// Says which row is at work, on standard error; the table comes at the end.
class Progress final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      failed_ |= run.error_occurred;
      std::cerr << run.run_name.function_name << (run.error_occurred ? ": " : "")
                << run.error_message << '\n';
    }
  }
  bool failed() const { return failed_; }

 private:
  bool failed_ = false;
};

int Verify(const std::vector<Row>& rows) {
  int status = 0;
  for (const Row& row : rows) {
    try {
      row.verify(row.short_size);
      std::cout << "same: " << row.work << '\n';
    } catch (const std::exception& error) {
      std::cout << "NOT the same: " << row.work << ": " << error.what() << '\n';
      status = 1;
    }
  }
  return status;
}

int MeasureAll(const std::vector<Row>& rows, const Options& options) {
  std::vector<Outcome> outcomes;
  for (const Row& row : rows) {
    for (const Size& size : row.sizes) {
      const bool goal_counts = &size == &row.sizes.front();
      benchmark::RegisterBenchmark((row.work + "/" + std::to_string(size.work)).c_str(),
                                   [&outcomes, &row, size, goal_counts](benchmark::State& state) {
                                     try {
                                       const Figures figures = row.run(size.work, state);
                                       outcomes.push_back({&row, size.work, figures, goal_counts});
                                     } catch (const std::exception& error) {
                                       state.SkipWithError(error.what());
                                     }
                                   })
          ->Iterations(size.runs)
          ->UseManualTime();
    }
  }
  Progress progress;
  benchmark::RunSpecifiedBenchmarks(&progress);
  PrintTable(outcomes, std::cout);
  if (!options.json_file.empty()) {
    std::ofstream file(options.json_file);
    WriteJson(outcomes, file);
    if (!file.flush()) {
      std::cerr << "Cannot write " << options.json_file << '\n';
      return 1;
    }
  }
  return progress.failed() ? 1 : 0;
}

}  // namespace
}  // namespace quillan::bench

int main(int argc, char** argv) {
  using namespace quillan::bench;  // NOLINT(google-build-using-namespace): its own program.
  std::vector<char*> arguments(argv, argv + argc);
  Options options;
  if (!TakeOptions(arguments, options)) {
    std::cerr << kUsage;
    return 2;
  }
  auto count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  // No display is needed, and no disk is measured.
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  if (std::filesystem::exists("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1);
  const quillan::test::TemporaryFolder folder;
  setenv("TMPDIR", folder.path().c_str(), 1);
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  const QApplication application(count, arguments.data());
  quillan::InstallAppearance();
  const std::vector<Row> rows = AllRows();
  return options.short_mode ? Verify(rows) : MeasureAll(rows, options);
}
