#include <stdexcept>

#include "bench/rows.h"
#include "bench/save_sides.h"
#include "bench/timing.h"

namespace quillan::bench {
namespace {

// Every third row is changed.
constexpr int kRowsOfChange = 3;

void ToggleRows(CheckableList& list) {
  for (int row = Grid::kFixedRows; row < list.Table().Rows(); row += kRowsOfChange) {
    list.OnClick(row, 0);
  }
}

std::string DescribeTables(PlainDatabase& database) {
  return DescribeRows<4>(database, "select Port, ServiceName, System, Enabled from ServicePorts") +
         "; " + DescribeRows<1>(database, "select InterfaceID from NetFlowSources") + "; " +
         DescribeRows<2>(database, "select Name, Value from GlobalSettings");
}

Row SaveRow(std::string work, Fill (*fill)(std::size_t), MakeList list) {
  Row row{.work = std::move(work),
          .yardstick = "the bare driver running the same, translated statements",
          .goal = 1.2,
          .sizes = {{20000, 9}, {2000, 31}, {200, 61}},
          .short_size = 200};
  return Timed(std::move(row), [fill, list](std::size_t size) {
    const SaveWork save{std::make_shared<const SuiteFolder>(fill(size * kRowsOfChange)), list,
                        &ToggleRows, &DescribeTables};
    auto statements = StatementsOf(save);
    if (statements.size() < size) throw std::runtime_error("a changed row was not written");
    return CompareSaves(save, std::move(statements));
  });
}

}  // namespace

std::vector<Row> SaveRows() {
  return {SaveRow("save changed ports", &Ports, &Program::PortList),
          SaveRow("save changed interfaces", &Interfaces, &Program::InterfaceList)};
}

}  // namespace quillan::bench
