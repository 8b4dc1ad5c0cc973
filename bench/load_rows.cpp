#include <memory>
#include <utility>

#include "bench/harness.h"
#include "bench/heap_count.h"
#include "bench/plain_database.h"
#include "bench/suite.h"
#include "ip/ip_functions.h"
#include "platform/ado/sqlite_dialect.h"

namespace quillan::bench {
namespace {

// The columns of a list's query as strings, and where each list shows them, the check column first.
struct Shown {
  std::string_view query;
  std::vector<std::size_t> columns;
  bool addresses = false;  // The first two strings are packed addresses.
};

template <std::size_t columns>
std::string Describe(const std::vector<std::array<std::string, columns>>& rows,
                     const Shown& shown) {
  Checksum sum;
  for (const auto& row : rows) {
    sum.Add(row[shown.columns[0]] == "1" ? 1U : 0U);
    for (std::size_t i = 1; i < shown.columns.size(); ++i) {
      const std::string& text = row[shown.columns[i]];
      sum.Add(shown.addresses && i <= 2 ? SortValueToIPAddress(std::stod(text)) : text);
    }
  }
  return std::to_string(rows.size()) + " rows, sum " + sum.Text();
}

// Yardstick: a bare driver loop that copies the same columns into strings.
template <std::size_t columns>
void AddLoadRow(const std::string& work, std::vector<Size> sizes, Fill (*fill)(std::size_t),
                MakeList make_list, const Shown& shown) {
  AddTimedRow({work, 1.15, std::move(sizes), 1000}, [=](std::size_t size) {
    const auto program = std::make_shared<Program>(std::make_shared<const SuiteFolder>(fill(size)));
    const auto list = std::make_shared<std::unique_ptr<CheckableList>>();
    const auto database = std::make_shared<PlainDatabase>(program->folder().database());
    const auto rows = std::make_shared<std::vector<std::array<std::string, columns>>>();
    return Comparison{
        {[=] {
           list->reset();
           *list = ((*program).*make_list)();
         },
         [=] { (*list)->Refresh(); }, [=] { return quillan::bench::Describe((*list)->Table()); }},
        {[=] { std::vector<std::array<std::string, columns>>().swap(*rows); },
         [=, query = ado::TranslateToSqlite(shown.query)] {
           *rows = database->Read<columns>(query);
         },
         [=] { return Describe(*rows, shown); }}};
  });
}

enum class Moment { kAtRest, kPeak };

// Bytes a row that a loaded list takes, beside those of its strings.
double MemoryAboveStrings(std::size_t size, Moment moment) {
  Program program(std::make_shared<const SuiteFolder>(Interfaces(size)));
  const auto list = program.InterfaceList();
  const HeapCount heap;
  list->Refresh();
  double bytes = moment == Moment::kAtRest ? heap.Held() : heap.Peak();
  const Grid& grid = list->Table();
  ExpectSame(std::to_string(grid.Rows() - Grid::kFixedRows), std::to_string(size));
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    for (int column = 1; column < grid.Columns(); ++column) {
      bytes -= static_cast<double>(grid.Text(row, column).size());
    }
  }
  return bytes / static_cast<double>(size);
}

}  // namespace

void AddLoadRows() {
  AddLoadRow<4>("load ports", {{65536, 31}, {6553, 101}, {655, 301}}, &Ports, &Program::PortList,
                {"Select * From ServicePorts Order By Port", {3, 0, 1}});
  AddLoadRow<6>("load groups", {{12000, 61}, {1200, 201}, {120, 401}}, &Groups, &Program::GroupList,
                {"Select * From IPAddressGroups Order By IPRangeStart", {5, 1, 2, 3}, true});
  AddLoadRow<4>("load interfaces", {{1000000, 7}, {100000, 31}, {10000, 101}}, &Interfaces,
                &Program::InterfaceList,
                {"SELECT n.Caption NodeCaption, i.Caption InterfaceCaption, i.InterfaceID, "
                 "ISNUMERIC(s.InterfaceID ) IsNetFlowSource "
                 "FROM Interfaces i "
                 "INNER JOIN Nodes n ON i.NodeID = n.NodeID "
                 "LEFT JOIN NetflowSources s on i.InterfaceID = s.InterfaceID",
                 {3, 0, 1, 2}});
  const std::vector<Size> sizes = {{1000000, 1}, {100000, 1}};
  AddMeasuredRow({"memory of interfaces at rest", 100, sizes, 5000}, "bytes_a_row",
                 [](std::size_t size) { return MemoryAboveStrings(size, Moment::kAtRest); });
  AddMeasuredRow({"memory of interfaces, peak of the load", 200, sizes, 5000}, "bytes_a_row",
                 [](std::size_t size) { return MemoryAboveStrings(size, Moment::kPeak); });
}

}  // namespace quillan::bench
