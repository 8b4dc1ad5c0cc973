#include <arpa/inet.h>
#include <string.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>

#include "bench/harness.h"
#include "bench/suite.h"
#include "lists/editable_list.h"
#include "lists/list_filter.h"
#include "lists/list_search.h"
#include "lists/new_group.h"

namespace quillan::bench {
namespace {

// A row as plain code would keep it.
struct PlainRow {
  std::array<std::string, 3> texts;
  std::array<Color, 3> colors{};
  bool checked = false;
  RowState state = RowState::kUnchanged;
};

std::vector<PlainRow> PlainRows(const Grid& grid) {
  std::vector<PlainRow> rows;
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    rows.push_back({.texts = {std::string(grid.Text(row, 1)), std::string(grid.Text(row, 2)),
                              std::string(grid.Text(row, 3))},
                    .checked = grid.Check(row, 0) == CheckState::kChecked});
  }
  return rows;
}

std::string Describe(const std::vector<PlainRow>& rows) {
  Checksum sum;
  for (const PlainRow& row : rows) {
    sum.Add(row.checked ? 1U : 0U);
    for (const std::string& text : row.texts) sum.Add(text);
  }
  return std::to_string(rows.size()) + " rows, sum " + sum.Text();
}

// --- Checking all rows -------------------------------------------------------------------------

std::string DescribeMarks(const Grid& grid) {
  Checksum sum;
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    sum.Add(grid.Check(row, 0) == CheckState::kChecked ? 1U : 0U);
    sum.Add(static_cast<std::uint64_t>(grid.RowData(row).state));
    for (int column = 1; column < grid.Columns(); ++column) sum.Add(grid.ForeColor(row, column));
  }
  return sum.Text();
}

std::string DescribeMarks(const std::vector<PlainRow>& rows) {
  Checksum sum;
  for (const PlainRow& row : rows) {
    sum.Add(row.checked ? 1U : 0U);
    sum.Add(static_cast<std::uint64_t>(row.state));
    for (const Color color : row.colors) sum.Add(color);
  }
  return sum.Text();
}

void CheckAll(std::vector<PlainRow>& rows, bool checked) {
  for (PlainRow& row : rows) {
    if (row.state != RowState::kNew) row.state = RowState::kChanged;
    row.checked = checked;
    row.colors.fill(CheckableList::kChangedColor);
  }
}

// Yardstick: a loop over row structs that sets the same fields.
Comparison CompareCheckAll(std::size_t size) {
  const auto loaded = std::make_shared<LoadedList>(Interfaces(size), &Program::InterfaceList);
  const auto rows = std::make_shared<std::vector<PlainRow>>(PlainRows(loaded->list->Table()));
  const auto commands = std::make_shared<const std::vector<ListCommand>>(loaded->list->Commands());
  return {{[=] { (*commands)[1].run(); }, [=] { (*commands)[0].run(); },
           [=] { return DescribeMarks(loaded->list->Table()); }},
          {[=] { CheckAll(*rows, false); }, [=] { CheckAll(*rows, true); },
           [=] { return DescribeMarks(*rows); }}};
}

// --- Sorting -----------------------------------------------------------------------------------

double Shuffled(std::string_view name) {
  return static_cast<double>(std::hash<std::string_view>()(name));
}

void ShuffleGrid(Grid& grid) {
  grid.SortByKey(kGroupNameColumn, SortDirection::kAscending,
                 [&](int row) { return Shuffled(grid.Text(row, kGroupNameColumn)); });
}

void ShuffleRows(std::vector<PlainRow>& rows) {
  std::stable_sort(rows.begin(), rows.end(), [](const PlainRow& a, const PlainRow& b) {
    return Shuffled(a.texts[2]) < Shuffled(b.texts[2]);
  });
}

