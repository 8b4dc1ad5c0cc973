#pragma once

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

  // What the grid reports; rows are the grid's.
  /// Rows and columns are other ones, or the same rows in another order.
  void Reload();
  void Append(int last_row);
  void Change(int first_row, int last_row);

 private:
  QVariant Decoration(int row, int column, int role) const;

  Grid& grid_;
  int rows_ = 0;
  int columns_ = 0;
};

}  // namespace quillan
