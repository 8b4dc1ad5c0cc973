#pragma once

#include <vector>

#include <QAbstractTableModel>

#include "platform/grid/grid.h"

namespace quillan {

/// A grid as Qt's views see it: the header row as the horizontal header, the data rows below it
/// from 0 on. Holds no rows of its own, only how many of them the views know.
class GridModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit GridModel(Grid& grid, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  /// The grid's row of the view's row; the row behind the last one where there is none.
  int GridRow(int model_row) const;
  int GridRow(const QModelIndex& index) const { return GridRow(index.row()); }
  /// The view's row of the grid's row, or of the next one that is shown.
  int ModelRow(int row) const;
  /// The index of a cell; invalid where no such row is shown.
  QModelIndex IndexOf(int row, int column) const;

  // What the grid reports; rows are the grid's.
  /// Rows and columns are other ones, or the same rows in another order.
  void Reload();
  void Append(int first_row, int last_row);
  void Change(int first_row, int last_row);

 private:
  QVariant Decoration(int row, int column, int role) const;

  QString RowDescription(int row) const;

  Grid& grid_;
  bool filtered_ = false;
  std::vector<int> shown_;  // The rows that the filter shows, ascending.
  int rows_ = 0;
  int columns_ = 0;
};

}  // namespace quillan
