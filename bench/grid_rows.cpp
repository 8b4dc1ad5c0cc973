#include <arpa/inet.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

#include "bench/rows.h"
#include "bench/suite.h"
#include "bench/timing.h"
#include "lists/new_group.h"

namespace quillan::bench {
namespace {

// --- Checking all rows -------------------------------------------------------------------------

// A loaded list; the program goes after the list, the folder after the program.
struct LoadedList {
  LoadedList(const Fill& fill, MakeList make) : folder(fill), program(folder) {
    list = (program.*make)();
    list->Refresh();
  }

  SuiteFolder folder;
  Program program;
  std::unique_ptr<CheckableList> list;
};

class ListCheck final : public Side {
 public:
  explicit ListCheck(std::shared_ptr<LoadedList> loaded)
      : loaded_(std::move(loaded)), commands_(loaded_->list->Commands()) {}

  void Prepare() override { commands_[1].run(); }
  void Run() override { commands_[0].run(); }
  std::string Result() override {
    const Grid& grid = loaded_->list->Table();
    Checksum sum;
    for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
      sum.Add(grid.Check(row, 0) == CheckState::kChecked ? 1U : 0U);
      sum.Add(static_cast<std::uint64_t>(grid.RowData(row).state));
      for (int column = 1; column < grid.Columns(); ++column) sum.Add(grid.ForeColor(row, column));
    }
    return sum.Text();
  }

 private:
  std::shared_ptr<LoadedList> loaded_;
  std::vector<ListCommand> commands_;
};

struct PlainInterface {
  std::array<std::string, 3> texts;
  std::array<Color, 3> colors;
  bool checked;
  RowState state;
};

class PlainCheck final : public Side {
 public:
  explicit PlainCheck(const Grid& grid) {
    for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
      rows_.push_back({{std::string(grid.Text(row, 1)), std::string(grid.Text(row, 2)),
                        std::string(grid.Text(row, 3))},
                       {},
                       grid.Check(row, 0) == CheckState::kChecked,
                       RowState::kUnchanged});
    }
  }

  void Prepare() override { CheckAll(false); }
  void Run() override { CheckAll(true); }
  std::string Result() override {
    Checksum sum;
    for (const PlainInterface& row : rows_) {
      sum.Add(row.checked ? 1U : 0U);
      sum.Add(static_cast<std::uint64_t>(row.state));
      for (const Color color : row.colors) sum.Add(color);
    }
    return sum.Text();
  }

 private:
  void CheckAll(bool checked) {
    for (PlainInterface& row : rows_) {
      if (row.state != RowState::kNew) row.state = RowState::kChanged;
      row.checked = checked;
      row.colors.fill(CheckableList::kChangedColor);
    }
  }

  std::vector<PlainInterface> rows_;
};

// --- Sorting by address ------------------------------------------------------------------------

std::size_t Shuffled(std::string_view name) { return std::hash<std::string_view>()(name); }

class ListSort final : public Side {
 public:
  explicit ListSort(std::shared_ptr<LoadedList> loaded) : loaded_(std::move(loaded)) {}

  void Prepare() override {
    Grid& grid = loaded_->list->Table();
    grid.SortByKey(kGroupNameColumn, SortDirection::kAscending, [&](int row) {
      return static_cast<double>(Shuffled(grid.Text(row, kGroupNameColumn)));
    });
  }
  void Run() override { loaded_->list->OnSortRequest(kGroupStartColumn); }
  std::string Result() override { return Describe(loaded_->list->Table()); }

 private:
  std::shared_ptr<LoadedList> loaded_;
};

struct PlainGroup {
  std::array<std::string, 3> texts;
  int id;
  bool checked;
  bool system;
};

class PlainSort final : public Side {
 public:
  explicit PlainSort(const Grid& grid) {
    for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
      rows_.push_back({{std::string(grid.Text(row, 1)), std::string(grid.Text(row, 2)),
                        std::string(grid.Text(row, 3))},
                       row,
                       grid.Check(row, 0) == CheckState::kChecked,
                       false});
    }
  }

  void Prepare() override {
    std::stable_sort(rows_.begin(), rows_.end(), [](const PlainGroup& a, const PlainGroup& b) {
      return static_cast<double>(Shuffled(a.texts[2])) < static_cast<double>(Shuffled(b.texts[2]));
    });
  }
  void Run() override {
    descending_ = !descending_;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> keys;
    keys.reserve(rows_.size());
    for (const PlainGroup& row : rows_) {
      in_addr address{};
      inet_pton(AF_INET, row.texts[0].c_str(), &address);
      keys.emplace_back(ntohl(address.s_addr), static_cast<std::uint32_t>(keys.size()));
    }
    const auto before = [](const auto& a, const auto& b) { return a.first < b.first; };
    const auto after = [](const auto& a, const auto& b) { return a.first > b.first; };
    if (descending_) {
      std::stable_sort(keys.begin(), keys.end(), after);
    } else {
      std::stable_sort(keys.begin(), keys.end(), before);
    }
    std::vector<PlainGroup> sorted;
    sorted.reserve(rows_.size());
    for (const auto& [key, row] : keys) sorted.push_back(std::move(rows_[row]));
    rows_.swap(sorted);
  }
  std::string Result() override {
    Checksum sum;
    for (const PlainGroup& row : rows_) {
      sum.Add(row.checked ? 1U : 0U);
      for (const std::string& text : row.texts) sum.Add(text);
    }
    return std::to_string(rows_.size()) + " rows, sum " + sum.Text();
  }

 private:
  std::vector<PlainGroup> rows_;
  bool descending_ = false;
};

