#pragma once

#include <vector>

#include <QWidget>

#include "lists/address_coverage.h"
#include "platform/qt/grid_view.h"

namespace quillan {

/// One lane that shows which group of a list gets which part of the address space, pending edits
/// included: a colour for each group, the selected ones outlined. Every doubling of a part's
/// addresses makes it wider by the same length, and gaps are narrow, so that small groups can be
/// seen beside large ones. Pointing at a part names its group; a click selects the group's row.
class CoverageStrip final : public QWidget {
  Q_OBJECT

 public:
  /// `grid`, of the group list, and `table`, which shows it, must outlive the strip.
  CoverageStrip(Grid& grid, GridView& table, QWidget* parent);

  /// Finds the parts anew before the next painting; to be called when rows have changed.
  void OnRowsChanged();
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // A part of the lane.
  struct Piece {
    CoveragePart part;  // In a gap the row is 0.
    double end;         // Where the piece ends; it begins where the one before it ends.
    QRgb color;
  };

  // In front of the first piece.
  static constexpr size_t kNoPiece = ~size_t{0};

  void FindPieces();
  // The lane within the widget.
  QRect Lane() const;
  // The first pixel from the left whose middle is not in front of a place of the lane.
  int PixelAt(double place) const;
  // The piece in the middle of a pixel; there must be one.
  size_t PieceAt(int x) const;
  bool Exists(int row) const { return row >= Grid::kFixedRows && row < grid_.Rows(); }
  QString Describe(const Piece& piece) const;
  // Selects the row of a piece; false if that cannot be selected.
  bool Select(size_t piece);
  void PaintPieces(QPainter& painter) const;
  void OutlineSelected(QPainter& painter) const;

  Grid& grid_;
  GridView& table_;
  const int margin_;  // Below the lane.
  std::vector<Piece> pieces_;
  size_t current_ = kNoPiece;  // The one that was selected last; kNoPiece before that.
  bool stale_ = true;
};

}  // namespace quillan