// Sorts the rows by `key(row)`, asked once for each.
template <typename Key>
void SortRows(std::vector<PlainRow>& rows, SortDirection direction, Key key) {
  std::vector<std::pair<decltype(key(rows[0])), std::uint32_t>> keys;
  keys.reserve(rows.size());
  for (const PlainRow& row : rows) {
    keys.emplace_back(key(row), static_cast<std::uint32_t>(keys.size()));
  }
  if (direction == SortDirection::kAscending) {
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
  } else {
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
  }
  std::vector<PlainRow> sorted;
  sorted.reserve(rows.size());
  for (const auto& [unused, row] : keys) sorted.push_back(std::move(rows[row]));
  rows.swap(sorted);
}

std::uint32_t ParseAddress(const std::string& text) {
  in_addr address{};
  inet_pton(AF_INET, text.c_str(), &address);
  return ntohl(address.s_addr);
}

// Yardstick: inet_pton, std::stable_sort, moving row structs.
Comparison CompareAddressSort(std::size_t size) {
  const auto loaded = std::make_shared<LoadedList>(Groups(size), &Program::GroupList);
  const auto rows = std::make_shared<std::vector<PlainRow>>(PlainRows(loaded->list->Table()));
  const auto direction = std::make_shared<SortDirection>(SortDirection::kAscending);
  return {{[=] { ShuffleGrid(loaded->list->Table()); },
           [=] { loaded->list->OnSortRequest(kGroupStartColumn); },
           [=] { return quillan::bench::Describe(loaded->list->Table()); }},
          {[=] {
             ShuffleRows(*rows);
             // The direction alternates, and the first one is descending.
             *direction = *direction == SortDirection::kAscending ? SortDirection::kDescending
                                                                  : SortDirection::kAscending;
           },
           [=] {
             SortRows(*rows, *direction,
                      [](const PlainRow& row) { return ParseAddress(row.texts[0]); });
           },
           [=] { return Describe(*rows); }}};
}

std::string PlainCollationKey(const std::string& text) {
  std::string key(std::strxfrm(nullptr, text.c_str(), 0) + 1, '\0');
  std::strxfrm(key.data(), text.c_str(), key.size());
  return key;
}

// Yardstick: the C library's collation keys, std::stable_sort, moving row structs.
Comparison CompareTextSort(std::size_t size) {
  const auto loaded = std::make_shared<LoadedList>(Groups(size), &Program::GroupList);
  const auto rows = std::make_shared<std::vector<PlainRow>>(PlainRows(loaded->list->Table()));
  return {{[=] { loaded->list->OnSortRequest(kGroupStartColumn); },
           [=] { loaded->list->Table().Sort(kGroupNameColumn, SortDirection::kAscending); },
           [=] { return quillan::bench::Describe(loaded->list->Table()); }},
          {[=] { ShuffleRows(*rows); },
           [=] {
             SortRows(*rows, SortDirection::kAscending,
                      [](const PlainRow& row) { return PlainCollationKey(row.texts[2]); });
           },
           [=] { return Describe(*rows); }}};
}

// --- Finding -----------------------------------------------------------------------------------

// Yardstick: strcasestr on every string.
Comparison CompareFilter(std::size_t size) {
  static constexpr char kWanted[] = "ethernet0/4";
  const auto loaded = std::make_shared<LoadedList>(Interfaces(size), &Program::InterfaceList);
  const auto rows = std::make_shared<std::vector<PlainRow>>(PlainRows(loaded->list->Table()));
  const auto ours = std::make_shared<std::size_t>();
  const auto plain = std::make_shared<std::size_t>();
  return {{nullptr,
           [=] {
             const Grid& grid = loaded->list->Table();
             const ListFilter filter(kWanted, FilterKind::kText);
             *ours = 0;
             for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
               *ours += filter.Matches(grid, row) ? 1 : 0;
             }
           },
           [=] { return std::to_string(*ours); }},
          {nullptr,
           [=] {
             const auto matches = [](const std::string& text) {
               return strcasestr(text.c_str(), kWanted) != nullptr;
             };
             *plain = static_cast<std::size_t>(
                 std::count_if(rows->begin(), rows->end(), [&](const PlainRow& row) {
                   return std::any_of(row.texts.begin(), row.texts.begin() + 2, matches);
                 }));
           },
           [=] { return std::to_string(*plain); }}};
}

