#include <arpa/inet.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <stdexcept>

#include <QImage>
#include <queue>

#include "bench/harness.h"
#include "bench/suite.h"
#include "dialog/coverage_strip.h"
#include "lists/new_group.h"

namespace quillan::bench {
namespace {

struct PlainGroup {
  std::string start;
  std::string end;
  bool enabled;
};

std::vector<PlainGroup> PlainGroups(const Grid& grid) {
  std::vector<PlainGroup> groups;
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    groups.push_back({std::string(grid.Text(row, kGroupStartColumn)),
                      std::string(grid.Text(row, kGroupEndColumn)),
                      grid.Check(row, 0) == CheckState::kChecked});
  }
  return groups;
}

// Numbers that do not overflow at the last address.
struct PlainPart {
  std::uint64_t start;
  std::uint64_t end;
  std::uint32_t group;
};

std::uint32_t ParseAddress(const std::string& text) {
  in_addr address{};
  inet_pton(AF_INET, text.c_str(), &address);
  return ntohl(address.s_addr);
}

// Who gets the addresses: at each place the smallest range that holds it, and of equally large ones
// the last group.
std::vector<PlainPart> SweepRanges(const std::vector<PlainGroup>& groups) {
  std::vector<PlainPart> ranges;
  for (std::uint32_t i = 0; i < groups.size(); ++i) {
    if (!groups[i].enabled) continue;
    ranges.push_back({ParseAddress(groups[i].start), ParseAddress(groups[i].end), i});
  }
  std::sort(ranges.begin(), ranges.end(),
            [](const PlainPart& a, const PlainPart& b) { return a.start < b.start; });
  const auto loses = [](const PlainPart& a, const PlainPart& b) {
    return std::pair(b.end - b.start, a.group) < std::pair(a.end - a.start, b.group);
  };
  std::priority_queue<PlainPart, std::vector<PlainPart>, decltype(loses)> open(loses);
  std::vector<PlainPart> parts;
  std::uint64_t at = 0;
  for (std::size_t next = 0; next < ranges.size() || !open.empty();) {
    if (!open.empty() && open.top().end < at) {
      open.pop();
      continue;
    }
    if (open.empty()) at = ranges[next].start;
    while (next < ranges.size() && ranges[next].start <= at) open.push(ranges[next++]);
    std::uint64_t end = open.top().end;
    if (next < ranges.size()) end = std::min(end, ranges[next].start - 1);
    if (!parts.empty() && parts.back().group == open.top().group && parts.back().end + 1 == at) {
      parts.back().end = end;
    } else {
      parts.push_back({at, end, open.top().group});
    }
    at = end + 1;
  }
  return parts;
}

// Yardstick: inet_pton, std::sort, a sweep with a priority queue.
Comparison CompareCoverage(std::size_t size) {
  const auto loaded = std::make_shared<LoadedList>(Groups(size), &Program::GroupList);
  const auto groups =
      std::make_shared<const std::vector<PlainGroup>>(PlainGroups(loaded->list->Table()));
  const auto ours = std::make_shared<std::vector<CoveragePart>>();
  const auto plain = std::make_shared<std::vector<PlainPart>>();
  return {{nullptr, [=] { *ours = FindCoverage(loaded->list->Table()); },
           [=] {
             Checksum sum;
             for (const CoveragePart& part : *ours) {
               sum.Add(part.start);
               sum.Add(part.end);
               sum.Add(static_cast<std::uint64_t>(part.row - Grid::kFixedRows));
             }
             return std::to_string(ours->size()) + " parts, sum " + sum.Text();
           }},
          {nullptr, [=] { *plain = SweepRanges(*groups); },
           [=] {
             Checksum sum;
             for (const PlainPart& part : *plain) {
               sum.Add(part.start);
               sum.Add(part.end);
               sum.Add(std::uint64_t{part.group});
             }
             return std::to_string(plain->size()) + " parts, sum " + sum.Text();
           }}};
}

// The processor time in which the strip finds its parts and paints them, half of the groups
// selected.
double MeasureStrip(std::size_t size) {
  const LoadedList loaded(Groups(size), &Program::GroupList);
  Grid& grid = loaded.list->Table();
  GridView view(grid);
  CoverageStrip strip(grid, view, nullptr);
  strip.resize(640, strip.sizeHint().height());
  for (int row = Grid::kFixedRows; row < grid.Rows(); row += 2) grid.SetSelected(row, row, true);
  constexpr int kRuns = 21;
  std::vector<double> times;
  for (int run = 0; run < kRuns; ++run) {
    strip.OnRowsChanged();
    const std::clock_t begin = std::clock();
    const QImage picture = strip.grab().toImage();
    times.push_back(1000.0 * static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    const QRgb paper = strip.palette().color(QPalette::Base).rgb();
    if (picture.pixel(picture.width() / 2, 2) == paper) throw std::runtime_error("an empty strip");
  }
  std::nth_element(times.begin(), times.begin() + kRuns / 2, times.end());
  return times[kRuns / 2];
}

}  // namespace

void AddCoverageRows() {
  AddTimedRow({"find the coverage of groups", 1.5, {{12000, 61}, {1200, 201}, {120, 401}}, 1000},
              &CompareCoverage);
  AddMeasuredRow({"draw the coverage of groups", 50, {{12000, 1}, {1200, 1}, {120, 1}}, 1000}, "ms",
                 &MeasureStrip);
}

}  // namespace quillan::bench
