#include <benchmark/benchmark.h>

#include "bench/heap_count.h"
#include "bench/rows.h"
#include "bench/suite.h"
#include "bench/timing.h"

namespace quillan::bench {
namespace {

struct Memory {
  double at_rest = 0;  // Bytes a row, like the others.
  double peak = 0;
  double texts = 0;
};

Memory MeasureLoad(std::size_t size) {
  const SuiteFolder folder{Interfaces(size)};
  Program program(folder);
  const auto list = program.InterfaceList();
  const HeapCount heap;
  list->Refresh();
  const auto rows = static_cast<double>(size);
  Memory memory{heap.Held() / rows, heap.Peak() / rows, 0};
  const Grid& grid = list->Table();
  ExpectSame(std::to_string(grid.Rows() - Grid::kFixedRows), std::to_string(size));
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    for (int column = 1; column < grid.Columns(); ++column) {
      memory.texts += static_cast<double>(grid.Text(row, column).size()) / rows;
    }
  }
  return memory;
}

Row MemoryRow(std::string work, double goal, double Memory::*figure) {
  return {.work = std::move(work),
          .yardstick = "the bytes of the list's texts",
          .goal = goal,
          .sizes = {{1000000, 1}, {100000, 1}},
          .short_size = 5000,
          .unit = Unit::kBytesPerRow,
          .measure = Measure::kDifference,
          .run =
              [figure](std::size_t size, benchmark::State& state) {
                Memory memory;
                for ([[maybe_unused]] auto iteration : state) {
                  memory = MeasureLoad(size);
                  state.SetIterationTime(0);
                }
                return Figures{memory.*figure, memory.texts};
              },
          .verify = [](std::size_t size) { MeasureLoad(size); }};
}

}  // namespace

std::vector<Row> MemoryRows() {
  return {MemoryRow("memory of interfaces at rest", 160, &Memory::at_rest),
          MemoryRow("memory of interfaces, peak of the load", 400, &Memory::peak)};
}

}  // namespace quillan::bench
