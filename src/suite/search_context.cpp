#include "suite/search_context.h"

#include <algorithm>
#include <optional>

#include "platform/text/ascii.h"
#include "platform/text/case_fold.h"

namespace quillan {

void SearchContext::SetGrid(Grid* grid) {
  grid_ = grid;
  reset_ = true;
}

void SearchContext::SetAllColumns(bool all_columns) {
  all_columns_ = all_columns;
  reset_ = true;
}

void SearchContext::SetColumnIndex(int column) {
  column_index_ = column;
  reset_ = true;
}

bool SearchContext::FindNext() {
  if (reset_) Start();
  if (!MoveToMatch()) return false;
  grid_->SelectOnly(row_, column_++);
  return true;
}

bool SearchContext::ReplaceNext() {
  if (reset_) {
    Start();
  } else {
    column_ = std::max(first_column_, column_ - 1);
  }
  if (!MoveToMatch()) return false;
  const Grid::Batch batch(*grid_);
  ReplaceInCell();
  grid_->SelectOnly(row_, column_++);
  return true;
}

int SearchContext::ReplaceAll() {
  Start();
  if (grid_ == nullptr) return 0;
  const Grid::Batch batch(*grid_);
  int cells = 0;
  for (; MoveToMatch(); ++column_) {
    if (cells++ == 0) grid_->SelectOnly(row_, column_);
    grid_->SetSelected(row_, row_, true);
    ReplaceInCell();
  }
  return cells;
}

void SearchContext::ReplaceInCell() {
  const std::string_view text = grid_->Text(row_, column_);
  if (match_case_) {
    // One buffer for all cells.
    text::ReplaceAll(text, search_string_, replace_string_, replaced_);
    grid_->SetText(row_, column_, replaced_);
  } else {
    const auto replaced = text::ReplaceIgnoringCase(text, needle_, replace_string_);
    grid_->SetText(row_, column_, replaced.value_or(""));
  }
  if (on_replaced_) on_replaced_(row_, column_, text);
}

void SearchContext::SetText(std::string& option, std::string_view text) {
  if (option == text) return;
  option = text;
  reset_ = true;
}

void SearchContext::SetSearchString(std::string_view text) {
  SetText(search_string_, text);
  needle_ = text::FoldCase(search_string_);
}

void SearchContext::Start() {
  reset_ = false;
  if (grid_ == nullptr) return;
  const bool up = direction_ == "Up";
  row_step_ = up ? -1 : 1;
  row_ = up ? grid_->CurrentRow() : Grid::kFixedRows;
  if (!up && direction_ != "All") row_ = std::max(row_, grid_->CurrentRow());
  end_row_ = up ? 0 : grid_->Rows();
  const bool has_column = column_index_ >= 0 && column_index_ < grid_->Columns();
  first_column_ = all_columns_ || !has_column ? 0 : column_index_;
  end_column_ = all_columns_ ? grid_->Columns() : has_column ? column_index_ + 1 : 0;
  column_ = first_column_;
}

// Moves to the next matching cell from where the search stands; false, and the next call starts
// anew, if there is none.
bool SearchContext::MoveToMatch() {
  if (grid_ != nullptr && !search_string_.empty()) {
    // The grid may have lost rows or columns since the search started.
    const int end_row = std::min(end_row_, grid_->Rows());
    const int end_column = std::min(end_column_, grid_->Columns());
    if (row_step_ < 0 && row_ >= grid_->Rows()) row_ = grid_->Rows() - 1;
    for (; row_step_ > 0 ? row_ < end_row : row_ > end_row; row_ += row_step_) {
      if (IsSearched(row_)) {
        for (; column_ < end_column; ++column_) {
          if (!grid_->Column(column_).hidden && Matches(grid_->Text(row_, column_))) return true;
        }
      }
      column_ = first_column_;
    }
  }
  reset_ = true;
  return false;
}

bool SearchContext::Matches(std::string_view text) const {
  return match_case_ ? text.find(search_string_) != std::string_view::npos
                     : text::ContainsIgnoringCase(text, needle_);
}

}  // namespace quillan
