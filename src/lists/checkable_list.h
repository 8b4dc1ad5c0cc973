#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "lists/list_description.h"
#include "lists/list_services.h"
#include "platform/ado/recordset.h"
#include "platform/grid/grid.h"

namespace quillan {

/// A list of rows that can be checked, over one table: loads its rows into a grid, keeps what the
/// user changes there as row states and marks, and writes it when it is told to. What differs from
/// list to list is its description and the statements of the overrides.
class CheckableList : public GridListener {
 public:
  /// Red marks what will be written, grey what will be deleted.
  static constexpr Color kChangedColor = Rgb(255, 0, 0);
  static constexpr Color kDeletedColor = Rgb(200, 200, 200);

  CheckableList(const ListDescription& description, const ListServices& services);
  CheckableList(const CheckableList&) = delete;
  CheckableList& operator=(const CheckableList&) = delete;

  /// Reloads the rows from the database; a failed query leaves the header alone.
  void Refresh();
  /// Writes the user's changes to the database, row by row as displayed, under the busy pointer.
  /// Row states and marks stay until the next `Refresh`. A list may let `ado::Error` out.
  void Sync();

  Grid& Table() { return grid_; }
  const Grid& Table() const { return grid_; }

  /// The buttons beside the list, from top to bottom.
  virtual std::vector<ListCommand> Commands() = 0;
  /// Whether the commands that need a data row can be used.
  bool RowCommandsEnabled() const { return grid_.CurrentRow() >= Grid::kFixedRows; }
  /// `handler` is called when `RowCommandsEnabled` may have changed.
  void OnRowCommands(std::function<void()> handler) { row_commands_changed_ = std::move(handler); }

  void OnClick(int row, int column) override;
  bool OnKeyPress(char32_t key) override;
  void OnSelectionChanged() override;
  bool OnBeforeEdit(int row, int column) override;
  void OnAfterEdit(int row, int column) override;

 protected:
  /// Empties the grid and lays it out, with the header row alone.
  void InitGrid();
  /// Checks or unchecks a data row and marks it changed; does nothing to other rows. A row that was
  /// to be deleted is thereby kept.
  void SetRowChecked(int row, bool checked);
  void ToggleRow(int row);
  void SetSelectedChecked(bool checked);
  void ToggleSelected();

  RowState State(int row) const { return static_cast<RowState>(grid_.RowData(row).state); }
  void SetState(int row, RowState state) {
    grid_.RowData(row).state = static_cast<std::int8_t>(state);
  }
  bool IsChecked(int row) const { return grid_.Check(row, 0) == CheckState::kChecked; }
  /// The check state as it stands in a statement: "1" or "0".
  std::string_view Enabled(int row) const { return IsChecked(row) ? "1" : "0"; }
  bool IsSystem(int row) const { return grid_.RowData(row).system; }
  /// Sets the system flag of the row, and the bold type of one that the user defined.
  void SetSystem(int row, bool system);
  void SetRowColor(int row, Color color);
  int EditableColumn() const { return description_.editable_column; }
  const ListServices& services() const { return services_; }

  /// Called for each row that was loaded, while `rows` stands on its record.
  virtual void OnRowLoaded(ado::Recordset& /*rows*/, int /*row*/) {}
  /// Called before the first and after the last row of a `Sync`.
  virtual void OnSyncBegins() {}
  virtual void OnSyncEnds() {}
  /// Write one row that was changed, added, or (user-defined rows only) deleted.
  virtual void WriteChanged(int row) = 0;
  virtual void WriteNew(int row) = 0;
  virtual void WriteDeleted(int row) = 0;

 private:
  void LoadRow(ado::Recordset& rows, std::vector<ado::Field>& fields);
  void MarkChanged(int row);
  bool WriteRow(int row);
  void RecordLastUpdate();

  ListDescription description_;
  ListServices services_;
  Grid grid_;
  std::string edit_start_text_;
  std::function<void()> row_commands_changed_;
};

}  // namespace quillan
