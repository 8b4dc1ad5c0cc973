#include "lists/editable_list.h"

#include "platform/program.h"

namespace quillan {

std::vector<ListCommand> EditableList::Commands() {
  using enum CommandPlace;
  using enum CommandEnabled;
  const std::string selected = " Selected " + std::string(texts_.items);
  return {
      {"cmdCheck", "Check" + selected, kTop, kOnDataRow, [this] { SetSelectedChecked(true); }},
      {"cmdUncheck", "Uncheck" + selected, kTop, kOnDataRow, [this] { SetSelectedChecked(false); }},
      {"cmdToggle", "Toggle" + selected, kTop, kOnDataRow, [this] { ToggleSelected(); }},
      {texts_.add_name, std::string(texts_.add_caption), kBottom, kAlways, [this] { Add(); },
       CommandKey::kInsert},
      {texts_.delete_name, "Delete" + selected, kBottom, kOnDataRow, [this] { DeleteSelected(); },
       CommandKey::kDelete},
  };
}

int EditableList::AddRow(std::initializer_list<std::string_view> texts) {
  Grid& grid = Table();
  const Grid::Batch batch(grid);
  const int row = AppendNewRow(texts, true);
  grid.SelectOnly(row, 1);
  return row;
}

int EditableList::AppendNewRow(std::initializer_list<std::string_view> texts, bool checked) {
  Grid& grid = Table();
  // Between a save and the next load the grid can be without even its header.
  if (grid.Rows() == 0) InitGrid();
  const int row = grid.AppendRow();
  grid.SetCheck(row, 0, checked ? CheckState::kChecked : CheckState::kUnchecked);
  int column = 1;
  for (const std::string_view text : texts) grid.SetText(row, column++, text);
  SetRowColor(row, kChangedColor);
  SetSystem(row, false);
  SetState(row, RowState::kNew);
  return row;
}

void EditableList::DeleteRow(int row, bool first) {
  SetState(row, RowState::kDeleted);
  Table().RowData(row).deleted_first = first;
  Table().SetCheck(row, 0, CheckState::kNone);
  SetRowColor(row, kDeletedColor);
}

void EditableList::ApplyImport(const ImportPlan& plan) {
  Grid& grid = Table();
  const Grid::Batch batch(grid);
  for (const int row : plan.deleted_rows) DeleteRow(row, true);
  for (const ImportLine& line : plan.lines) {
    if (line.verdict == ImportVerdict::kChanged) {
      SetRowChecked(line.row, line.enabled);
      grid.SetText(line.row, EditableColumn(), line.name);
    } else if (line.verdict == ImportVerdict::kNew && line.end.empty()) {
      AppendNewRow({line.key, line.name}, line.enabled);
    } else if (line.verdict == ImportVerdict::kNew) {
      AppendNewRow({line.key, line.end, line.name}, line.enabled);
    }
  }
  OnImported();
}

void EditableList::DeleteSelected() {
  MessageBox& messages = services().messages;
  if (messages.Show(texts_.delete_question, kDisplayName, MessageButtons::kYesNo,
                    MessageIcon::kQuestion) != MessageAnswer::kYes) {
    return;
  }
  bool warn = true;
  Grid& grid = Table();
  const std::vector<int> selected = grid.SelectedRows();
  for (const int row : selected) {
    if (!IsSystem(row)) {
      const Grid::Batch batch(grid);
      DeleteRow(row, false);
    } else if (warn) {
      warn = WarnOfSystemRow(row, selected.size() > 1);
    }
  }
  grid.SelectOnly(0, grid.CurrentColumn());
}

// Whether the next system-defined row is to be warned of as well.
bool EditableList::WarnOfSystemRow(int row, bool several) {
  std::string text = std::string(texts_.system_before) +
                     std::string(Table().Text(row, texts_.system_name_column)) +
                     std::string(texts_.system_after) + "\r" + std::string(texts_.system_uncheck) +
                     "\r\r";
  if (several) text += texts_.system_ask_again;
  const MessageAnswer answer = services().messages.Show(
      text, kDisplayName, several ? MessageButtons::kYesNo : MessageButtons::kOk,
      several ? MessageIcon::kQuestion : MessageIcon::kNone);
  return answer != MessageAnswer::kNo;
}

}  // namespace quillan
