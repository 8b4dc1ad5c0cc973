// The part of CheckableList that reads the rows, and lays what is not saved over them.

#include <algorithm>
#include <exception>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "lists/checkable_list.h"

namespace quillan {

bool CheckableList::Refresh() { return LoadOver({}); }

bool CheckableList::Reload() {
  std::vector<KeptRow> edited;
  for (int row = Grid::kFixedRows; !saved_ && row < grid_.Rows(); ++row) {
    if (State(row) != RowState::kUnchanged) edited.push_back(Keep(row));
  }
  kept_.reserve(kept_.size() + edited.size());
  std::ranges::move(edited, std::back_inserter(kept_));
  return LoadOver(std::exchange(kept_, {}));
}

bool CheckableList::LoadOver(std::vector<KeptRow> kept) {
  const Edit edit(*this);
  kept_ = std::move(kept);
  InitGrid();
  load_error_.clear();
  if (services_.host.Stopped()) {
    load_error_ = kStoppedLoad;
    return false;
  }
  const auto rows = services_.database.OpenRecordset(description_.query);
  if (!rows) {
    load_error_ = services_.database.LastError();
    if (load_error_.empty()) load_error_ = "The database cannot be reached.";
    return false;
  }
  try {
    LoadRows(*rows);
    LayOverLoaded();
  } catch (const std::exception& failure) {
    // A part of the rows would look like all of them.
    InitGrid();
    load_error_ = failure.what();
    return false;
  }
  kept_.clear();
  return true;
}

void CheckableList::LayOverLoaded() {
  if (kept_.empty()) return;
  std::unordered_multimap<std::string_view, size_t> kept_of_key;
  for (size_t i = 0; i < kept_.size(); ++i) kept_of_key.emplace(kept_[i].key, i);
  std::vector<int> stored_rows(kept_.size());
  for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
    const auto [begin, end] = kept_of_key.equal_range(Key(grid_, row));
    for (auto match = begin; match != end; ++match) {
      // Of groups that are stored with the same range, the one with the row's identifier.
      int& stored_row = stored_rows[match->second];
      const bool same = grid_.RowData(row).id == kept_[match->second].data.id;
      if (stored_row == 0 || same) stored_row = row;
    }
  }
  for (size_t i = 0; i < kept_.size(); ++i) LayOver(kept_[i], stored_rows[i]);
}

KeptRow CheckableList::Keep(int row) const {
  KeptRow kept{Key(grid_, row),    RowName(grid_, row), State(row), grid_.Check(row, 0), {},
               grid_.RowData(row), LoadedText(row)};
  for (int column = 0; column < grid_.Columns(); ++column) {
    kept.texts.emplace_back(grid_.Text(row, column));
  }
  return kept;
}

// `row` is the stored row of the same key; 0 when there is none.
void CheckableList::LayOver(const KeptRow& kept, int row) {
  if (kept.outcome_unknown && IsWritten(kept, row)) {
    std::erase_if(failures_, [&](const SaveFailure& failure) { return failure.name == kept.name; });
    return;
  }
  const bool stored = row != 0;
  const int editable = description_.editable_column;
  if (stored) {
    // What somebody else stored since the row was loaded must not pass for what was loaded.
    const bool as_loaded = kept.state != RowState::kNew &&
                           grid_.Check(row, 0) == kept.data.loaded_check &&
                           (editable == 0 || grid_.Text(row, editable) == kept.loaded_text);
    grid_.RowData(row).overtaken = kept.data.overtaken || !(as_loaded || IsWritten(kept, row));
  } else {
    row = grid_.AppendRow();
    for (int column = 1; column < grid_.Columns(); ++column) {
      grid_.SetText(row, column, kept.texts[static_cast<size_t>(column)]);
    }
    grid_.RowData(row) = kept.data;
    grid_.RowData(row).state = 0;
    grid_.RowData(row).loaded_text = 0;
    // What the row was deleted from or added to does not hold it.
    if (kept.state != RowState::kChanged) grid_.RowData(row).loaded_check = CheckState::kNone;
    SetSystem(grid_, row, kept.data.system);
  }
  grid_.RowData(row).kept = true;
  if (kept.state == RowState::kDeleted) return MarkDeleted(row);
  SetState(row, kept.state == RowState::kNew && !stored ? RowState::kNew : RowState::kChanged);
  grid_.SetCheck(row, 0, kept.check);
  grid_.SetRowColor(row, kChangedColor);
  if (editable == 0) return;
  const std::string before = stored ? std::string(grid_.Text(row, editable)) : kept.loaded_text;
  const std::string& text = kept.texts[static_cast<size_t>(editable)];
  if (text == before || kept.state == RowState::kNew) return grid_.SetText(row, editable, text);
  KeepLoadedText(row, before);
  grid_.SetText(row, editable, text);
}

// Whether the stored row `row`, or 0, is what the kept row's statement would make of it.
bool CheckableList::IsWritten(const KeptRow& kept, int row) const {
  if (row == 0 || kept.state == RowState::kDeleted) {
    return row == 0 && kept.state == RowState::kDeleted;
  }
  const int editable = description_.editable_column;
  // A row that was to be deleted and was edited then has no box: it is written as unchecked.
  return IsChecked(row) == (kept.check == CheckState::kChecked) &&
         (editable == 0 || grid_.Text(row, editable) == kept.texts[static_cast<size_t>(editable)]);
}

}  // namespace quillan
