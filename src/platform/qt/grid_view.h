#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <QTableView>

#include "platform/grid/grid.h"

namespace quillan {

class GridDelegate;
class GridModel;

/// Shows a grid, painting only what is visible, and tells it what the user does. The grid must
/// outlive the view; it has one view at a time.
class GridView final : public QTableView, private GridObserver {
  Q_OBJECT

 public:
  explicit GridView(Grid& grid, QWidget* parent = nullptr);
  ~GridView() override;

  /// Finishes the edit of a cell as if the user had left it.
  void CommitEdit();
  /// `check` says why a text cannot stand in a column; empty if it can.
  void SetCheck(std::function<std::string(int column, std::string_view text)> check);
  /// The width that shows every column as it is laid out, in pixels.
  int ColumnsWidth() const;
  /// The widths of the columns that the user has sized, in pixels, by column.
  const std::map<int, int>& DrawnWidths() const { return drawn_widths_; }
  /// Lays the columns out as if the user had sized them.
  void SetDrawnWidths(const std::map<int, int>& widths);

 signals:
  /// The user has sized a column.
  void ColumnDrawn();

 protected:
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
  // Typing must not jump to another row.
  void keyboardSearch(const QString& /*search*/) override {}

 private:
  void OnRowsReset() override;
  void OnRowsAppended(int first, int last) override;
  void OnCellsChanged(int first, int last) override;
  void OnSelectionSet() override;
  void OnTopRowSet() override;
  void OnShowCell(int row, int column) override;

  void ConnectUser();
  void TellClick(const QModelIndex& index);
  // The cell of column 0 in the topmost row on screen.
  QModelIndex TopIndex() const;
  void SortBy(int column);
  void RestoreTopRow(int top_row);
  // The width that the user drew, or else that of the column's text.
  int ColumnWidth(int column) const;
  void LayOutColumns();
  void OnColumnDrawn(int column, int width);
  void ShowSortIndicator();

  Grid& grid_;
  GridModel* model_;
  GridDelegate* delegate_;
  std::map<int, int> drawn_widths_;
  bool laying_out_ = false;  // The view itself sizes columns.
  bool following_ = false;   // While the view follows the grid, nothing is told back to it.
};

}  // namespace quillan
