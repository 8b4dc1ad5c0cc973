// The part of CheckableList that writes pending rows and compares them with the stored ones.

#include <algorithm>
#include <cstddef>
#include <exception>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "db/sql_text.h"
#include "lists/checkable_list.h"
#include "lists/list_import.h"
#include "platform/ado/driver.h"
#include "platform/ado/error.h"

namespace quillan {
namespace {

constexpr size_t kBatchRows = 100;

constexpr std::string_view kNestedFailure =
    "The group would be nested with one that was added in the meantime.";

}  // namespace

/// One `Sync` of a list.
class CheckableList::Save {
 public:
  explicit Save(CheckableList& list)
      : list_(list), database_(list.services_.database), rows_(RowsToWrite()) {
    outcome_.total = static_cast<int>(rows_.size());
    database_.BeginReport();
  }

  SaveOutcome Run() {
    try {
      list_.OnSyncBegins();
      WriteRows();
    } catch (...) {
      End();
      throw;
    }
    if (next_ > 0) list_.last_update_due_ = true;
    if (list_.last_update_due_) RecordLastUpdate();
    End();
    return outcome_;
  }

 private:
  std::vector<int> RowsToWrite() const {
    std::vector<int> rows;
    for (int row = Grid::kFixedRows; row < list_.grid_.Rows(); ++row) {
      const RowState state = list_.State(row);
      const bool kept = state == RowState::kDeleted && list_.IsSystem(row);
      if (state != RowState::kUnchanged && !kept) rows.push_back(row);
    }
    std::stable_partition(rows.begin(), rows.end(), [&](int row) {
      return list_.State(row) == RowState::kDeleted && list_.grid_.RowData(row).deleted_first;
    });
    return rows;
  }

  void WriteRows() {
    ListHost& host = list_.services_.host;
    while (next_ < rows_.size() && !outcome_.stopped) {
      const ado::Error* failure = list_.description_.batch ? WriteBatch() : WriteRow();
      if (failure != nullptr && list_.description_.stops_at_failure) throw ado::Error(*failure);
      const bool timed_out = failure != nullptr && failure->IsTimeout();
      const bool go_on = host.OnProgress(static_cast<int>(next_), outcome_.total) &&
                         (!timed_out || host.OnTimeout(failure->what()));
      outcome_.stopped = !go_on && next_ < rows_.size();
    }
  }

  // Sets aside what was not written.
  void End() {
    // Memory ran out before the outcomes of these were known.
    for (size_t i = next_; i < sent_; ++i) unknown_.insert(rows_[i]);
    unwritten_.insert(unwritten_.end(), rows_.begin() + static_cast<std::ptrdiff_t>(next_),
                      rows_.end());
    for (const int row : unwritten_) {
      KeptRow& kept = list_.kept_.emplace_back(list_.Keep(row));
      kept.outcome_unknown = unknown_.contains(row);
    }
    list_.saved_ = true;
    database_.EndReport();
    list_.OnSyncEnds();
  }

  // Both write from `next_` on and return the last failure, if any.
  const ado::Error* WriteRow() {
    const int row = rows_[next_++];
    if (std::ranges::count(list_.nested_rows_, row) > 0) {
      return Fail(row, ado::Error(0, "", std::string(kNestedFailure)));
    }
    const size_t before = database_.Report().failures.size();
    try {
      list_.Write(row);
    } catch (const ado::Error& error) {
      return Fail(row, error);
    } catch (const std::exception& error) {
      return Fail(row, ado::Error(0, "", error.what()));
    }
    const auto& failures = database_.Report().failures;
    if (failures.size() > before) return Fail(row, failures[before].error);
    ++outcome_.written;
    return nullptr;
  }

  const ado::Error* WriteBatch() {
    std::vector<std::string> statements;
    for (size_t i = next_; i < std::min(next_ + kBatchRows, rows_.size()); ++i) {
      statements.push_back(list_.Statement(rows_[i]));
    }
    const ado::Error* failure = nullptr;
    const auto mode = list_.description_.stops_at_failure ? ado::BatchMode::kStopAtFailure
                                                          : ado::BatchMode::kRunAll;
    sent_ = next_ + statements.size();
    for (const ado::Outcome& outcome : database_.ExecuteBatch(statements, mode)) {
      const int row = rows_[next_++];
      if (outcome) {
        failure = Fail(row, *outcome);
        if (ado::EndsBatch(*outcome)) unknown_.insert(row);
      } else {
        ++outcome_.written;
      }
    }
    sent_ = next_;
    return failure;
  }

  const ado::Error* Fail(int row, const ado::Error& error) {
    ++outcome_.failed;
    unwritten_.push_back(row);
    list_.failures_.push_back({list_.RowName(list_.grid_, row), error.what()});
    return &last_failure_.emplace(error);
  }

