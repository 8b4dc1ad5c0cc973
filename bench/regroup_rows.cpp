#include <benchmark/benchmark.h>

#include "bench/rows.h"
#include "bench/save_sides.h"
#include "bench/timing.h"

namespace quillan::bench {
namespace {

// Counting the overlapping groups, storing the edited one, asking for the groups that overlap it,
// one reassignment for each of them, and the time of the change.
constexpr std::size_t kStatementsNeeded = 3 + kOverlappingGroups + 1;

// The widest group, unchecked and checked again: changed, and still enabled.
void ToggleWidestTwice(CheckableList& list) {
  int row = Grid::kFixedRows;
  while (list.Table().Text(row, 3) != kWidestGroup) ++row;
  list.OnClick(row, 0);
  list.OnClick(row, 0);
}

std::string DescribeEndpoints(PlainDatabase& database) {
  return DescribeRows<3>(database,
                         "select IPAddressGroupID, count(*), sum(IPAddressSort) "
                         "from FlowCorrelation group by IPAddressGroupID order by 1");
}

SaveWork Regroup(std::size_t endpoints) {
  return {std::make_shared<const SuiteFolder>(Endpoints(endpoints)), &Program::GroupList,
          &ToggleWidestTwice, &DescribeEndpoints};
}

// The statements do not depend on the number of endpoints.
std::vector<std::string> RegroupStatements() { return StatementsOf(Regroup(1000)); }

Figures CountStatements() {
  return {static_cast<double>(RegroupStatements().size()), static_cast<double>(kStatementsNeeded)};
}

}  // namespace

std::vector<Row> RegroupRows() {
  Row regroup{.work = "regroup 64 groups, endpoints",
              .yardstick = "the same statements on the bare driver",
              .goal = 1.1,
              .sizes = {{2000000, 3}, {200000, 7}, {20000, 21}},
              .short_size = 5000};
  Row statements{.work = "statements of that regrouping",
                 .yardstick = "one for each group, and four around them",
                 .goal = 1,
                 .sizes = {{kOverlappingGroups, 1}},
                 .short_size = kOverlappingGroups,
                 .unit = Unit::kStatements,
                 .run =
                     [](std::size_t, benchmark::State& state) {
                       Figures figures;
                       for ([[maybe_unused]] auto iteration : state) {
                         figures = CountStatements();
                         state.SetIterationTime(0);
                       }
                       return figures;
                     },
                 .verify =
                     [](std::size_t) {
                       const Figures counted = CountStatements();
                       ExpectSame(std::to_string(counted.ours), std::to_string(counted.yardstick));
                     }};
  return {Timed(std::move(regroup),
                [](std::size_t size) { return CompareSaves(Regroup(size), RegroupStatements()); }),
          std::move(statements)};
}

}  // namespace quillan::bench
