#include "lists/checkable_list.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "lists/list_import.h"
#include "platform/text/ascii.h"

namespace quillan {
namespace {

// Some milliseconds of work.
constexpr size_t kRowsOfProgress = 8192;

}  // namespace

CheckableList::CheckableList(const ListDescription& description, const ListServices& services)
    : description_(description), services_(services) {
  grid_.SetListener(this);
  InitGrid();
}

void CheckableList::LayOut(Grid& grid) const {
  const Grid::Batch batch(grid);
  std::vector<GridColumn> columns;
  for (const ListColumn& column : description_.columns) {
    columns.push_back({.width_text = std::string(column.width_text),
                       .alignment = column.alignment,
                       .stretches = column.stretches,
                       .digits_by_value = column.digits_by_value});
  }
  grid.Reset(Grid::kFixedRows, std::move(columns));
  for (int column = 0; column < grid.Columns(); ++column) {
    grid.SetText(0, column, description_.columns[static_cast<size_t>(column)].header);
  }
}

void CheckableList::InitGrid() {
  LayOut(grid_);
  pending_count_ = 0;
  loaded_texts_.clear();
  loaded_arena_.Clear();
  nested_rows_.clear();
  saved_ = false;
}

void CheckableList::EmptyGrid() {
  grid_.Reset(0, {});
  pending_count_ = 0;
  saved_ = false;
}

std::vector<ado::Field> CheckableList::LoadedFields(ado::Recordset& rows) const {
  std::vector<ado::Field> fields;
  for (const ListColumn& column : description_.columns) {
    fields.push_back(rows.Fields(column.field));
  }
  if (!description_.system_field.empty()) fields.push_back(rows.Fields(description_.system_field));
  return fields;
}

void CheckableList::LoadRows(ado::Recordset& rows) {
  const Grid::Batch batch(grid_);
  max_lengths_.clear();
  for (const ListColumn& column : description_.columns) {
    const size_t size = rows.ColumnSize(column.field);
    max_lengths_.push_back(
        static_cast<int>(std::min<size_t>(size, std::numeric_limits<int>::max())));
  }
  const std::vector<ado::Field> fields = LoadedFields(rows);
  grid_.Reserve(grid_.Rows() + static_cast<int>(rows.RowCount()));
  for (size_t done = 0; !rows.Eof(); rows.MoveNext()) {
    LoadRow(rows, fields, grid_, grid_.AppendRow());
    NoteRowRead(++done, rows);
  }
}

void CheckableList::NoteRowRead(size_t done, const ado::Recordset& rows) {
  if (done % kRowsOfProgress == 0 && !services_.host.OnRowsRead(done, rows.RowCount())) {
    throw std::runtime_error(kStoppedLoad);
  }
}

void CheckableList::LoadRow(ado::Recordset& rows, const std::vector<ado::Field>& fields, Grid& grid,
                            int row) {
  LoadKey(rows, fields, grid, row);
  LoadOthers(fields, grid, row);
}

void CheckableList::LoadKey(ado::Recordset& rows, const std::vector<ado::Field>& fields, Grid& grid,
                            int row) {
  for (int column = 1; column <= description_.key_columns; ++column) {
    LoadText(fields, grid, row, column);
  }
  OnRowLoaded(rows, grid, row);
}

void CheckableList::LoadOthers(const std::vector<ado::Field>& fields, Grid& grid, int row) const {
  const bool checked = ado::ToBoolean(fields[0].Value());
  const CheckState check = checked ? CheckState::kChecked : CheckState::kUnchecked;
  grid.SetCheck(row, 0, check);
  grid.RowData(row).loaded_check = check;
  for (int column = description_.key_columns + 1; column < grid.Columns(); ++column) {
    LoadText(fields, grid, row, column);
  }
  if (!description_.system_field.empty()) {
    SetSystem(grid, row, ado::ToBoolean(fields.back().Value()));
  }
}

void CheckableList::LoadText(const std::vector<ado::Field>& fields, Grid& grid, int row,
                             int column) const {
  const auto index = static_cast<size_t>(column);
  const ado::Value value = fields[index].Value();
  const auto format = description_.columns[index].format;
  if (format != nullptr) {
    grid.SetText(row, column, format(value));
  } else if (const auto* text = std::get_if<std::string_view>(&value)) {
    grid.SetText(row, column, *text);
  } else {
    grid.SetText(row, column, ado::ToText(value));
  }
}

int CheckableList::MaxLength(int column) const {
  const auto index = static_cast<size_t>(column);
  return index < max_lengths_.size() ? max_lengths_[index] : 0;
}

void CheckableList::SetState(int row, RowState state) {
  std::int8_t& current = grid_.RowData(row).state;
  pending_count_ += (state != RowState::kUnchanged ? 1 : 0) - (current != 0 ? 1 : 0);
  current = static_cast<std::int8_t>(state);
}

void CheckableList::ReportPending() {
  if (PendingCount() == reported_count_) return;
  reported_count_ = PendingCount();
  if (pending_changed_) pending_changed_();
}

void CheckableList::SetRowChecked(int row, bool checked) {
  if (row < Grid::kFixedRows) return;
  MarkChanged(row);
  grid_.SetCheck(row, 0, checked ? CheckState::kChecked : CheckState::kUnchecked);
  grid_.SetRowColor(row, kChangedColor);
}

void CheckableList::ToggleRow(int row) {
  if (row < Grid::kFixedRows) return;
  // A row without a box, to be deleted until now, comes back checked.
  SetRowChecked(row, !IsChecked(row));
}

void CheckableList::SetSelectedChecked(bool checked) {
  const Edit edit(*this);
  for (const int row : grid_.SelectedRows()) SetRowChecked(row, checked);
}

void CheckableList::ToggleSelected() {
  const Edit edit(*this);
  for (const int row : grid_.SelectedRows()) ToggleRow(row);
}

void CheckableList::MarkChanged(int row) {
  if (State(row) != RowState::kNew) SetState(row, RowState::kChanged);
}

void CheckableList::MarkDeleted(int row) {
  SetState(row, RowState::kDeleted);
  grid_.SetCheck(row, 0, CheckState::kNone);
  grid_.SetRowColor(row, kDeletedColor);
}

int CheckableList::AppendNewRow(const std::vector<std::string>& texts, CheckState check) {
  // Between a save and the next load the grid can be without even its header.
  if (grid_.Rows() == 0) InitGrid();
  const int row = grid_.AppendRow();
  grid_.SetCheck(row, 0, check);
  int column = 1;
  for (const std::string& text : texts) grid_.SetText(row, column++, text);
  grid_.SetRowColor(row, kChangedColor);
  SetSystem(grid_, row, false);
  SetState(row, RowState::kNew);
  return row;
}

void CheckableList::SetSystem(Grid& grid, int row, bool system) {
  grid.RowData(row).system = system;
  for (int column = 1; column < grid.Columns(); ++column) grid.SetBold(row, column, !system);
}

void CheckableList::OnClick(int row, int column) {
  if (column != 0) return;
  const Edit edit(*this);
  ToggleRow(row);
}

bool CheckableList::OnKeyPress(char32_t key) {
  switch (key) {
    case ' ':
      ToggleSelected();
      return true;
    case '+':
    case '=':
      SetSelectedChecked(true);
      return true;
    case '-':
    case '_':
      SetSelectedChecked(false);
      return true;
    default:
      return false;
  }
}

void CheckableList::OnSelectionChanged() {
  if (row_commands_changed_) row_commands_changed_();
}

bool CheckableList::OnBeforeEdit(int row, int column) {
  if (description_.editable_column == 0 || row < Grid::kFixedRows) return false;
  edit_start_text_ = grid_.Text(row, description_.editable_column);
  return column == description_.editable_column;
}

void CheckableList::OnAfterEdit(int row, int /*column*/) {
  const Edit edit(*this);
  MarkEdited(row, edit_start_text_);
}

void CheckableList::MarkEdited(int row, std::string_view before) {
  const int editable = description_.editable_column;
  MarkChanged(row);
  if (grid_.Text(row, editable) == before) return;
  grid_.SetForeColor(row, editable, kChangedColor);
  if (grid_.RowData(row).loaded_text == 0 && State(row) != RowState::kNew) {
    KeepLoadedText(row, before);
  }
}

void CheckableList::KeepLoadedText(int row, std::string_view text) {
  loaded_texts_.push_back(text::StringArena::View(loaded_arena_.Add(text)));
  grid_.RowData(row).loaded_text = static_cast<std::uint32_t>(loaded_texts_.size());
}

void CheckableList::EditText(int row, std::string_view text) {
  const Edit edit(*this);
  const int editable = description_.editable_column;
  if (!OnBeforeEdit(row, editable)) return;
  grid_.SetText(row, editable, text);
  OnAfterEdit(row, editable);
}

std::string CheckableList::LoadedText(int row) const {
  const std::uint32_t loaded = grid_.RowData(row).loaded_text;
  if (loaded != 0) return std::string(loaded_texts_[loaded - 1]);
  const int editable = description_.editable_column;
  return editable != 0 ? std::string(grid_.Text(row, editable)) : std::string();
}

std::vector<PendingRow> CheckableList::Pending() const {
  const auto header = [&](int column) {
    return std::string(text::TrimSpaces(description_.columns[static_cast<size_t>(column)].header));
  };
  std::vector<PendingRow> pending;
  for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
    const RowState state = State(row);
    if (state == RowState::kUnchanged) continue;
    PendingRow entry{row, state, RowName(grid_, row), {}};
    const auto add = [&](int column, std::string_view from, std::string_view to) {
      if (from != to) entry.values.push_back({header(column), std::string(from), std::string(to)});
    };
    const bool is_new = state == RowState::kNew;
    const bool deleted = state == RowState::kDeleted;
    const CheckState to = IsChecked(row) ? CheckState::kChecked : CheckState::kUnchecked;
    const CheckState from = grid_.RowData(row).loaded_check;
    add(0, from == CheckState::kNone ? "" : CheckWord(from), deleted ? "" : CheckWord(to));
    for (int column = 1; column < grid_.Columns(); ++column) {
      const bool editable = column == description_.editable_column;
      if (!is_new && !deleted && !editable) continue;
      add(column,
          is_new     ? ""
          : editable ? LoadedText(row)
                     : grid_.Text(row, column),
          deleted ? "" : grid_.Text(row, column));
    }
    pending.push_back(std::move(entry));
  }
  if (saved_) return pending;
  for (const KeptRow& row : kept_) pending.push_back({0, row.state, row.name, {}});
  return pending;
}

void CheckableList::Revert(const std::vector<int>& rows) {
  const Edit edit(*this);
  std::vector<int> removed;
  for (const int row : rows) {
    if (State(row) == RowState::kUnchanged) continue;
    SetState(row, RowState::kUnchanged);
    GridRowData& data = grid_.RowData(row);
    if (data.loaded_check == CheckState::kNone) {
      removed.push_back(row);
      continue;
    }
    grid_.SetCheck(row, 0, data.loaded_check);
    if (data.loaded_text != 0) {
      grid_.SetText(row, description_.editable_column, loaded_texts_[data.loaded_text - 1]);
      data.loaded_text = 0;
    }
    grid_.SetRowColor(row, 0);
  }
  nested_rows_.clear();
  grid_.RemoveRows(removed);
}

}  // namespace quillan