  void RecordLastUpdate() {
    const std::string_view setting = list_.description_.last_update_setting;
    list_.last_update_due_ = false;
    if (setting.empty()) return;
    const ListServices& services = list_.services_;
    const size_t before = database_.Report().failures.size();
    database_.Execute("exec tbsp_netflowSetGlobalSetting '" + std::string(setting) + "', " +
                      SqlText(services.locale.GeneralDateText(services.clock.Now())));
    const auto& failures = database_.Report().failures;
    if (failures.size() > before) {
      list_.failures_.push_back({std::string(setting), failures[before].error.what()});
      list_.last_update_due_ = true;  // The next save writes it, with or without rows.
    }
  }

  CheckableList& list_;
  FlowDatabase& database_;
  std::vector<int> rows_;  // In the order in which they are written.
  size_t next_ = 0;
  size_t sent_ = 0;                  // The end of a batch of which not all outcomes are known.
  std::vector<int> unwritten_;       // Of those before `next_`.
  std::unordered_set<int> unknown_;  // Of the unwritten ones.
  SaveOutcome outcome_;
  std::optional<ado::Error> last_failure_;
};

SaveOutcome CheckableList::Sync() {
  const BusyPointer busy(services_.host);
  failures_.clear();
  // Rows that an earlier save left and that could not be laid over the stored ones since.
  if (!kept_.empty() && !saved_ && !Reload()) {
    if (description_.stops_at_failure) throw ado::Error(0, "", load_error_);
    failures_.push_back({std::string(description_.columns[1].header), load_error_});
    return {.total = PendingCount(), .failed = PendingCount()};
  }
  kept_.clear();
  return Save(*this).Run();
}

void CheckableList::Write(int row) { services_.database.Execute(Statement(row)); }

std::string CheckableList::ValuesText(const Grid& grid, int row) const {
  const bool checked = grid.Check(row, 0) == CheckState::kChecked;
  std::string text(CheckWord(checked ? CheckState::kChecked : CheckState::kUnchecked));
  if (description_.editable_column != 0) {
    text.append(", ").append(grid.Text(row, description_.editable_column));
  }
  return text;
}

bool CheckableList::FindConflicts(std::vector<Conflict>& conflicts) {
  conflict_error_.clear();
  nested_rows_.clear();  // Of an earlier answer, where the save did not get to this list.
  // First the rows that still wait to be laid over the stored ones.
  if (!kept_.empty() && !saved_ && !Reload()) {
    conflict_error_ = load_error_;
    return false;
  }
  const auto rows = services_.database.OpenRecordset(description_.query);
  if (!rows) {
    conflict_error_ = services_.database.LastError();
    return false;
  }
  try {
    AddConflicts(*rows, conflicts);
    return true;
  } catch (const std::exception& failure) {  // A column is missing, memory, or it was stopped.
    conflict_error_ = failure.what();
    return false;
  }
}

void CheckableList::AddConflicts(ado::Recordset& rows, std::vector<Conflict>& conflicts) {
  // Holds one stored row at a time.
  Grid stored;
  LayOut(stored);
  const Grid::Batch batch(stored);
  const int stored_row = stored.AppendRow();
  const int editable = description_.editable_column;
  const size_t first = conflicts.size();
  const auto add = [&](ConflictKind kind, int row) {
    const RowState state = State(row);
    Conflict& conflict = conflicts.emplace_back();
    conflict.kind = kind;
    conflict.row = row;
    conflict.name = RowName(grid_, row);
    if (state != RowState::kNew && grid_.RowData(row).loaded_check != CheckState::kNone) {
      conflict.loaded = std::string(CheckWord(grid_.RowData(row).loaded_check));
      if (editable != 0) conflict.loaded += ", " + LoadedText(row);
    }
    conflict.ours = state == RowState::kDeleted ? "to be deleted" : ValuesText(grid_, row);
    if (kind == ConflictKind::kGone) return;
    conflict.theirs = ValuesText(stored, stored_row);
    if (kind == ConflictKind::kNested) conflict.theirs += " (" + RowName(stored, stored_row) + ")";
    conflict.stored = stored.RowData(stored_row);
    if (editable != 0) conflict.stored_text = stored.Text(stored_row, editable);
  };

  const auto drop = [&](int row) {
    const auto of_row = [&](const Conflict& conflict) { return conflict.row == row; };
    conflicts.erase(std::remove_if(conflicts.begin() + static_cast<std::ptrdiff_t>(first),
                                   conflicts.end(), of_row),
                    conflicts.end());
  };

  struct PendingKey {
    int row;
    bool found = false;
    bool by_id = false;
  };
  std::unordered_multimap<std::string, PendingKey> pending;
  std::unordered_set<std::string> known;
  std::vector<int> new_rows;
  pending.reserve(static_cast<size_t>(pending_count_));
  for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
    if (State(row) != RowState::kUnchanged) pending.emplace(Key(grid_, row), PendingKey{row});
    if (State(row) == RowState::kNew) new_rows.push_back(row);
  }
  const auto note_known = [&] {
    for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
      if (State(row) != RowState::kNew) known.insert(Key(grid_, row));
    }
  };
  // Only somebody else's rows can be nested with ours: the add dialogs refuse the others.
  const auto add_nested = [&](const std::vector<int>& inserted, const std::string& key) {
    if (inserted.empty() || known.contains(key)) return;
    for (const int row : inserted) {
      if (Key(grid_, row) != key && IsNested(row, stored, stored_row)) {
        add(ConflictKind::kNested, row);
      }
    }
  };
  if (!new_rows.empty()) note_known();
  const std::vector<ado::Field> fields = LoadedFields(rows);
  for (size_t done = 0; !rows.Eof(); rows.MoveNext()) {
    LoadKey(rows, fields, stored, stored_row);
    NoteRowRead(++done, rows);
    const std::string key = Key(stored, stored_row);
    const auto [begin, end] = pending.equal_range(key);
    if (begin == end && new_rows.empty()) continue;
    LoadOthers(fields, stored, stored_row);
    for (auto match = begin; match != end; ++match) {
      auto& [row, found, by_id] = match->second;
      if (by_id) continue;  // This is another group of the same range.
      const RowState state = State(row);
      by_id = grid_.RowData(row).id == stored.RowData(stored_row).id;
      if (by_id && found) drop(row);
      found = true;
      const std::string_view text = editable != 0 ? stored.Text(stored_row, editable) : "";
      // A group that was deleted and added again has another identifier.
      const bool as_loaded = by_id && !grid_.RowData(row).overtaken &&
                             stored.Check(stored_row, 0) == grid_.RowData(row).loaded_check &&
                             text == LoadedText(row);
      const bool as_ours =
          by_id && state == RowState::kChanged &&
          (stored.Check(stored_row, 0) == CheckState::kChecked) == IsChecked(row) &&
          (editable == 0 || text == grid_.Text(row, editable));
      if (state == RowState::kNew) {
        add(ConflictKind::kTaken, row);
      } else if (!as_loaded && !as_ours) {
        add(ConflictKind::kChanged, row);
      }
    }
    add_nested(new_rows, key);
  }
  std::vector<int> gone;
  for (const auto& [key, entry] : pending) {
    if (!entry.found && State(entry.row) == RowState::kChanged) gone.push_back(entry.row);
  }
  for (const int row : gone) add(ConflictKind::kGone, row);
  // To overwrite them is to insert them again.
  if (!gone.empty() && new_rows.empty()) note_known();
  for (rows.MoveFirst(); !gone.empty() && !rows.Eof(); rows.MoveNext()) {
    LoadRow(rows, fields, stored, stored_row);
    add_nested(gone, Key(stored, stored_row));
  }
  std::sort(conflicts.begin() + static_cast<std::ptrdiff_t>(first), conflicts.end(),
            [](const Conflict& a, const Conflict& b) { return a.row < b.row; });
}

