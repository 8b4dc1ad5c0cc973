#include "lists/import_planner.h"

#include <functional>
#include <unordered_map>

#include "lists/list_changes.h"
#include "lists/refusal.h"

namespace quillan {
namespace {

bool IsDeleted(const Grid& grid, int row) {
  return grid.RowData(row).state == static_cast<int>(RowState::kDeleted);
}

// One line with what is known of it while the plan is made.
struct Candidate {
  std::optional<ImportKey> key;
  bool has_name;
  std::optional<bool> enabled;
  bool usable;
};

struct KeyHash {
  size_t operator()(const ImportKey& key) const {
    const std::hash<double> hash;
    return hash(key.first) * 31 + hash(key.second);
  }
};

class Planner {
 public:
  Planner(const CheckableList& list, ImportRules& rules)
      : grid_(list.Table()),
        rules_(rules),
        name_column_(list.Description().editable_column),
        longest_name_(list.MaxLength(name_column_)) {
    for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
      const auto key = rules.KeyOf(row);
      if (!key) continue;
      // Of several rows with one key the first that is to stay counts.
      const auto [place, added] = rows_.try_emplace(*key, row);
      if (!added && IsDeleted(grid_, place->second)) place->second = row;
    }
  }

  ImportPlan Plan(std::vector<ImportRecord> records, ImportMode mode) {
    plan_.lines.reserve(records.size());
    candidates_.reserve(records.size());
    lines_.reserve(records.size());
    for (ImportRecord& record : records) {
      ImportLine& line = plan_.lines.emplace_back();
      line.line = record.line;
      const auto key = rules_.ReadKey(record, line);
      if (!key) {
        line.key = std::move(record.key);
        line.end = std::move(record.end);
      }
      const bool has_name = record.name.has_value();
      if (has_name) line.name = std::move(*record.name);
      std::string fault = std::move(record.fault);
      if (fault.empty()) fault = RefuseDescription(line.name, longest_name_);
      const bool usable = key && fault.empty();
      if (!fault.empty()) line.reason = std::move(fault);
      candidates_.push_back({key, has_name, record.enabled, usable});
    }
    if (mode == ImportMode::kReplace) DeleteMissingRows();
    if (!PrepareRules()) return std::move(plan_);
    for (size_t i = 0; i < candidates_.size(); ++i) Judge(candidates_[i], plan_.lines[i]);
    return std::move(plan_);
  }

 private:
  int RowOf(const ImportKey& key) const {
    const auto place = rows_.find(key);
    return place == rows_.end() ? 0 : place->second;
  }

  // The row of a refused line stays: the file has it, if not in a form that can be used.
  void DeleteMissingRows() {
    std::vector<bool> named(static_cast<size_t>(grid_.Rows()));
    for (const Candidate& candidate : candidates_) {
      if (candidate.key) named[static_cast<size_t>(RowOf(*candidate.key))] = true;
    }
    for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
      if (named[static_cast<size_t>(row)] || IsDeleted(grid_, row)) continue;
      (grid_.RowData(row).system ? plan_.kept_rows : plan_.deleted_rows).push_back(row);
    }
  }

  bool PrepareRules() {
    std::vector<int> remaining;
    auto deleted = plan_.deleted_rows.begin();
    for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
      if (deleted != plan_.deleted_rows.end() && *deleted == row) {
        ++deleted;
      } else if (!IsDeleted(grid_, row)) {
        remaining.push_back(row);
      }
    }
    std::vector<ImportKey> keys;
    for (const Candidate& candidate : candidates_) {
      if (!candidate.key) continue;
      const int row = RowOf(*candidate.key);
      if (row == 0 || IsDeleted(grid_, row)) keys.push_back(*candidate.key);
    }
    if (keys.empty()) return true;
    const std::string error = rules_.Prepare(remaining, keys);
    if (error.empty()) return true;
    plan_ = {};
    plan_.error = error;
    return false;
  }

  void Judge(const Candidate& candidate, ImportLine& line) {
    if (!candidate.usable) return;
    const auto seen = lines_.find(*candidate.key);
    if (seen != lines_.end()) {
      line.reason = "Line " + std::to_string(seen->second) + " has the same key.";
      return;
    }
    line.row = RowOf(*candidate.key);
    const bool stays = line.row != 0 && !IsDeleted(grid_, line.row);
    if (!stays) {
      const std::string refusal = rules_.AddNew(*candidate.key, line.line);
      if (!refusal.empty()) {
        line.reason = refusal;
        return;
      }
    }
    lines_.emplace(*candidate.key, line.line);
    if (line.row == 0) {
      line.verdict = ImportVerdict::kNew;
      line.enabled = candidate.enabled.value_or(true);
      return;
    }
    const std::string_view name = grid_.Text(line.row, name_column_);
    const bool enabled = grid_.Check(line.row, 0) != CheckState::kUnchecked;
    if (!candidate.has_name) line.name = name;
    line.enabled = candidate.enabled.value_or(enabled);
    const bool same = stays && line.name == name && line.enabled == enabled;
    line.verdict = same ? ImportVerdict::kUnchanged : ImportVerdict::kChanged;
  }

  const Grid& grid_;
  ImportRules& rules_;
  int name_column_;
  int longest_name_;  // 0: no limit.
  ImportPlan plan_;
  std::vector<Candidate> candidates_;
  std::unordered_map<ImportKey, int, KeyHash> rows_;   // Of the list.
  std::unordered_map<ImportKey, int, KeyHash> lines_;  // Accepted so far.
};

}  // namespace

ImportPlan PlanImport(std::string_view bytes, ImportMode mode, const CheckableList& list,
                      ImportRules& rules) {
  std::string error;
  auto records = ReadImport(bytes, rules.Columns(), error);
  if (!error.empty()) {
    ImportPlan plan;
    plan.error = error;
    return plan;
  }
  return Planner(list, rules).Plan(std::move(records), mode);
}

}  // namespace quillan
