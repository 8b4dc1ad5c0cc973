#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "platform/grid/grid_events.h"
#include "platform/text/string_arena.h"

namespace quillan {

/// The numbers are the grid's own.
enum class CheckState : std::uint8_t { kNone = 0, kChecked = 1, kUnchecked = 2 };
enum class Alignment : std::uint8_t { kLeft = 1, kCenter = 4 };
enum class SortDirection : std::uint8_t { kAscending, kDescending };

/// Red + 256 × green + 65536 × blue; 0 is the view's own text colour.
using Color = std::uint32_t;
constexpr Color Rgb(unsigned red, unsigned green, unsigned blue) {
  return red | green << 8 | blue << 16;
}

/// How a column is laid out.
struct GridColumn {
  std::string width_text;  ///< The column is as wide as this text in the view's font.
  Alignment alignment = Alignment::kLeft;
  bool hidden = false;
  bool stretches = false;        ///< Takes width that is left over, in equal parts with its like.
  bool digits_by_value = false;  ///< Sorts numbers inside a string by value: "0/2" before "0/10".
};

/// What the owner of a grid keeps with a row. The grid moves it with the row and does not use it.
struct GridRowData {
  std::int8_t state = 0;                        ///< The list's row state.
  CheckState loaded_check = CheckState::kNone;  ///< As loaded; kNone: the row is not stored.
  bool system : 1 = false;                      ///< The system defined the row, not the user.
  bool has_range : 1 = true;                    ///< The row's two addresses are a range.
  bool deleted_first : 1 = false;  ///< A deletion that is written before the other rows.
  bool kept : 1 = false;           ///< An earlier save has not, or not completely, written it.
  bool overtaken : 1 = false;      ///< Somebody stored other values while it waited for a reload.
  std::int32_t id = 0;             ///< The stored row's identifier; 0: not known.
  std::uint32_t loaded_text = 0;   ///< 1 + the position of the editable string that was loaded; 0:
                                   ///< it is the displayed one.
};

/// A table of cells without a toolkit: one fixed header row (row 0) with the data rows below it, a
/// current cell, a selection of whole rows, data of the owner kept with each row. Made for a
/// million rows: a row of four columns takes 80 bytes beside its strings, appending is amortised
/// constant, and changes within one `Batch` are reported to the view once.
///
/// Rows and columns must exist wherever a member takes one; only `Rows()`-like reads are total.
class Grid {
 public:
  static constexpr int kFixedRows = 1;

  /// Reports the changes made during its life to the observer once, at its end.
  class Batch {
   public:
    explicit Batch(Grid& grid) : grid_(grid) { ++grid_.batch_depth_; }
    ~Batch() { grid_.EndBatch(); }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

   private:
    Grid& grid_;
  };

  Grid() = default;
  Grid(const Grid&) = delete;
  Grid& operator=(const Grid&) = delete;

  /// Who is told of user actions, and who draws; either may be null.
  void SetListener(GridListener* listener) { listener_ = listener; }
  GridListener* listener() const { return listener_; }
  void SetObserver(GridObserver* observer) { observer_ = observer; }

  /// Drops every row and lays the grid out with `rows` empty rows. No row is selected and the
  /// header is the current row; the top row stays, so that a reload keeps the place.
  void Reset(int rows, std::vector<GridColumn> columns);
  /// Takes the memory for `rows` rows at once, and no more of it than they need.
  void Reserve(int rows);
  /// Adds an empty row at the end; returns its number.
  int AppendRow();
  /// Removes data rows; `rows` is ascending. The selection of the others stays; the header becomes
  /// the current row if the current row is removed.
  void RemoveRows(const std::vector<int>& rows);
  int Rows() const { return static_cast<int>(rows_.size()); }
  int Columns() const { return static_cast<int>(width_); }
  const GridColumn& Column(int column) const { return columns_[static_cast<size_t>(column)]; }

  std::string_view Text(int row, int column) const {
    return text::StringArena::View(At(row, column).text);
  }
  void SetText(int row, int column, std::string_view text);
  CheckState Check(int row, int column) const {
    return static_cast<CheckState>((At(row, column).look & kCheckMask) >> kCheckShift);
  }
  // These are inline because they run several times for each of a million rows.
  void SetCheck(int row, int column, CheckState state) {
    TouchSortKey(column);
    SetLook(row, column, kCheckMask, static_cast<std::uint32_t>(state) << kCheckShift);
  }
  Color ForeColor(int row, int column) const { return At(row, column).look & kColorMask; }
  void SetForeColor(int row, int column, Color color) {
    SetLook(row, column, kColorMask, color & kColorMask);
  }
  /// Colours the row's cells from column 1 on.
  void SetRowColor(int row, Color color) {
    for (size_t i = 1; i < width_; ++i) {
      Cell& cell = cells_[static_cast<size_t>(row) * width_ + i];
      cell.look = (cell.look & ~kColorMask) | (color & kColorMask);
    }
    Touch(row);
  }
  bool Bold(int row, int column) const { return (At(row, column).look & kBoldBit) != 0; }
  void SetBold(int row, int column, bool bold) {
    SetLook(row, column, kBoldBit, bold ? kBoldBit : 0);
  }
  /// What the owner keeps with the row.
  const GridRowData& RowData(int row) const { return rows_[static_cast<size_t>(row)].data; }
  GridRowData& RowData(int row) { return rows_[static_cast<size_t>(row)].data; }

