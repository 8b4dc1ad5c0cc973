#pragma once

#include <map>
#include <utility>

#include <QAccessibleWidget>

#include "platform/qt/grid_view.h"

namespace quillan {

/// A grid's view as assistive technology sees it: header and data cells, numbered as Qt numbers
/// those of a table with both headers. Unlike in Qt's own tables, the action of a cell with a check
/// box toggles the box, and the header of a row has its name.
class GridAccess final : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  /// Has every view described by this class.
  static void Install();

  explicit GridAccess(GridView* view);
  ~GridAccess() override;

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessibleInterface* child(int index) const override;
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* childAt(int x, int y) const override;

  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  QAccessibleInterface* cellAt(int row, int column) const override;
  int selectedCellCount() const override { return selectedRowCount() * columnCount(); }
  QList<QAccessibleInterface*> selectedCells() const override;
  QString columnDescription(int column) const override;
  QString rowDescription(int row) const override;
  int selectedColumnCount() const override { return 0; }
  int selectedRowCount() const override;
  int columnCount() const override { return Model().columnCount(); }
  int rowCount() const override { return Model().rowCount(); }
  QList<int> selectedColumns() const override { return {}; }
  QList<int> selectedRows() const override;
  bool isColumnSelected(int /*column*/) const override { return false; }
  bool isRowSelected(int row) const override;
  bool selectRow(int row) override { return Select(row, QItemSelectionModel::Select); }
  bool selectColumn(int /*column*/) override { return false; }
  bool unselectRow(int row) override { return Select(row, QItemSelectionModel::Deselect); }
  bool unselectColumn(int /*column*/) override { return false; }
  // Cells stand for places in the table, so they outlive its rows.
  void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override {}

 private:
  GridView& View() const { return *static_cast<GridView*>(object()); }
  QAbstractItemModel& Model() const { return *View().model(); }
  int Stride() const { return columnCount() + 1; }  // The row's header comes first.
  bool Select(int row, QItemSelectionModel::SelectionFlag how);

  // Those that were asked for, by row and column; -1 is the header.
  mutable std::map<std::pair<int, int>, QAccessible::Id> cells_;
};

}  // namespace quillan
