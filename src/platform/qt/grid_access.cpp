#include "platform/qt/grid_access.h"

#include <QHeaderView>
#include <QPointer>

namespace quillan {
namespace {

// The cell of a row and column; -1 is the header.
class CellAccess final : public QAccessibleInterface,
                         public QAccessibleTableCellInterface,
                         public QAccessibleActionInterface {
 public:
  CellAccess(GridView* view, int row, int column) : view_(view), row_(row), column_(column) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TableCellInterface) {
      return static_cast<QAccessibleTableCellInterface*>(this);
    }
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
  }
  bool isValid() const override {
    return !view_.isNull() && row_ < view_->model()->rowCount() &&
           column_ < view_->model()->columnCount();
  }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(view_);
  }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (kind == QAccessible::Description) {
      return Index().data(Qt::AccessibleDescriptionRole).toString();
    }
    if (kind != QAccessible::Name) return {};
    if (row_ < 0 && column_ < 0) return view_->accessibleName();
    if (row_ < 0) return view_->model()->headerData(column_, Qt::Horizontal).toString().trimmed();
    // What the row is about stands behind the check box.
    const QModelIndex named = column_ < 0 ? Index().siblingAtColumn(1) : Index();
    const QString name = named.data(Qt::AccessibleTextRole).toString();
    return name.isEmpty() ? named.data().toString() : name;
  }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  QAccessible::Role role() const override {
    if (row_ < 0) return column_ < 0 ? QAccessible::Pane : QAccessible::ColumnHeader;
    return column_ < 0 ? QAccessible::RowHeader : QAccessible::Cell;
  }
  QRect rect() const override {
    if (!isValid() || column_ < 0) return {};
    const QHeaderView& header = *view_->horizontalHeader();
    const QRect within = row_ < 0 ? QRect(header.sectionViewportPosition(column_), 0,
                                          header.sectionSize(column_), header.height())
                                  : view_->visualRect(Index());
    const QWidget& shown = row_ < 0 ? *header.viewport() : *view_->viewport();
    return within.translated(shown.mapToGlobal(QPoint()));
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    state.invisible = column_ < 0 || !view_->isVisible();
    if (!IsData()) return state;
    state.offscreen = !view_->viewport()->rect().intersects(view_->visualRect(Index()));
    state.selectable = state.focusable = true;
    state.selected = view_->selectionModel()->isSelected(Index());
    state.focused = view_->hasFocus() && view_->currentIndex() == Index();
    state.checkable = IsCheckable();
    state.checked = Check() == Qt::Checked;
    return state;
  }

  bool isSelected() const override { return state().selected; }
  QList<QAccessibleInterface*> columnHeaderCells() const override {
    return {parent()->child(column_ + 1)};
  }
  QList<QAccessibleInterface*> rowHeaderCells() const override {
    return {parent()->child((row_ + 1) * (view_->model()->columnCount() + 1))};
  }
  int columnIndex() const override { return column_; }
  int rowIndex() const override { return row_; }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override { return parent(); }

  QStringList actionNames() const override {
    if (!isValid() || !IsData()) return {};
    if (!IsCheckable()) return {setFocusAction()};
    // A screen reader may know a check box in a cell only by the spelling of other toolkits.
    return {toggleAction(), toggleAction().toLower(), setFocusAction()};
  }
  void doAction(const QString& name) override {
    if (!actionNames().contains(name)) return;
    if (name.compare(toggleAction(), Qt::CaseInsensitive) == 0) {
      const auto other = Check() == Qt::Checked ? Qt::Unchecked : Qt::Checked;
      view_->model()->setData(Index(), other, Qt::CheckStateRole);
    } else {
      view_->setFocus(Qt::OtherFocusReason);
      view_->setCurrentIndex(Index());
    }
  }
  QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

 private:
  QModelIndex Index() const { return view_->model()->index(row_, std::max(column_, 0)); }
  bool IsData() const { return row_ >= 0 && column_ >= 0; }
  bool IsCheckable() const { return (Index().flags() & Qt::ItemIsUserCheckable) != 0; }
  int Check() const { return Index().data(Qt::CheckStateRole).toInt(); }

  QPointer<GridView> view_;
  int row_;
  int column_;
};

}  // namespace

void GridAccess::Install() {
  QAccessible::installFactory([](const QString& key, QObject* object) -> QAccessibleInterface* {
    if (key != QLatin1String(GridView::staticMetaObject.className())) return nullptr;
    return new GridAccess(static_cast<GridView*>(object));
  });
}

GridAccess::GridAccess(GridView* view) : QAccessibleWidget(view, QAccessible::Table) {}

GridAccess::~GridAccess() {
  for (const auto& [place, id] : cells_) QAccessible::deleteAccessibleInterface(id);
}

void* GridAccess::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

int GridAccess::childCount() const { return (rowCount() + 1) * Stride(); }

QAccessibleInterface* GridAccess::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  const std::pair place(index / Stride() - 1, index % Stride() - 1);
  if (const auto known = cells_.find(place); known != cells_.end()) {
    return QAccessible::accessibleInterface(known->second);
  }
  auto* cell = new CellAccess(&View(), place.first, place.second);
  cells_[place] = QAccessible::registerAccessibleInterface(cell);
  return cell;
}

int GridAccess::indexOfChild(const QAccessibleInterface* child) const {
  auto* cell = const_cast<QAccessibleInterface*>(child)->tableCellInterface();
  if (cell == nullptr || cell->table() != this) return -1;
  return (cell->rowIndex() + 1) * Stride() + cell->columnIndex() + 1;
}

QAccessibleInterface* GridAccess::childAt(int x, int y) const {
  const QModelIndex index = View().indexAt(View().viewport()->mapFromGlobal(QPoint(x, y)));
  return index.isValid() ? cellAt(index.row(), index.column()) : nullptr;
}

QAccessibleInterface* GridAccess::cellAt(int row, int column) const {
  if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount()) return nullptr;
  return child((row + 1) * Stride() + column + 1);
}

QList<QAccessibleInterface*> GridAccess::selectedCells() const {
  QList<QAccessibleInterface*> cells;
  for (const int row : selectedRows()) {
    for (int column = 0; column < columnCount(); ++column) cells += cellAt(row, column);
  }
  return cells;
}

QString GridAccess::columnDescription(int column) const {
  return Model().headerData(column, Qt::Horizontal).toString().trimmed();
}

QString GridAccess::rowDescription(int row) const {
  return Model().index(row, 1).data().toString();
}

int GridAccess::selectedRowCount() const { return static_cast<int>(selectedRows().size()); }

QList<int> GridAccess::selectedRows() const {
  QList<int> rows;
  for (const QModelIndex& index : View().selectionModel()->selectedRows()) rows += index.row();
  return rows;
}

bool GridAccess::isRowSelected(int row) const {
  return View().selectionModel()->isRowSelected(row);
}

bool GridAccess::Select(int row, QItemSelectionModel::SelectionFlag how) {
  if (row < 0 || row >= rowCount()) return false;
  View().selectionModel()->select(Model().index(row, 0), how | QItemSelectionModel::Rows);
  return true;
}

}  // namespace quillan
