#include "platform/qt/current_cell_report.h"

#include <QAccessible>
#include <QEvent>

namespace quillan {
namespace {

// A table numbers its cells, with those of both headers, row by row.
void Tell(QAccessibleEvent&& event, const QModelIndex& cell) {
  event.setChild((cell.row() + 1) * (cell.model()->columnCount() + 1) + cell.column() + 1);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

CurrentCellReport::CurrentCellReport(QTableView* table) : QObject(table), table_(*table) {
  table->installEventFilter(this);
  focus_.setSingleShot(true);
  changes_.setSingleShot(true);
  connect(&focus_, &QTimer::timeout, this, &CurrentCellReport::TellFocus);
  connect(&changes_, &QTimer::timeout, this, &CurrentCellReport::TellChanges);
  connect(table->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &CurrentCellReport::Note);
  connect(table->model(), &QAbstractItemModel::dataChanged, this, [this] {
    if (!changes_.isActive() && QAccessible::isActive()) changes_.start();
  });
}

bool CurrentCellReport::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn && QAccessible::isActive()) focus_.start();
  return QObject::eventFilter(watched, event);
}

void CurrentCellReport::Note() {
  const QModelIndex cell = table_.currentIndex();
  check_ = cell.data(Qt::CheckStateRole);
  description_ = cell.data(Qt::AccessibleDescriptionRole).toString();
}

void CurrentCellReport::TellFocus() {
  const QModelIndex cell = table_.currentIndex();
  if (!table_.hasFocus() || !cell.isValid()) return;
  Tell(QAccessibleEvent(&table_, QAccessible::Focus), cell);
}

void CurrentCellReport::TellChanges() {
  const QVariant check = check_;
  const QString description = description_;
  Note();
  const QModelIndex cell = table_.currentIndex();
  if (!table_.hasFocus() || !cell.isValid()) return;
  if (check_ != check) {
    QAccessible::State changed;
    changed.checked = true;
    Tell(QAccessibleStateChangeEvent(&table_, changed), cell);
  }
  if (description_ != description) {
    Tell(QAccessibleEvent(&table_, QAccessible::DescriptionChanged), cell);
  }
}

}  // namespace quillan
