#include <utility>

#include "bench/plain_database.h"
#include "bench/rows.h"
#include "bench/suite.h"
#include "bench/timing.h"
#include "ip/ip_functions.h"
#include "platform/ado/sqlite_dialect.h"

namespace quillan::bench {
namespace {

// The columns of a list's query as strings; where each list shows them, the check column first.
struct Shown {
  std::string_view query;
  std::vector<std::size_t> columns;
  bool addresses = false;  // The first two texts are packed addresses.
};

class ListLoad final : public Side {
 public:
  ListLoad(std::shared_ptr<const SuiteFolder> folder, MakeList make)
      : folder_(std::move(folder)), program_(*folder_), make_(make) {}

  void Prepare() override {
    list_.reset();
    list_ = (program_.*make_)();
  }
  void Run() override { list_->Refresh(); }
  std::string Result() override { return Describe(list_->Table()); }

 private:
  std::shared_ptr<const SuiteFolder> folder_;
  Program program_;
  MakeList make_;
  std::unique_ptr<CheckableList> list_;
};

template <std::size_t columns>
class PlainLoad final : public Side {
 public:
  PlainLoad(std::shared_ptr<const SuiteFolder> folder, Shown shown)
      : folder_(std::move(folder)),
        database_(folder_->database()),
        shown_(std::move(shown)),
        query_(ado::TranslateToSqlite(shown_.query)) {}

  void Prepare() override { std::vector<std::array<std::string, columns>>().swap(rows_); }
  void Run() override { rows_ = database_.Read<columns>(query_); }
  std::string Result() override {
    Checksum sum;
    for (const auto& row : rows_) {
      sum.Add(row[shown_.columns[0]] == "1" ? 1U : 0U);
      for (std::size_t i = 1; i < shown_.columns.size(); ++i) {
        const std::string& text = row[shown_.columns[i]];
        const bool address = shown_.addresses && i <= 2;
        sum.Add(address ? SortValueToIPAddress(std::stod(text)) : text);
      }
    }
    return std::to_string(rows_.size()) + " rows, sum " + sum.Text();
  }

 private:
  std::shared_ptr<const SuiteFolder> folder_;
  PlainDatabase database_;
  Shown shown_;
  std::string query_;
  std::vector<std::array<std::string, columns>> rows_;
};

template <std::size_t columns>
Row LoadRow(std::string work, std::vector<Size> sizes, Fill (*fill)(std::size_t), MakeList make,
            Shown shown) {
  Row row{.work = std::move(work),
          .yardstick = "a bare driver loop that copies the same columns into strings",
          .goal = 1.5,
          .sizes = std::move(sizes),
          .short_size = 1000};
  return Timed(std::move(row), [fill, make, shown](std::size_t size) {
    const auto folder = std::make_shared<const SuiteFolder>(fill(size));
    return Comparison{std::make_unique<ListLoad>(folder, make),
                      std::make_unique<PlainLoad<columns>>(folder, shown)};
  });
}

}  // namespace

std::vector<Row> LoadRows() {
  return {
      LoadRow<4>("load ports", {{65536, 31}, {6553, 101}, {655, 301}}, &Ports, &Program::PortList,
                 {"Select * From ServicePorts Order By Port", {3, 0, 1}}),
      LoadRow<6>("load groups", {{12000, 61}, {1200, 201}, {120, 401}}, &Groups,
                 &Program::GroupList,
                 {"Select * From IPAddressGroups Order By IPRangeStart", {5, 1, 2, 3}, true}),
      LoadRow<4>("load interfaces", {{1000000, 7}, {100000, 31}, {10000, 101}}, &Interfaces,
                 &Program::InterfaceList,
                 {"SELECT n.Caption NodeCaption, i.Caption InterfaceCaption, i.InterfaceID, "
                  "ISNUMERIC(s.InterfaceID ) IsNetFlowSource "
                  "FROM Interfaces i "
                  "INNER JOIN Nodes n ON i.NodeID = n.NodeID "
                  "LEFT JOIN NetflowSources s on i.InterfaceID = s.InterfaceID",
                  {3, 0, 1, 2}}),
  };
}

}  // namespace quillan::bench
