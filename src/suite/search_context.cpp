#include "suite/search_context.h"

#include <algorithm>
#include <vector>

#include "platform/text/ascii.h"
#include "platform/text/case_fold.h"

namespace quillan {
namespace {

bool ContinuesCharacter(char byte) { return (byte & 0xC0) == 0x80; }

// `text` with every occurrence of `from` replaced by `to`, without regard to case. A character and
// its folded form may differ in length, so each folded byte remembers where it came from.
std::string ReplaceIgnoringCase(std::string_view text, std::string_view from, std::string_view to) {
  std::string folded;
  std::vector<size_t> origins;
  for (size_t start = 0, end = 0; start < text.size(); start = end) {
    end = start + 1;
    while (end < text.size() && ContinuesCharacter(text[end])) ++end;
    folded += text::FoldCase(text.substr(start, end - start));
    origins.resize(folded.size(), start);
  }
  origins.push_back(text.size());

  const std::string needle = text::FoldCase(from);
  std::string result;
  size_t copied = 0;
  for (size_t found = folded.find(needle); found != std::string::npos;
       found = folded.find(needle, found + needle.size())) {
    result.append(text.substr(copied, origins[found] - copied)).append(to);
    copied = origins[found + needle.size()];
  }
  return result.append(text.substr(copied));
}

}  // namespace

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
  const std::string_view text = grid_->Text(row_, column_);
  const std::string replaced = match_case_
                                   ? text::ReplaceAll(text, search_string_, replace_string_)
                                   : ReplaceIgnoringCase(text, search_string_, replace_string_);
  const Grid::Batch batch(*grid_);
  grid_->SetText(row_, column_, replaced);
  grid_->SelectOnly(row_, column_++);
  return true;
}

void SearchContext::SetText(std::string& option, std::string_view text) {
  if (option == text) return;
  option = text;
  reset_ = true;
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
// anew, when there is none.
bool SearchContext::MoveToMatch() {
  if (grid_ != nullptr && !search_string_.empty()) {
    const std::string needle = match_case_ ? search_string_ : text::FoldCase(search_string_);
    // The grid may have lost rows or columns since the search started.
    const int end_row = std::min(end_row_, grid_->Rows());
    const int end_column = std::min(end_column_, grid_->Columns());
    if (row_step_ < 0 && row_ >= grid_->Rows()) row_ = grid_->Rows() - 1;
    for (; row_step_ > 0 ? row_ < end_row : row_ > end_row; row_ += row_step_) {
      for (; column_ < end_column; ++column_) {
        if (!grid_->Column(column_).hidden && Matches(grid_->Text(row_, column_), needle)) {
          return true;
        }
      }
      column_ = first_column_;
    }
  }
  reset_ = true;
  return false;
}

bool SearchContext::Matches(std::string_view text, std::string_view needle) const {
  return match_case_ ? text.find(needle) != std::string_view::npos
                     : text::FoldCase(text).find(needle) != std::string::npos;
}

}  // namespace quillan
