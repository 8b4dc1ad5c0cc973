#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "lists/list_changes.h"
#include "lists/list_description.h"
#include "lists/list_services.h"
#include "platform/ado/recordset.h"
#include "platform/grid/grid.h"
#include "platform/text/string_arena.h"

namespace quillan {

/// A list of rows that can be checked, over one table: loads its rows into a grid, keeps what the
/// user changes there as row states and marks, and writes it when it is told to. What differs from
/// list to list is its description and the statements of the overrides.
class CheckableList : public GridListener {
 public:
  /// Red marks what will be written, grey what will be deleted.
  static constexpr Color kChangedColor = Rgb(255, 0, 0);
  static constexpr Color kDeletedColor = Rgb(200, 200, 200);
  /// Why a list has no rows after the user has stopped the loading.
  static constexpr const char* kStoppedLoad = "The rows were not read: loading was stopped.";

  CheckableList(const ListDescription& description, const ListServices& services);
  CheckableList(const CheckableList&) = delete;
  CheckableList& operator=(const CheckableList&) = delete;

  /// Reloads the rows from the database and drops every pending change. False, with the header
  /// alone and the reason in `LoadError`, when the rows cannot be read.
  bool Refresh();
  /// Reloads the rows after a save and lays the rows that it did not write over them, still
  /// pending. When the rows cannot be read the pending ones wait for the next call.
  bool Reload();
  /// Why the rows could not be read; empty while they are the database's.
  const std::string& LoadError() const { return load_error_; }

  /// Writes the pending rows to the database, row by row as displayed, under the busy pointer. Row
  /// states and marks stay until the next load. A row fails when one of its statements fails; the
  /// next row is written all the same, but for a list whose failures stop the save: that one lets
  /// the failure out.
  SaveOutcome Sync();
  /// The rows that the last `Sync` could not save, in their order. A row of which it was not known,
  /// as the session was lost, is no longer among them once a `Reload` has found it as it should be.
  const std::vector<SaveFailure>& Failures() const { return failures_; }

  /// The number of pending rows: those whose state is not kUnchanged.
  int PendingCount() const {
    return pending_count_ + (saved_ ? 0 : static_cast<int>(kept_.size()));
  }
  /// The pending rows, as displayed.
  std::vector<PendingRow> Pending() const;
  /// Gives rows the values that were loaded; a new row is removed. `rows` is ascending.
  void Revert(const std::vector<int>& rows);
  void RevertSelected() { Revert(grid_.SelectedRows()); }
  /// `handler` is called when `PendingCount` may have changed.
  void OnPendingChanged(std::function<void()> handler) { pending_changed_ = std::move(handler); }

  /// The most characters that the database takes in a column; 0: no limit, or not known before the
  /// rows have been read.
  int MaxLength(int column) const;

  /// Gives the editable column of a data row another text, as an edit in place does.
  void EditText(int row, std::string_view text);
  /// Marks a data row as edited whose editable text was `before` until now. To be called within an
  /// `Edit`.
  void MarkEdited(int row, std::string_view before);

  /// Whether a save must compare the pending rows with the stored ones first.
  bool NeedsConflictCheck() const { return description_.finds_conflicts && PendingCount() > 0; }
  /// Reads the stored rows and adds the conflicts with the pending ones to `conflicts`. False, with
  /// the reason in `ConflictError`, when they cannot be read.
  bool FindConflicts(std::vector<Conflict>& conflicts);
  /// Why the last `FindConflicts` could not read the stored rows; empty if it could.
  const std::string& ConflictError() const { return conflict_error_; }
  /// Carries out the answer, but for kCancel, to conflicts that `FindConflicts` found. A nested new
  /// group is never written: it is dropped with kKeepTheirs and else fails in the next `Sync`.
  void Resolve(const std::vector<Conflict>& conflicts, ConflictAnswer answer);

  Grid& Table() { return grid_; }
  const Grid& Table() const { return grid_; }
  const ListDescription& Description() const { return description_; }

  /// The buttons beside the list, from top to bottom.
  virtual std::vector<ListCommand> Commands() = 0;
  /// Whether the commands that need a data row can be used.
  bool RowCommandsEnabled() const { return grid_.CurrentRow() >= Grid::kFixedRows; }
  /// `handler` is called when `RowCommandsEnabled` may have changed.
  void OnRowCommands(std::function<void()> handler) { row_commands_changed_ = std::move(handler); }

  /// Identifies the row among the stored ones, however its texts are written.
  virtual std::string Key(const Grid& grid, int row) const = 0;
  /// Names the row to the user.
  virtual std::string RowName(const Grid& grid, int row) const = 0;
  /// What else is to be known about a row before it is saved; may ask the database.
  virtual std::string RowNote(int /*row*/) const { return {}; }

  /// What else is to be said of a filter; `ask_database`: with what the database knows.
  virtual std::string FilterNote(const ListFilter& /*filter*/, bool /*ask_database*/) { return {}; }