// Gives the row the stored row's values as the loaded ones.
void CheckableList::TakeStored(const Conflict& conflict) {
  GridRowData& data = grid_.RowData(conflict.row);
  const std::int8_t state = data.state;
  const bool kept = data.kept;
  data = conflict.stored;
  data.state = state;
  data.kept = kept;
  data.loaded_text = 0;
  SetSystem(grid_, conflict.row, conflict.stored.system);
}

void CheckableList::Resolve(const std::vector<Conflict>& conflicts, ConflictAnswer answer) {
  if (answer == ConflictAnswer::kCancel) return;
  const Edit edit(*this);
  const int editable = description_.editable_column;
  std::vector<int> removed;
  for (const Conflict& conflict : conflicts) {
    const int row = conflict.row;
    const bool stored =
        conflict.kind == ConflictKind::kChanged || conflict.kind == ConflictKind::kTaken;
    if (answer == ConflictAnswer::kKeepTheirs) {
      SetState(row, RowState::kUnchanged);
      if (!stored) {
        removed.push_back(row);
        continue;
      }
      TakeStored(conflict);
      grid_.SetCheck(row, 0, conflict.stored.loaded_check);
      if (editable != 0) grid_.SetText(row, editable, conflict.stored_text);
      grid_.SetRowColor(row, 0);
    } else if (stored) {
      TakeStored(conflict);
      if (conflict.kind == ConflictKind::kTaken) SetState(row, RowState::kChanged);
      if (editable != 0 && conflict.stored_text != grid_.Text(row, editable)) {
        KeepLoadedText(row, conflict.stored_text);
      }
    } else if (conflict.kind == ConflictKind::kGone) {
      SetState(row, RowState::kNew);
      GridRowData& data = grid_.RowData(row);
      data.loaded_check = CheckState::kNone;
      data.loaded_text = 0;
      data.id = 0;
      SetSystem(grid_, row, false);
    } else {
      nested_rows_.push_back(row);
    }
  }
  std::sort(removed.begin(), removed.end());
  removed.erase(std::unique(removed.begin(), removed.end()), removed.end());
  grid_.RemoveRows(removed);
}

}  // namespace quillan
