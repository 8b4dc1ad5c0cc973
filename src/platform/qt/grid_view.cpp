#include "platform/qt/grid_view.h"

#include <algorithm>
#include <utility>

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

#include "platform/qt/current_cell_report.h"
#include "platform/qt/grid_access.h"
#include "platform/qt/grid_delegate.h"
#include "platform/qt/grid_model.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

// Of a row and of the header, in heights of a line of text.
constexpr double kRowHeight = 1.5;

// Sorts by the current column, as a click on its header does.
constexpr QKeyCombination kSortKey = Qt::CTRL | Qt::SHIFT | Qt::Key_S;

// Whether the key produces a character rather than a shortcut.
bool IsTyping(const QKeyEvent& event) {
  constexpr auto kShortcuts = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  return !event.text().isEmpty() && (event.modifiers() & kShortcuts) == 0;
}

}  // namespace

GridView::GridView(Grid& grid, QWidget* parent)
    : QTableView(parent),
      grid_(grid),
      model_(new GridModel(grid, this)),
      delegate_(new GridDelegate(this)) {
  setObjectName(QStringLiteral("Table"));
  GridAccess::Install();
  QFont own = font();
  own.setFamily(QStringLiteral("Tahoma"));
  setFont(own);
  setModel(model_);
  setItemDelegate(delegate_);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(EditKeyPressed | DoubleClicked | AnyKeyPressed);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setWordWrap(false);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setDefaultSectionSize(qRound(fontMetrics().height() * kRowHeight));
  horizontalHeader()->setFixedHeight(qRound(fontMetrics().height() * kRowHeight));
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setMinimumSectionSize(2 * fontMetrics().height());
  LayOutColumns();
  OnSelectionSet();
  ConnectUser();
  new CurrentCellReport(this);
  grid_.SetObserver(this);
}

GridView::~GridView() { grid_.SetObserver(nullptr); }

void GridView::ConnectUser() {
  connect(this, &QTableView::clicked, this, &GridView::TellClick);
  // Qt reports the second of two fast clicks as this alone.
  connect(this, &QTableView::doubleClicked, this, &GridView::TellClick);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &GridView::SortBy);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int column, int /*before*/, int width) { OnColumnDrawn(column, width); });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
    // A list that is empty until it is loaded again keeps its place.
    if (model_->rowCount() > 0) grid_.NoteTopRow(model_->GridRow(value));
  });
  connect(delegate_, &GridDelegate::EditFinished, this, [this](const QModelIndex& index) {
    if (GridListener* listener = grid_.listener()) {
      listener->OnAfterEdit(model_->GridRow(index), index.column());
    }
  });
  connect(
      selectionModel(), &QItemSelectionModel::selectionChanged, this,
      [this](const QItemSelection& selected, const QItemSelection& deselected) {
        if (following_) return;
        for (const QItemSelectionRange& range : deselected) {
          grid_.SetSelected(model_->GridRow(range.top()), model_->GridRow(range.bottom()), false);
        }
        for (const QItemSelectionRange& range : selected) {
          grid_.SetSelected(model_->GridRow(range.top()), model_->GridRow(range.bottom()), true);
        }
      });
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) {
            if (following_ || !current.isValid()) return;
            grid_.MoveCurrent(model_->GridRow(current), current.column());
          });
}

void GridView::SetCheck(std::function<std::string(int column, std::string_view text)> check) {
  delegate_->SetCheck(std::move(check));
}

void GridView::CommitEdit() {
  if (QWidget* editor = delegate_->OpenEditor()) {
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
  }
}

bool GridView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  // Only what the user starts is subject to the listener's consent.
  if (!index.isValid() || (trigger & editTriggers()) == 0) {
    return QTableView::edit(index, trigger, event);
  }
  if (trigger == AnyKeyPressed && event != nullptr && event->type() == QEvent::KeyPress &&
      !IsTyping(*static_cast<QKeyEvent*>(event))) {
    return false;
  }
  const auto may_edit = [&](int column) {
    GridListener* listener = grid_.listener();
    return listener != nullptr && listener->OnBeforeEdit(model_->GridRow(index), column);
  };
  if (may_edit(index.column())) return QTableView::edit(index, trigger, event);
  if (trigger != EditKeyPressed) return false;
  // The key means the row's editable cell, whichever cell is current.
  for (int column = 0; column < model_->columnCount(); ++column) {
    if (!may_edit(column)) continue;
    const QModelIndex editable = index.siblingAtColumn(column);
    selectionModel()->setCurrentIndex(editable, QItemSelectionModel::NoUpdate);
    return QTableView::edit(editable, trigger, event);
  }
  return false;
}

void GridView::keyPressEvent(QKeyEvent* event) {
  GridListener* listener = grid_.listener();
  if (listener != nullptr && IsTyping(*event) && event->text().size() == 1 &&
      listener->OnKeyPress(event->text().front().unicode())) {
    event->accept();
  } else if (event->keyCombination() == kSortKey && currentIndex().isValid()) {
    SortBy(currentIndex().column());
    event->accept();
  } else {
    QTableView::keyPressEvent(event);
  }
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
  // Only the left button's double click is one.
  if (event->button() == Qt::LeftButton) {
    QTableView::mouseDoubleClickEvent(event);
  } else {
    QTableView::mousePressEvent(event);
  }
}