constexpr char kOld[] = "group";
constexpr std::string_view kNew = "building";

std::size_t FindMatchingCase(const std::string& text, std::size_t from) {
  return text.find(kOld, from);
}

std::size_t FindIgnoringCase(const std::string& text, std::size_t from) {
  const char* found = strcasestr(text.c_str() + from, kOld);
  return found != nullptr ? static_cast<std::size_t>(found - text.c_str()) : std::string::npos;
}

// Every row is a hit, and becomes a pending edit. Yardstick: std::string::replace in a loop over
// the strings.
template <typename Find>
Comparison CompareReplaceAll(std::size_t size, bool match_case, Find find) {
  const auto loaded = std::make_shared<LoadedList>(Groups(size), &Program::GroupList);
  const auto original =
      std::make_shared<const std::vector<PlainRow>>(PlainRows(loaded->list->Table()));
  const auto rows = std::make_shared<std::vector<PlainRow>>();
  const auto search = std::make_shared<ListSearch>(*loaded->list);
  search->SetTexts(kOld, kNew, match_case);
  return {{[=] { loaded->list->RevertSelected(); }, [=] { search->ReplaceAll(); },
           [=] { return quillan::bench::Describe(loaded->list->Table()); }},
          {[=] { *rows = *original; },
           [=] {
             for (PlainRow& row : *rows) {
               std::string& text = row.texts[2];
               for (std::size_t at = find(text, 0); at != std::string::npos;
                    at = find(text, at + kNew.size())) {
                 text.replace(at, sizeof kOld - 1, kNew);
               }
             }
           },
           [=] { return Describe(*rows); }}};
}

// --- Importing ---------------------------------------------------------------------------------

// A line "start,end,name" as a preview shows it.
struct PlainLine {
  std::string start;
  std::string end;
  std::string name;
  bool accepted = false;
};

// Accepts the lines whose range is not nested with another one.
std::vector<PlainLine> PlanPlainly(const std::string& file) {
  struct NumberedRange {
    std::uint32_t start;
    std::uint32_t end;
    std::size_t line;
  };
  std::vector<PlainLine> lines;
  std::vector<NumberedRange> ranges;
  for (std::size_t at = 0; at < file.size();) {
    const std::size_t first = file.find(',', at);
    const std::size_t second = file.find(',', first + 1);
    const std::size_t end = file.find("\r\n", second);
    PlainLine& line = lines.emplace_back();
    line.start = file.substr(at, first - at);
    line.end = file.substr(first + 1, second - first - 1);
    line.name = file.substr(second + 1, end - second - 1);
    ranges.push_back({ParseAddress(line.start), ParseAddress(line.end), ranges.size()});
    at = end + 2;
  }
  std::sort(ranges.begin(), ranges.end(), [](const NumberedRange& a, const NumberedRange& b) {
    return std::pair(a.start, a.end) < std::pair(b.start, b.end);
  });
  std::uint32_t reached = 0;
  for (const NumberedRange& range : ranges) {
    lines[range.line].accepted = range.end > reached;
    reached = std::max(reached, range.end);
  }
  return lines;
}

// Plans the import of a file into an empty list. Yardstick: split, inet_pton, sort, sweep.
Comparison CompareImport(std::size_t size) {
  const auto file = std::make_shared<std::string>();
  for (const Range& range : GroupRanges(size)) {
    *file += DottedQuad(range.start) + "," + DottedQuad(range.end) + ",name\r\n";
  }
  const auto loaded = std::make_shared<LoadedList>(Groups(0), &Program::GroupList);
  const auto ours = std::make_shared<ImportPlan>();
  const auto plain = std::make_shared<std::vector<PlainLine>>();
  return {{[=] { *ours = {}; },
           [=] {
             auto& list = static_cast<EditableList&>(*loaded->list);
             *ours = list.PlanImport(*file, ImportMode::kMerge);
           },
           [=] {
             Checksum sum;
             for (const ImportLine& line : ours->lines) {
               for (const std::string& text : {line.key, line.end, line.name}) sum.Add(text);
               sum.Add(line.verdict == ImportVerdict::kNew ? 1U : 0U);
             }
             return sum.Text();
           }},
          {[=] { plain->clear(); }, [=] { *plain = PlanPlainly(*file); },
           [=] {
             Checksum sum;
             for (const PlainLine& line : *plain) {
               for (const std::string& text : {line.start, line.end, line.name}) sum.Add(text);
               sum.Add(line.accepted ? 1U : 0U);
             }
             return sum.Text();
           }}};
}

