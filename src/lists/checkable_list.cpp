#include "lists/checkable_list.h"

#include <optional>

#include "db/sql_text.h"

namespace quillan {
CheckableList::CheckableList(const ListDescription& description, const ListServices& services)
    : description_(description), services_(services) {
  grid_.SetListener(this);
  InitGrid();
}

void CheckableList::InitGrid() {
  const Grid::Batch batch(grid_);
  std::vector<GridColumn> columns;
  for (const ListColumn& column : description_.columns) {
    columns.push_back({.width_text = std::string(column.width_text),
                       .alignment = column.alignment,
                       .stretches = column.stretches,
                       .digits_by_value = column.digits_by_value});
  }
  grid_.Reset(Grid::kFixedRows, std::move(columns));
  for (int column = 0; column < grid_.Columns(); ++column) {
    grid_.SetText(0, column, description_.columns[static_cast<size_t>(column)].header);
  }
}

void CheckableList::Refresh() {
  const Grid::Batch batch(grid_);
  InitGrid();
  const auto rows = services_.database.OpenRecordset(description_.query);
  if (!rows) return;
  std::vector<ado::Field> fields;
  for (const ListColumn& column : description_.columns) {
    fields.push_back(rows->Fields(column.field));
  }
  if (!description_.system_field.empty()) {
    fields.push_back(rows->Fields(description_.system_field));
  }
  for (; !rows->Eof(); rows->MoveNext()) LoadRow(*rows, fields);
}

void CheckableList::LoadRow(ado::Recordset& rows, std::vector<ado::Field>& fields) {
  const int row = grid_.AppendRow();
  const bool checked = ado::ToBoolean(fields[0].Value());
  grid_.SetCheck(row, 0, checked ? CheckState::kChecked : CheckState::kUnchecked);
  for (int column = 1; column < grid_.Columns(); ++column) {
    const auto index = static_cast<size_t>(column);
    const ado::Value value = fields[index].Value();
    const auto format = description_.columns[index].format;
    if (format != nullptr) {
      grid_.SetText(row, column, format(value));
    } else if (const auto* text = std::get_if<std::string_view>(&value)) {
      grid_.SetText(row, column, *text);
    } else {
      grid_.SetText(row, column, ado::ToText(value));
    }
  }
  if (!description_.system_field.empty()) SetSystem(row, ado::ToBoolean(fields.back().Value()));
  OnRowLoaded(rows, row);
}

void CheckableList::Sync() {
  const BusyPointer busy(services_.host);
  OnSyncBegins();
  bool written = false;
  const int rows = grid_.Rows();
  for (const bool first : {true, false}) {
    for (int row = Grid::kFixedRows; row < rows; ++row) {
      const bool goes_first = State(row) == RowState::kDeleted && grid_.RowData(row).deleted_first;
      if (goes_first == first) written |= WriteRow(row);
    }
  }
  if (written) RecordLastUpdate();
  OnSyncEnds();
}

bool CheckableList::WriteRow(int row) {
  switch (State(row)) {
    case RowState::kChanged:
      WriteChanged(row);
      return true;
    case RowState::kNew:
      WriteNew(row);
      return true;
    case RowState::kDeleted:
      if (IsSystem(row)) return false;
      WriteDeleted(row);
      return true;
    case RowState::kUnchanged:
      break;
  }
  return false;
}

void CheckableList::RecordLastUpdate() {
  if (description_.last_update_setting.empty()) return;
  services_.database.Execute("exec tbsp_netflowSetGlobalSetting '" +
                             std::string(description_.last_update_setting) + "', " +
                             SqlText(services_.locale.GeneralDateText(services_.clock.Now())));
}

void CheckableList::SetRowChecked(int row, bool checked) {
  if (row < Grid::kFixedRows) return;
  MarkChanged(row);
  grid_.SetCheck(row, 0, checked ? CheckState::kChecked : CheckState::kUnchecked);
  SetRowColor(row, kChangedColor);
}

void CheckableList::ToggleRow(int row) {
  if (row < Grid::kFixedRows) return;
  // A row without a box, to be deleted until now, comes back checked.
  SetRowChecked(row, !IsChecked(row));
}

void CheckableList::SetSelectedChecked(bool checked) {
  const Grid::Batch batch(grid_);
  for (const int row : grid_.SelectedRows()) SetRowChecked(row, checked);
}

void CheckableList::ToggleSelected() {
  const Grid::Batch batch(grid_);
  for (const int row : grid_.SelectedRows()) ToggleRow(row);
}

void CheckableList::MarkChanged(int row) {
  if (State(row) != RowState::kNew) SetState(row, RowState::kChanged);
}

void CheckableList::SetSystem(int row, bool system) {
  grid_.RowData(row).system = system;
  for (int column = 1; column < grid_.Columns(); ++column) grid_.SetBold(row, column, !system);
}

void CheckableList::SetRowColor(int row, Color color) {
  for (int column = 1; column < grid_.Columns(); ++column) grid_.SetForeColor(row, column, color);
}

void CheckableList::OnClick(int row, int column) {
  if (column != 0) return;
  const Grid::Batch batch(grid_);
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
  const int editable = description_.editable_column;
  MarkChanged(row);
  if (grid_.Text(row, editable) != edit_start_text_) {
    grid_.SetForeColor(row, editable, kChangedColor);
  }
}

}  // namespace quillan
