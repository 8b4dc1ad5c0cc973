#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/grid/grid.h"

namespace quillan {

/// The state of a find-and-replace dialog over a grid: what to look for, where, in which direction,
/// and the position of the last match. Only data rows and columns that are not hidden are searched;
/// a row that the grid's filter hides is hidden.
///
/// Set the grid and the search text, then call `FindNext` until it returns false; the call after
/// that starts again. The grid must outlive the search; its rows may come and go between calls.
class SearchContext {
 public:
  /// The grid to search; null (as in a new object) finds nothing. Restarts the search.
  void SetGrid(Grid* grid);

  /// The string to find, anywhere within a cell; an empty one (as in a new object) is found
  /// nowhere. Another string restarts the search.
  const std::string& SearchString() const { return search_string_; }
  void SetSearchString(std::string_view text);
  /// What replaces it. Another string restarts the search.
  const std::string& ReplaceString() const { return replace_string_; }
  void SetReplaceString(std::string_view text) { SetText(replace_string_, text); }
  /// "All" (as in a new object): every data row, downwards. "Up": from the grid's current row
  /// upwards. Anything else: from the current row downwards. Another string restarts the
  /// search.
  const std::string& Direction() const { return direction_; }
  void SetDirection(std::string_view direction) { SetText(direction_, direction); }
  /// Whether every column is searched (true in a new object) or only `ColumnIndex`. Setting it
  /// restarts the search.
  bool AllColumns() const { return all_columns_; }
  void SetAllColumns(bool all_columns);
  /// The column searched without `AllColumns`, from 0; one that the grid does not have finds
  /// nothing. Setting it restarts the search.
  int ColumnIndex() const { return column_index_; }
  void SetColumnIndex(int column);
  /// Kept for the caller; the search does not use it.
  const std::string& SearchColumn() const { return search_column_; }
  void SetSearchColumn(std::string_view column) { search_column_ = column; }
  /// Whether capital and small letters differ (false in a new object). Takes effect with the next
  /// call, without a restart.
  bool MatchCase() const { return match_case_; }
  void SetMatchCase(bool match_case) { match_case_ = match_case; }
  /// Whether the next call starts anew: true in a new object and after a search that has come to
  /// its end.
  bool Reset() const { return reset_; }
  void SetReset(bool reset) { reset_ = reset; }

  /// Makes the next matching cell the grid's current one, row by row and each row from its first
  /// column to its last; false if there is none left.
  bool FindNext();
  /// Like `FindNext`, beginning with the cell that the last call found, and replaces every
  /// occurrence within the matching cell. That cell is examined again, so a `ReplaceString` that
  /// contains the `SearchString` is replaced again and a loop until false would not end; use
  /// `ReplaceAll`.
  bool ReplaceNext();
  /// Starts anew and replaces every occurrence in every matching cell, each cell once. The rows
  /// concerned become the selected ones, the first of them the current one. Returns the number of
  /// cells; the next search starts anew.
  int ReplaceAll();

  /// Leaves out the rows for which `skipped(row)` is true; an empty function leaves out none.
  void SetSkippedRows(std::function<bool(int row)> skipped) { skipped_ = std::move(skipped); }

  /// Called after each cell that has been replaced, with the text that it had before, before the
  /// grid's view learns of it. The function must not add, remove or sort rows.
  using ReplacedHandler = std::function<void(int row, int column, std::string_view before)>;
  void SetReplacedHandler(ReplacedHandler handler) { on_replaced_ = std::move(handler); }

 private:
  void SetText(std::string& option, std::string_view text);
  void Start();
  bool MoveToMatch();
  bool IsSearched(int row) const { return grid_->IsShown(row) && !(skipped_ && skipped_(row)); }
  bool Matches(std::string_view text) const;
  void ReplaceInCell();

  Grid* grid_ = nullptr;
  std::function<bool(int row)> skipped_;
  ReplacedHandler on_replaced_;
  std::string search_string_;
  std::string needle_;  // The search string in its folded form.
  std::string replace_string_;
  std::string replaced_;  // The text of a cell.
  std::string direction_ = "All";
  std::string search_column_;
  bool all_columns_ = true;
  int column_index_ = 0;
  bool match_case_ = false;
  bool reset_ = true;

  // The cell to look at next and where the search ends.
  int row_ = 0;
  int column_ = 0;
  int first_column_ = 0;
  int end_row_ = 0;     // Not searched any more.
  int end_column_ = 0;  // Not searched any more.
  int row_step_ = 1;
};

}  // namespace quillan
