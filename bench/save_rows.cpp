#include <memory>
#include <optional>
#include <stdexcept>

#include "bench/harness.h"
#include "bench/plain_database.h"
#include "bench/suite.h"
#include "platform/ado/sqlite_dialect.h"

namespace quillan::bench {
namespace {

// A list whose changed rows are saved.
struct SaveWork {
  std::shared_ptr<const SuiteFolder> original;  // Each run works on a copy.
  MakeList make_list;
  void (*change)(CheckableList&);  // What the user changes in the loaded list.
  std::string (*describe)(PlainDatabase&);
};

struct LoadedSave {
  LoadedSave(const SaveWork& work, test::DriverScript* script = nullptr)
      : program(std::make_shared<const SuiteFolder>(*work.original), script),
        list((program.*work.make_list)()) {
    list->Refresh();
    work.change(*list);
  }

  Program program;
  std::unique_ptr<CheckableList> list;
};

struct PlainSave {
  explicit PlainSave(const SaveWork& work) : folder(*work.original), database(folder.database()) {}

  SuiteFolder folder;
  PlainDatabase database;
};

// What a save runs, as the engine understands it.
std::vector<std::string> StatementsOf(const SaveWork& work) {
  test::DriverScript script;
  const LoadedSave save(work, &script);
  script.statements.clear();
  save.list->Sync();
  for (std::string& statement : script.statements) statement = ado::TranslateToSqlite(statement);
  return script.statements;
}

// Yardstick: the bare driver running the same, translated statements.
Comparison CompareSaves(const SaveWork& work, const std::vector<std::string>& statements) {
  const auto ours = std::make_shared<std::optional<LoadedSave>>();
  const auto plain = std::make_shared<std::optional<PlainSave>>();
  return {{[=] {
             ours->reset();
             ours->emplace(work);
           },
           [=] { (*ours)->list->Sync(); },
           [=] {
             PlainDatabase database((*ours)->program.folder().database());
             return work.describe(database);
           }},
          {[=] {
             plain->reset();
             plain->emplace(work);
           },
           [=] {
             for (const std::string& statement : statements) (*plain)->database.Run(statement);
           },
           [=] { return work.describe((*plain)->database); }}};
}

template <std::size_t columns>
std::string DescribeRows(PlainDatabase& database, std::string_view query) {
  Checksum sum;
  const auto rows = database.Read<columns>(query);
  for (const auto& row : rows) {
    for (const std::string& text : row) sum.Add(text);
  }
  return std::to_string(rows.size()) + " rows, sum " + sum.Text();
}

// --- Saving changed rows -----------------------------------------------------------------------

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

void AddSaveRow(const std::string& work, Fill (*fill)(std::size_t), MakeList make_list) {
  AddTimedRow({work, 1.1, {{20000, 9}, {2000, 31}, {200, 61}}, 200}, [=](std::size_t size) {
    const SaveWork save{std::make_shared<const SuiteFolder>(fill(size * kRowsOfChange)), make_list,
                        &ToggleRows, &DescribeTables};
    const auto statements = StatementsOf(save);
    if (statements.size() < size) throw std::runtime_error("a changed row was not written");
    return CompareSaves(save, statements);
  });
}

// --- Regrouping endpoints ----------------------------------------------------------------------

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

// --- The query before a save -------------------------------------------------------------------

// Looks for conflicts of a hundred changed rows with others' changes. Yardstick: a load.
Comparison CompareConflictQuery(std::size_t size) {
  const auto ours = std::make_shared<LoadedList>(Ports(size), &Program::PortList);
  const auto loaded = std::make_shared<LoadedList>(Ports(size), &Program::PortList);
  for (std::size_t row = Grid::kFixedRows; row <= size; row += size / 100) {
    ours->list->OnClick(static_cast<int>(row), 0);
  }
  const auto rows = [](const CheckableList& list) { return std::to_string(list.Table().Rows()); };
  return {{nullptr,
           [=] {
             std::vector<Conflict> conflicts;
             if (!ours->list->FindConflicts(conflicts) || !conflicts.empty()) {
               throw std::runtime_error("the stored rows are not as they were loaded");
             }
           },
           [=] { return rows(*ours->list); }},
          {nullptr, [=] { loaded->list->Refresh(); }, [=] { return rows(*loaded->list); }}};
}

}  // namespace

void AddSaveRows() {
  AddSaveRow("save changed ports", &Ports, &Program::PortList);
  AddSaveRow("save changed interfaces", &Interfaces, &Program::InterfaceList);
  AddTimedRow({"query before a save of ports", 1, {{60000, 21}, {6000, 61}, {600, 201}}, 600},
              &CompareConflictQuery);
  AddTimedRow(
      {"regroup 64 groups, endpoints", 1.05, {{2000000, 3}, {200000, 7}, {20000, 21}}, 5000},
      [](std::size_t size) {
        const SaveWork work = Regroup(size);
        const auto statements = StatementsOf(work);
        // One for each group and four around them.
        if (statements.size() > kOverlappingGroups + 4) {
          throw std::runtime_error(std::to_string(statements.size()) + " statements");
        }
        return CompareSaves(work, statements);
      });
}

}  // namespace quillan::bench
