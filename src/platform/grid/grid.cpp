#include "platform/grid/grid.h"

#include <algorithm>
#include <utility>

namespace quillan {

void Grid::Reset(int rows, std::vector<GridColumn> columns) {
  const Batch batch(*this);
  // Where there is no memory for them, the grid stays as it is.
  std::vector<Cell> empty_cells(static_cast<size_t>(rows) * columns.size());
  std::vector<Row> empty_rows(static_cast<size_t>(rows));
  columns_ = std::move(columns);
  width_ = columns_.size();
  // The memory of a million rows is given back rather than kept for the next load.
  empty_cells.swap(cells_);
  empty_rows.swap(rows_);
  texts_.Clear();
  current_row_ = 0;
  current_column_ = 0;
  first_selected_ = std::numeric_limits<int>::max();
  last_selected_ = 0;
  sort_column_ = -1;
  hidden_rows_ = 0;
  refilter_ = IsFiltered();
  reset_ = true;
  selection_set_ = true;
}

void Grid::Reserve(int rows) {
  cells_.reserve(static_cast<size_t>(rows) * width_);
  rows_.reserve(static_cast<size_t>(rows));
}

int Grid::AppendRow() {
  const Batch batch(*this);
  cells_.resize(cells_.size() + width_);
  rows_.emplace_back();
  sort_column_ = -1;
  return Rows() - 1;
}

void Grid::RemoveRows(const std::vector<int>& rows) {
  if (rows.empty()) return;
  const Batch batch(*this);
  auto next = rows.begin();
  int kept = 0;
  int current = 0;
  for (int row = 0; row < Rows(); ++row) {
    if (next != rows.end() && *next == row) {
      if (!IsShown(row)) --hidden_rows_;
      ++next;
      continue;
    }
    if (row == current_row_) current = kept;
    if (kept != row) {
      rows_[static_cast<size_t>(kept)] = rows_[static_cast<size_t>(row)];
      std::copy_n(&At(row, 0), width_, &At(kept, 0));
    }
    ++kept;
  }
  rows_.resize(static_cast<size_t>(kept));
  cells_.resize(static_cast<size_t>(kept) * width_);
  current_row_ = current;
  first_selected_ = kFixedRows;
  last_selected_ = Rows() - 1;
  reset_ = true;
  selection_set_ = true;
}

void Grid::SetText(int row, int column, std::string_view text) {
  if (row >= kFixedRows) TouchSortKey(column);
  At(row, column).text = texts_.Add(text);
  Touch(row);
}

void Grid::SelectOnly(int row, int column) {
  const Batch batch(*this);
  SetSelected(first_selected_, std::min(last_selected_, Rows() - 1), false);
  first_selected_ = std::numeric_limits<int>::max();
  last_selected_ = 0;
  current_row_ = row;
  current_column_ = column;
  if (row >= kFixedRows) SetSelected(row, row, true);
  selection_set_ = true;
}

std::vector<int> Grid::SelectedRows() const {
  std::vector<int> selected;
  for (int row = kFixedRows; row < Rows(); ++row) {
    if (IsSelected(row)) selected.push_back(row);
  }
  return selected;
}

void Grid::SetTopRow(int row) {
  top_row_ = row;
  if (observer_ != nullptr && batch_depth_ == 0) observer_->OnTopRowSet();
}

void Grid::ShowCell(int row, int column) {
  if (observer_ != nullptr) observer_->OnShowCell(row, column);
}

void Grid::SetFilter(std::function<bool(int row)> shown) {
  const Batch batch(*this);
  filter_ = std::move(shown);
  refilter_ = true;
}

void Grid::ApplyFilter() {
  hidden_rows_ = 0;
  for (int row = kFixedRows; row < Rows(); ++row) {
    Row& filtered = rows_[static_cast<size_t>(row)];
    filtered.hidden = filter_ && !filter_(row);
    if (!filtered.hidden) continue;
    filtered.selected = false;
    ++hidden_rows_;
  }
  if (current_row_ >= kFixedRows && !IsShown(current_row_)) current_row_ = 0;
  reset_ = true;
  selection_set_ = true;
}

void Grid::RequestSort(int column) {
  if (listener_ != nullptr && listener_->OnSortRequest(column)) return;
  const bool ascending = sort_column_ == column && sort_direction_ == SortDirection::kAscending;
  Sort(column, ascending ? SortDirection::kDescending : SortDirection::kAscending);
}

void Grid::MoveCurrent(int row, int column) {
  if (row == current_row_ && column == current_column_) return;
  current_row_ = row;
  current_column_ = column;
  if (listener_ != nullptr) listener_->OnSelectionChanged();
}

void Grid::SetSelected(int first_row, int last_row, bool selected) {
  for (int row = first_row; row <= last_row; ++row) {
    Row& changed = rows_[static_cast<size_t>(row)];
    changed.selected = selected && !changed.hidden;
  }
  if (selected) {
    first_selected_ = std::min(first_selected_, first_row);
    last_selected_ = std::max(last_selected_, last_row);
  }
  if (listener_ != nullptr && batch_depth_ == 0) listener_->OnSelectionChanged();
}

void Grid::EndBatch() {
  if (--batch_depth_ == 0) Report();
}

void Grid::Report() {
  if (std::exchange(refilter_, false)) ApplyFilter();
  const bool reset = std::exchange(reset_, false);
  const bool selection_set = std::exchange(selection_set_, false);
  const int reported = std::exchange(reported_rows_, Rows());
  const int first = std::exchange(first_changed_, std::numeric_limits<int>::max());
  const int last = std::exchange(last_changed_, -1);
  if (observer_ != nullptr) {
    if (reset) {
      observer_->OnRowsReset();
    } else {
      if (Rows() > reported) observer_->OnRowsAppended(reported, Rows() - 1);
      if (first < reported) observer_->OnCellsChanged(first, std::min(last, reported - 1));
    }
    if (selection_set) observer_->OnSelectionSet();
  }
  if (selection_set && listener_ != nullptr) listener_->OnSelectionChanged();
}

}  // namespace quillan
