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
      {texts_.add_name, std::string(texts_.add_caption), kBottom, kAlways, [this] { Add(); }},
      {texts_.delete_name, "Delete" + selected, kBottom, kOnDataRow, [this] { DeleteSelected(); }},
  };
}

int EditableList::AddRow(const std::vector<std::string>& texts) {
  const Edit edit(*this);
  const int row = AppendNewRow(texts, CheckState::kChecked);
  Table().SelectOnly(row, 1);
  return row;
}

void EditableList::ApplyImport(const ImportPlan& plan) {
  const Edit edit(*this);
  for (const int row : plan.deleted_rows) {
    MarkDeleted(row);
    Table().RowData(row).deleted_first = true;
  }
  for (const ImportLine& line : plan.lines) {
    const CheckState check = line.enabled ? CheckState::kChecked : CheckState::kUnchecked;
    if (line.verdict == ImportVerdict::kChanged) {
      SetRowChecked(line.row, line.enabled);
      EditText(line.row, line.name);
    } else if (line.verdict == ImportVerdict::kNew && line.end.empty()) {
      AppendNewRow({line.key, line.name}, check);
    } else if (line.verdict == ImportVerdict::kNew) {
      AppendNewRow({line.key, line.end, line.name}, check);
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
      const Edit edit(*this);
      MarkDeleted(row);
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
