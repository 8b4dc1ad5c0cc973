#pragma once

namespace quillan {

/// What the owner of a grid is told of user actions. Rows and columns count from 0; row 0 is
/// the header. Each member does nothing unless it is overridden.
class GridListener {
 public:
  virtual ~GridListener() = default;
  /// The mouse was clicked on a cell.
  virtual void OnClick(int /*row*/, int /*column*/) {}
  /// The key of the character `key` was pressed outside an edit; true when it is a command, which
  /// then starts no edit.
  virtual bool OnKeyPress(char32_t /*key*/) { return false; }
  /// The current cell or the selection changed.
  virtual void OnSelectionChanged() {}
  /// Whether the cell may be edited in place; called before every edit.
  virtual bool OnBeforeEdit(int /*row*/, int /*column*/) { return false; }
  /// An edit was finished and its text stands in the cell, changed or not.
  virtual void OnAfterEdit(int /*row*/, int /*column*/) {}
  /// The user asked for the rows sorted by `column`; true when the listener did it its own way.
  virtual bool OnSortRequest(int /*column*/) { return false; }
};

/// What the view of a grid must follow. Changes made in one batch are reported once.
class GridObserver {
 public:
  virtual ~GridObserver() = default;
  /// Rows came, went or changed places, or the columns did.
  virtual void OnRowsReset() = 0;
  /// Rows `first` .. `last` were appended.
  virtual void OnRowsAppended(int first, int last) = 0;
  /// Cells in rows `first` .. `last` look different.
  virtual void OnCellsChanged(int first, int last) = 0;
  /// The grid's current cell or selection was set by its owner.
  virtual void OnSelectionSet() = 0;
  /// The grid's top row was set by its owner.
  virtual void OnTopRowSet() = 0;
  /// The cell is to be scrolled into view.
  virtual void OnShowCell(int row, int column) = 0;
};

}  // namespace quillan