void GridView::focusInEvent(QFocusEvent* event) {
  // Qt makes the first row current whatever brought the focus, such as a message box that closes.
  // A row that the user did not choose must not be at the mercy of the next key.
  QFocusEvent quiet(event->type(), Qt::MouseFocusReason);
  QTableView::focusInEvent(&quiet);
  const bool by_key =
      event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  if (by_key && !currentIndex().isValid()) {
    selectionModel()->setCurrentIndex(
        TopIndex(), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
}

void GridView::hideEvent(QHideEvent* event) {
  QTableView::hideEvent(event);
  // The window system hides the view with its whole window; the program, when the page changes.
  if (event->spontaneous()) return;
  CommitEdit();
  grid_.SelectOnly(0, grid_.CurrentColumn());
}

void GridView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  LayOutColumns();
}

QModelIndex GridView::TopIndex() const { return model_->index(verticalScrollBar()->value(), 0); }

QModelIndex GridView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  const int column = std::max(currentIndex().column(), 0);
  if (action == MoveHome) return model_->index(0, column);
  if (action == MoveEnd) return model_->index(model_->rowCount() - 1, column);
  // The first key starts where the user looks, not at the first row far above.
  return currentIndex().isValid() ? QTableView::moveCursor(action, modifiers) : TopIndex();
}

void GridView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  // Tab leaves the cell; there is no next one to edit in its row.
  const bool moves_on = hint == QAbstractItemDelegate::EditNextItem ||
                        hint == QAbstractItemDelegate::EditPreviousItem;
  QTableView::closeEditor(editor, moves_on ? QAbstractItemDelegate::NoHint : hint);
}

void GridView::TellClick(const QModelIndex& index) {
  if (GridListener* listener = grid_.listener()) {
    listener->OnClick(model_->GridRow(index), index.column());
  }
}

void GridView::SortBy(int column) {
  CommitEdit();
  grid_.RequestSort(column);
  ShowSortIndicator();
}

void GridView::OnRowsReset() {
  const int top_row = grid_.TopRow();
  following_ = true;
  // The selection is set anew afterwards; until then it need not follow every row.
  selectionModel()->clear();
  model_->Reload();
  following_ = false;
  LayOutColumns();
  ShowSortIndicator();
  RestoreTopRow(top_row);
}

void GridView::RestoreTopRow(int top_row) {
  updateGeometries();  // The range of the scroll bar would follow the rows only later.
  verticalScrollBar()->setValue(model_->ModelRow(top_row));
  grid_.NoteTopRow(model_->rowCount() > 0 ? model_->GridRow(verticalScrollBar()->value())
                                          : top_row);
}

void GridView::OnRowsAppended(int first, int last) {
  model_->Append(first, last);
  ShowSortIndicator();
}

void GridView::OnCellsChanged(int first, int last) {
  model_->Change(first, last);
  ShowSortIndicator();
}

void GridView::OnSelectionSet() {
  QItemSelection selection;
  const int last_column = model_->columnCount() - 1;
  const int rows = model_->rowCount();
  const auto selected = [&](int row) {
    return row < rows && grid_.IsSelected(model_->GridRow(row));
  };
  for (int row = 0; row < rows; ++row) {
    if (!selected(row)) continue;
    const int first = row;
    while (selected(row + 1)) ++row;
    selection.append(QItemSelectionRange(model_->index(first, 0), model_->index(row, last_column)));
  }
  following_ = true;
  // Qt would compare each range of the new selection with each of the old one.
  selectionModel()->clearSelection();
  selectionModel()->select(selection, QItemSelectionModel::Select);
  const QModelIndex current = model_->IndexOf(grid_.CurrentRow(), grid_.CurrentColumn());
  selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
  following_ = false;
}

void GridView::OnTopRowSet() { verticalScrollBar()->setValue(model_->ModelRow(grid_.TopRow())); }

void GridView::OnShowCell(int row, int column) {
  if (const QModelIndex index = model_->IndexOf(row, column); index.isValid()) scrollTo(index);
}

int GridView::ColumnWidth(int column) const {
  const auto drawn = drawn_widths_.find(column);
  return drawn != drawn_widths_.end()
             ? drawn->second
             : fontMetrics().horizontalAdvance(ToQString(grid_.Column(column).width_text));
}

int GridView::ColumnsWidth() const {
  int width = 0;
  for (int column = 0; column < grid_.Columns(); ++column) width += ColumnWidth(column);
  return width + 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
}

void GridView::LayOutColumns() {
  laying_out_ = true;
  int left_over = viewport()->width();
  std::vector<int> stretching;
  for (int column = 0; column < model_->columnCount(); ++column) {
    setColumnHidden(column, grid_.Column(column).hidden);
    setColumnWidth(column, ColumnWidth(column));
    left_over -= columnWidth(column);
    // A column that the user has sized stays as it is.
    if (grid_.Column(column).stretches && !drawn_widths_.contains(column)) {
      stretching.push_back(column);
    }
  }
  auto parts = static_cast<int>(stretching.size());
  for (const int column : stretching) {
    if (left_over <= 0) break;
    const int part = left_over / parts--;
    setColumnWidth(column, columnWidth(column) + part);
    left_over -= part;
  }
  laying_out_ = false;
}

void GridView::OnColumnDrawn(int column, int width) {
  if (laying_out_) return;
  drawn_widths_[column] = width;
  LayOutColumns();
  emit ColumnDrawn();
}

void GridView::SetDrawnWidths(const std::map<int, int>& widths) {
  drawn_widths_ = widths;
  LayOutColumns();
}

void GridView::ShowSortIndicator() {
  QHeaderView& header = *horizontalHeader();
  header.setSortIndicatorShown(grid_.SortColumn() >= 0);
  if (grid_.SortColumn() < 0) return;
  header.setSortIndicator(grid_.SortColumn(), grid_.Direction() == SortDirection::kAscending
                                                  ? Qt::AscendingOrder
                                                  : Qt::DescendingOrder);
}

}  // namespace quillan