  /// The current cell; row 0 when no data row is current.
  int CurrentRow() const { return current_row_; }
  int CurrentColumn() const { return current_column_; }
  /// Makes the cell current and its row the only selected one; row 0 selects none.
  void SelectOnly(int row, int column);
  bool IsSelected(int row) const { return rows_[static_cast<size_t>(row)].selected; }
  /// The selected rows, ascending.
  std::vector<int> SelectedRows() const;
  /// The topmost row on screen; the rows above it that a filter hides count.
  int TopRow() const { return top_row_; }
  void SetTopRow(int row);
  /// Scrolls the cell into view.
  void ShowCell(int row, int column);

  /// Hides the data rows for which `shown(row)` is false, now and after every `Reset`, and
  /// deselects them; they keep their places and are sorted like the others. Rows that are added
  /// later are shown. An empty function shows every row.
  void SetFilter(std::function<bool(int row)> shown);
  bool IsFiltered() const { return static_cast<bool>(filter_); }
  bool IsShown(int row) const { return !rows_[static_cast<size_t>(row)].hidden; }
  /// How many data rows are shown.
  int ShownRows() const { return Rows() - kFixedRows - hidden_rows_; }

  /// Sorts the data rows physically and stably by `column`: the check states of column 0, else
  /// numbers by value before other strings in the order of the program's locale. Row data, marks,
  /// selection and the current cell follow their rows.
  void Sort(int column, SortDirection direction);
  /// The same by `key(row)`, asked once for each row.
  void SortByKey(int column, SortDirection direction, const std::function<double(int)>& key);
  /// The column by which the rows are sorted as they stand; -1 when they are not known to be.
  int SortColumn() const { return sort_column_; }
  SortDirection Direction() const { return sort_direction_; }

  // From the view, for what the user does.

  /// Sorts as the listener likes, or by `column`: ascending, or descending where it is so already.
  void RequestSort(int column);
  void MoveCurrent(int row, int column);
  /// Passes over rows that are hidden.
  void SetSelected(int first_row, int last_row, bool selected);
  void NoteTopRow(int row) { top_row_ = row; }

 private:
  struct Cell {
    const char* text = nullptr;  // In texts_.
    std::uint32_t look = 0;      // Colour, check state, bold.
  };
  struct Row {
    GridRowData data;
    bool selected = false;
    bool hidden = false;
  };

  static constexpr std::uint32_t kColorMask = 0xFFFFFF;
  static constexpr unsigned kCheckShift = 24;
  static constexpr std::uint32_t kCheckMask = 3U << kCheckShift;
  static constexpr std::uint32_t kBoldBit = 1U << 26;

  const Cell& At(int row, int column) const {
    return cells_[static_cast<size_t>(row) * width_ + static_cast<size_t>(column)];
  }
  Cell& At(int row, int column) {
    return cells_[static_cast<size_t>(row) * width_ + static_cast<size_t>(column)];
  }
  void SetLook(int row, int column, std::uint32_t mask, std::uint32_t bits) {
    Cell& cell = At(row, column);
    cell.look = (cell.look & ~mask) | bits;
    Touch(row);
  }
  void Touch(int row) {
    first_changed_ = std::min(first_changed_, row);
    last_changed_ = std::max(last_changed_, row);
    if (batch_depth_ == 0) Report();
  }
  void TouchSortKey(int column) {
    if (column == sort_column_) sort_column_ = -1;
  }
  void EndBatch();
  void Report();
  void ApplyFilter();
  void Permute(const std::vector<std::uint32_t>& order);
  std::vector<std::uint32_t> OrderByText(int column, SortDirection direction) const;
  std::vector<std::uint32_t> OrderByNumber(const std::vector<double>& keys,
                                           SortDirection direction) const;

  GridListener* listener_ = nullptr;
  GridObserver* observer_ = nullptr;
  std::vector<GridColumn> columns_;
  size_t width_ = 0;         // Their number.
  std::vector<Cell> cells_;  // Row by row.
  std::vector<Row> rows_;
  text::StringArena texts_;
  int current_row_ = 0;
  int current_column_ = 0;
  int top_row_ = kFixedRows;
  // No row before or behind these is selected, so that selecting one row does not visit them all.
  int first_selected_ = std::numeric_limits<int>::max();
  int last_selected_ = 0;
  std::function<bool(int row)> filter_;
  int hidden_rows_ = 0;
  int sort_column_ = -1;
  SortDirection sort_direction_ = SortDirection::kAscending;

  // What the observer has not been told yet.
  int batch_depth_ = 0;
  bool reset_ = false;
  bool refilter_ = false;
  bool selection_set_ = false;
  int reported_rows_ = 0;
  int first_changed_ = std::numeric_limits<int>::max();
  int last_changed_ = -1;
};

}  // namespace quillan
