#include "bench/report.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <string_view>

namespace quillan::bench {
namespace {

std::string Format(const char* format, double value) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), format, value);
  return {text.data(), static_cast<std::size_t>(length)};
}

std::string Amount(double value, Unit unit) {
  if (unit == Unit::kStatements) return Format("%.0f", value);
  if (unit == Unit::kBytesPerRow) return Format("%.1f B", value);
  if (value >= 1) return Format("%.2f s", value);
  if (value >= 1e-3) return Format("%.2f ms", value * 1e3);
  return Format("%.2f us", value * 1e6);
}

std::string Grouped(std::size_t number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, 1, ',');
  return text;
}

std::string FigureText(const Row& row, double figure) {
  return row.measure == Measure::kRatio ? Format("%.2f x", figure) : Format("%+.1f B", figure);
}

std::string GoalText(const Row& row) {
  return row.measure == Measure::kRatio ? Format("<= %g x", row.goal)
                                        : Format("<= %+g B", row.goal);
}

using Line = std::array<std::string, 8>;

void PrintLine(const Line& line, std::ostream& out) {
  constexpr std::array<std::size_t, 8> kWidths = {39, 10, 10, 10, 9, 10, 7, 6};
  for (std::size_t i = 0; i < line.size(); ++i) {
    const std::size_t width = kWidths[i];
    const std::string gap(line[i].size() < width ? width - line[i].size() : 0, ' ');
    out << (i == 0 ? line[i] + gap : "  " + gap + line[i]);
  }
  out << '\n';
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace

double Outcome::Figure() const {
  return row->measure == Measure::kRatio ? figures.ours / figures.yardstick
                                         : figures.ours - figures.yardstick;
}

double Outcome::CostPerUnit() const {
  if (row->unit != Unit::kSeconds || row->growth == Growth::kConstant) return figures.ours;
  const auto n = static_cast<double>(size);
  return figures.ours / (row->growth == Growth::kLinearithmic ? n * std::log2(n) : n);
}

std::optional<double> GrowthOf(const std::vector<Outcome>& outcomes, std::size_t i) {
  if (i + 1 >= outcomes.size() || outcomes[i + 1].row != outcomes[i].row) return std::nullopt;
  return outcomes[i].CostPerUnit() / outcomes[i + 1].CostPerUnit();
}

void PrintTable(const std::vector<Outcome>& outcomes, std::ostream& out) {
  PrintLine({"work", "size", "ours", "yardstick", "figure", "goal", "", "growth"}, out);
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    const Outcome& outcome = outcomes[i];
    const Row& row = *outcome.row;
    const auto growth = GrowthOf(outcomes, i);
    PrintLine({outcome.goal_counts ? row.work : "", Grouped(outcome.size),
               Amount(outcome.figures.ours, row.unit), Amount(outcome.figures.yardstick, row.unit),
               FigureText(row, outcome.Figure()), outcome.goal_counts ? GoalText(row) : "",
               !outcome.goal_counts ? ""
               : outcome.Met()      ? "met"
                                    : "missed",
               growth ? Format("%.2f", *growth) : ""},
              out);
  }
  out << "\nFigure: ours / yardstick (memory: ours - yardstick), medians of runs in turn.\n"
         "Growth: the cost of a unit of work by that at a tenth of the size.\n\nYardsticks:\n";
  for (const Outcome& outcome : outcomes) {
    if (outcome.goal_counts)
      out << "  " << outcome.row->work << ": " << outcome.row->yardstick << '\n';
  }
}

void WriteJson(const std::vector<Outcome>& outcomes, std::ostream& out) {
  out.precision(9);
  out << "{\"rows\": [";
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    const Outcome& outcome = outcomes[i];
    const Row& row = *outcome.row;
    constexpr std::array<const char*, 3> kUnits = {"seconds", "bytes a row", "statements"};
    out << (i > 0 ? ",\n  {" : "\n  {") << "\"work\": " << Quoted(row.work)
        << ", \"yardstick\": " << Quoted(row.yardstick) << ", \"size\": " << outcome.size
        << ", \"unit\": " << Quoted(kUnits[static_cast<std::size_t>(row.unit)])
        << ", \"ours\": " << outcome.figures.ours << ", \"theirs\": " << outcome.figures.yardstick
        << ", \"measure\": " << (row.measure == Measure::kRatio ? "\"ratio\"" : "\"difference\"")
        << ", \"figure\": " << outcome.Figure();
    if (outcome.goal_counts) {
      out << ", \"goal\": " << row.goal << ", \"met\": " << (outcome.Met() ? "true" : "false");
    }
    if (const auto growth = GrowthOf(outcomes, i)) out << ", \"growth\": " << *growth;
    out << '}';
  }
  out << "\n]}\n";
}

}  // namespace quillan::bench