// --- Looking for a nested range ----------------------------------------------------------------

// Rows of ranges of which only the last one is nested with the one asked for, its own.
class GridNesting final : public Side {
 public:
  explicit GridNesting(const std::vector<Range>& ranges)
      : database_(files_, "/nowhere", nullptr),
        start_(DottedQuad(ranges.back().start)),
        end_(DottedQuad(ranges.back().end)) {
    grid_.Reset(Grid::kFixedRows, std::vector<GridColumn>(4));
    for (const Range& range : ranges) {
      const int row = grid_.AppendRow();
      grid_.SetText(row, kGroupStartColumn, DottedQuad(range.start));
      grid_.SetText(row, kGroupEndColumn, DottedQuad(range.end));
      grid_.SetText(row, kGroupNameColumn, "(group " + std::to_string(row) + ")");
    }
  }

  void Run() override { refusal_ = RefuseNewGroup(start_, end_, &grid_, database_); }
  std::string Result() override {
    const std::string name(grid_.Text(grid_.Rows() - 1, kGroupNameColumn));
    const bool found = refusal_ && refusal_->message.find(name) != std::string::npos;
    return found ? "row " + std::to_string(grid_.Rows() - 1) : "none";
  }

 private:
  DiskFiles files_;
  FlowDatabase database_;
  std::string start_;
  std::string end_;
  Grid grid_;
  std::optional<Refusal<NewGroupField>> refusal_;
};

class PlainNesting final : public Side {
 public:
  explicit PlainNesting(const std::vector<Range>& ranges) {
    for (const Range& range : ranges) {
      rows_.emplace_back(DottedQuad(range.start), DottedQuad(range.end));
    }
  }

  void Run() override {
    const std::uint32_t start = Parse(rows_.back().first);
    const std::uint32_t end = Parse(rows_.back().second);
    found_ = 0;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const std::uint32_t row_start = Parse(rows_[i].first);
      const std::uint32_t row_end = Parse(rows_[i].second);
      if ((start >= row_start && end <= row_end) || (row_start >= start && row_end <= end)) {
        found_ = i + 1;
        return;
      }
    }
  }
  std::string Result() override { return "row " + std::to_string(found_); }

 private:
  static std::uint32_t Parse(const std::string& text) {
    in_addr address{};
    inet_pton(AF_INET, text.c_str(), &address);
    return ntohl(address.s_addr);
  }

  std::vector<std::pair<std::string, std::string>> rows_;
  std::size_t found_ = 0;
};

}  // namespace

std::vector<Row> GridRows() {
  Row check{.work = "check all rows",
            .yardstick = "a loop over row structs that sets the same fields",
            .goal = 3,
            .sizes = {{1000000, 31}, {100000, 101}, {10000, 301}},
            .short_size = 5000};
  Row sort{.work = "sort rows by address",
           .yardstick = "inet_pton, std::stable_sort, moving row structs",
           .goal = 1.3,
           .sizes = {{100000, 41}, {10000, 101}, {1000, 301}},
           .short_size = 2000,
           .growth = Growth::kLinearithmic};
  Row nesting{.work = "nesting check against rows",
              .yardstick = "inet_pton of every pair, and comparing",
              .goal = 1,
              .sizes = {{32000, 201}, {3200, 401}, {320, 801}},
              .short_size = 2000};
  return {
      Timed(std::move(check),
            [](std::size_t size) {
              auto loaded = std::make_shared<LoadedList>(Interfaces(size), &Program::InterfaceList);
              auto plain = std::make_unique<PlainCheck>(loaded->list->Table());
              return Comparison{std::make_unique<ListCheck>(loaded), std::move(plain)};
            }),
      Timed(std::move(sort),
            [](std::size_t size) {
              auto loaded = std::make_shared<LoadedList>(Groups(size), &Program::GroupList);
              auto plain = std::make_unique<PlainSort>(loaded->list->Table());
              return Comparison{std::make_unique<ListSort>(loaded), std::move(plain)};
            }),
      Timed(std::move(nesting),
            [](std::size_t size) {
              const std::vector<Range> ranges = GroupRanges(size);
              return Comparison{std::make_unique<GridNesting>(ranges),
                                std::make_unique<PlainNesting>(ranges)};
            }),
  };
}

}  // namespace quillan::bench
