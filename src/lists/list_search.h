#pragma once

#include <string>
#include <string_view>

#include "lists/checkable_list.h"
#include "suite/search_context.h"

namespace quillan {

enum class SearchResult {
  kNotFound,
  kFound,
  kFoundFromOtherEnd,  ///< The search went on at the other end of the list.
};

/// Find and replace in the editable column of a list. Rows that are hidden by a filter or that are
/// to be deleted are left alone. A row that is found becomes the current one, the only one
/// selected, and is scrolled into view.
class ListSearch {
 public:
  /// `list` must have an editable column and outlive the search.
  explicit ListSearch(CheckableList& list);
  ListSearch(const ListSearch&) = delete;
  ListSearch& operator=(const ListSearch&) = delete;

  /// What to find, and what replaces it. Nothing is found while `find` is empty.
  void SetTexts(std::string_view find, std::string_view replace, bool match_case);

  /// Finds the next row below or above the current one, which itself comes last.
  SearchResult FindNext();
  SearchResult FindPrevious();
  /// Replaces in the current row, or in the next one below it that contains the string. The row is
  /// marked as an edit marks it. Called again, it goes on with the next row.
  SearchResult ReplaceNext();
  /// Replaces in every row; these become the selected ones. Returns their number.
  int ReplaceAll();
  /// Why rows in which the last call would have replaced are as they were: the database does not
  /// take so long a description. Empty when there are none.
  const std::string& TooLong() const { return too_long_; }

 private:
  SearchResult Find(bool up);
  bool Restart(const char* direction);
  void ShowCurrent();
  void OnReplaced(int row, int column, std::string_view before);

  CheckableList& list_;
  SearchContext context_;
  std::string too_long_;
  int left_rows_ = 0;     // For which `too_long_` holds.
  int replaced_row_ = 0;  // By the last call, if that was `ReplaceNext`.
};

}  // namespace quillan