// --- Looking for a nested range ----------------------------------------------------------------

std::size_t FindNested(const std::vector<std::pair<std::string, std::string>>& rows) {
  const std::uint32_t start = ParseAddress(rows.back().first);
  const std::uint32_t end = ParseAddress(rows.back().second);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::uint32_t row_start = ParseAddress(rows[i].first);
    const std::uint32_t row_end = ParseAddress(rows[i].second);
    if ((start >= row_start && end <= row_end) || (row_start >= start && row_end <= end)) return i;
  }
  return rows.size();
}

// Asks for the range of the last row, with which no other one is nested. Yardstick: inet_pton of
// every pair, and comparing.
Comparison CompareNesting(std::size_t size) {
  const auto grid = std::make_shared<Grid>();
  const auto rows = std::make_shared<std::vector<std::pair<std::string, std::string>>>();
  grid->Reset(Grid::kFixedRows, std::vector<GridColumn>(4));
  for (const Range& range : GroupRanges(size)) {
    rows->emplace_back(DottedQuad(range.start), DottedQuad(range.end));
    const int row = grid->AppendRow();
    grid->SetText(row, kGroupStartColumn, rows->back().first);
    grid->SetText(row, kGroupEndColumn, rows->back().second);
    grid->SetText(row, kGroupNameColumn, "(group " + std::to_string(row) + ")");
  }
  const auto files = std::make_shared<DiskFiles>();
  const auto database = std::make_shared<FlowDatabase>(*files, "/nowhere", nullptr);
  const auto refusal = std::make_shared<std::optional<Refusal>>();
  const auto found = std::make_shared<std::size_t>();
  return {{nullptr,
           [=, keep = files] {
             *refusal =
                 RefuseNewGroup(rows->back().first, rows->back().second, grid.get(), *database);
           },
           [=] {
             const std::string name(grid->Text(grid->Rows() - 1, kGroupNameColumn));
             return *refusal && (*refusal)->message.find(name) != std::string::npos
                        ? std::to_string(rows->size() - 1)
                        : "none";
           }},
          {nullptr, [=] { *found = FindNested(*rows); }, [=] { return std::to_string(*found); }}};
}

}  // namespace

void AddListRows() {
  AddTimedRow({"check all rows", 1, {{1000000, 31}, {100000, 101}, {10000, 301}}, 5000},
              &CompareCheckAll);
  AddTimedRow({"sort rows by address", 1, {{100000, 41}, {10000, 101}, {1000, 301}}, 2000},
              &CompareAddressSort);
  AddTimedRow({"sort rows by text", 1.2, {{100000, 21}, {10000, 61}, {1000, 201}}, 2000},
              &CompareTextSort);
  AddTimedRow({"filter rows", 1.5, {{1000000, 9}, {100000, 31}, {10000, 101}}, 5000},
              &CompareFilter);
  AddTimedRow({"replace all, every row a hit", 3, {{100000, 21}, {10000, 61}, {1000, 201}}, 2000},
              [](std::size_t size) { return CompareReplaceAll(size, true, &FindMatchingCase); });
  AddTimedRow({"replace all, any case", 3, {{100000, 21}, {10000, 61}, {1000, 201}}, 2000},
              [](std::size_t size) { return CompareReplaceAll(size, false, &FindIgnoringCase); });
  AddTimedRow({"import groups with nesting checks", 2, {{12000, 21}, {1200, 61}, {120, 201}}, 500},
              &CompareImport);
  AddTimedRow({"nesting check against rows", 0.8, {{32000, 201}, {3200, 401}, {320, 801}}, 2000},
              &CompareNesting);
}

}  // namespace quillan::bench