  void OnClick(int row, int column) override;
  bool OnKeyPress(char32_t key) override;
  void OnSelectionChanged() override;
  bool OnBeforeEdit(int row, int column) override;
  void OnAfterEdit(int row, int column) override;

  /// Reports the grid's changes and the number of pending rows once, at its end.
  class Edit {
   public:
    explicit Edit(CheckableList& list) : list_(list), batch_(list.grid_) {}
    ~Edit() { list_.ReportPending(); }
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;

   private:
    CheckableList& list_;
    Grid::Batch batch_;
  };

 protected:
  /// Empties the grid and lays it out, with the header row alone.
  void InitGrid();
  /// Removes every row of the grid, the header too.
  void EmptyGrid();
  /// Checks or unchecks a data row and marks it changed; does nothing to other rows. A row that was
  /// to be deleted is thereby kept.
  void SetRowChecked(int row, bool checked);
  void ToggleRow(int row);
  void SetSelectedChecked(bool checked);
  void ToggleSelected();
  /// Marks a row to be deleted by the next save.
  void MarkDeleted(int row);
  /// Adds a user-defined row of state kNew with `texts` from column 1 on; returns its number.
  int AppendNewRow(const std::vector<std::string>& texts, CheckState check);

  RowState State(int row) const { return static_cast<RowState>(grid_.RowData(row).state); }
  void SetState(int row, RowState state);
  bool IsChecked(int row) const { return grid_.Check(row, 0) == CheckState::kChecked; }
  /// The check state as it stands in a statement: "1" or "0".
  std::string_view Enabled(int row) const { return IsChecked(row) ? "1" : "0"; }
  bool IsSystem(int row) const { return grid_.RowData(row).system; }
  const ListServices& services() const { return services_; }

  /// Called for each row that was loaded into `grid`, while `rows` stands on its record.
  virtual void OnRowLoaded(ado::Recordset& /*rows*/, Grid& /*grid*/, int /*row*/) {}
  /// Called before the first and after the last row of a `Sync`.
  virtual void OnSyncBegins() {}
  virtual void OnSyncEnds() {}
  /// The statement that writes a changed, new or (user-defined rows only) deleted row.
  virtual std::string Statement(int row) const = 0;
  /// Runs what writes a row, where that is more than its statement.
  virtual void Write(int row);
  /// Whether the new row may not stand beside the stored row of `stored`.
  virtual bool IsNested(int /*row*/, const Grid& /*stored*/, int /*stored_row*/) const {
    return false;
  }

 private:
  class Save;

  void LayOut(Grid& grid) const;
  std::vector<ado::Field> LoadedFields(ado::Recordset& rows) const;
  void LoadRows(ado::Recordset& rows);
  void LoadRow(ado::Recordset& rows, const std::vector<ado::Field>& fields, Grid& grid, int row);
  // What identifies a row, and what else it holds.
  void LoadKey(ado::Recordset& rows, const std::vector<ado::Field>& fields, Grid& grid, int row);
  void LoadOthers(const std::vector<ado::Field>& fields, Grid& grid, int row) const;
  void LoadText(const std::vector<ado::Field>& fields, Grid& grid, int row, int column) const;
  void NoteRowRead(size_t done, const ado::Recordset& rows);
  bool LoadOver(std::vector<KeptRow> kept);
  void LayOverLoaded();
  static void SetSystem(Grid& grid, int row, bool system);
  void MarkChanged(int row);
  void ReportPending();
  void KeepLoadedText(int row, std::string_view text);
  std::string LoadedText(int row) const;
  std::string ValuesText(const Grid& grid, int row) const;
  KeptRow Keep(int row) const;
  void LayOver(const KeptRow& kept, int row);
  bool IsWritten(const KeptRow& kept, int row) const;
  void AddConflicts(ado::Recordset& rows, std::vector<Conflict>& conflicts);
  void TakeStored(const Conflict& conflict);

  ListDescription description_;
  ListServices services_;
  Grid grid_;
  std::string edit_start_text_;
  std::vector<std::string_view> loaded_texts_;  // Of rows whose text was edited.
  text::StringArena loaded_arena_;              // Holds them.
  std::vector<int> max_lengths_;                // By column, once the rows have been read.
  std::string load_error_;
  std::string conflict_error_;
  int pending_count_ = 0;      // In the grid.
  int reported_count_ = 0;     // As the handler knows it.
  std::vector<KeptRow> kept_;  // Not written yet and to be laid over the rows of the next load.
  bool saved_ = false;         // The grid still shows the rows that a save has gone through.
  std::vector<SaveFailure> failures_;
  std::vector<int> nested_rows_;  // Refused by the next `Sync`.
  bool last_update_due_ = false;  // Rows were written since the setting was.
  std::function<void()> row_commands_changed_;
  std::function<void()> pending_changed_;
};

}  // namespace quillan
