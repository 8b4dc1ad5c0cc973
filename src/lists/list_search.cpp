#include "lists/list_search.h"

#include <utility>

#include "lists/refusal.h"

namespace quillan {

ListSearch::ListSearch(CheckableList& list) : list_(list) {
  const Grid& grid = list_.Table();
  context_.SetGrid(&list_.Table());
  context_.SetAllColumns(false);
  context_.SetColumnIndex(list_.Description().editable_column);
  // An edit would keep a row that the user wants deleted.
  context_.SetSkippedRows([&grid](int row) {
    return grid.RowData(row).state == static_cast<std::int8_t>(RowState::kDeleted);
  });
  context_.SetReplacedHandler(
      [this](int row, int column, std::string_view before) { OnReplaced(row, column, before); });
}

void ListSearch::OnReplaced(int row, int column, std::string_view before) {
  Grid& grid = list_.Table();
  std::string reason = RefuseDescription(grid.Text(row, column), list_.MaxLength(column));
  if (reason.empty()) return list_.MarkEdited(row, before);
  grid.SetText(row, column, before);
  too_long_ = std::move(reason);
  ++left_rows_;
}

void ListSearch::SetTexts(std::string_view find, std::string_view replace, bool match_case) {
  context_.SetSearchString(find);
  context_.SetReplaceString(replace);
  context_.SetMatchCase(match_case);
}

SearchResult ListSearch::FindNext() {
  const SearchResult result = Find(false);
  ShowCurrent();
  return result;
}

SearchResult ListSearch::FindPrevious() {
  const SearchResult result = Find(true);
  ShowCurrent();
  return result;
}

SearchResult ListSearch::ReplaceNext() {
  Grid& grid = list_.Table();
  const int done = grid.CurrentRow() == replaced_row_ ? replaced_row_ : 0;
  too_long_.clear();
  replaced_row_ = 0;
  SearchResult result = SearchResult::kFound;
  {
    const CheckableList::Edit edit(list_);
    if (done != 0 || !Restart("Down")) result = Find(false);
    // The replacing string may contain the one that is looked for.
    if (result == SearchResult::kNotFound || grid.CurrentRow() == done) {
      return SearchResult::kNotFound;
    }
    context_.ReplaceNext();
  }
  replaced_row_ = grid.CurrentRow();
  ShowCurrent();
  return result;
}

int ListSearch::ReplaceAll() {
  replaced_row_ = 0;
  left_rows_ = 0;
  too_long_.clear();
  int rows = 0;
  {
    const CheckableList::Edit edit(list_);
    context_.SetDirection("All");
    rows = context_.ReplaceAll();
  }
  if (rows > 0) ShowCurrent();
  return rows - left_rows_;
}

SearchResult ListSearch::Find(bool up) {
  Grid& grid = list_.Table();
  const Grid::Batch batch(grid);
  const int start = grid.CurrentRow();
  replaced_row_ = 0;
  bool found = Restart(up ? "Up" : "Down");
  if (found && grid.CurrentRow() == start) found = context_.FindNext();
  if (found) return SearchResult::kFound;
  if (!Restart("All")) return SearchResult::kNotFound;
  if (up) {
    grid.SelectOnly(grid.Rows() - 1, grid.CurrentColumn());
    Restart("Up");
  }
  return start < Grid::kFixedRows ? SearchResult::kFound : SearchResult::kFoundFromOtherEnd;
}

// Begins at the current row, or with "All" at the first one: the rows may have changed since the
// last call.
bool ListSearch::Restart(const char* direction) {
  context_.SetDirection(direction);
  context_.SetReset(true);
  return context_.FindNext();
}

void ListSearch::ShowCurrent() {
  const Grid& grid = list_.Table();
  if (grid.CurrentRow() >= Grid::kFixedRows) {
    list_.Table().ShowCell(grid.CurrentRow(), grid.CurrentColumn());
  }
}

}  // namespace quillan
