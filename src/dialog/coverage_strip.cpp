#include "dialog/coverage_strip.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>
#include <QtMath>

#include "dialog/lengths.h"
#include "ip/ip_functions.h"
#include "lists/new_group.h"
#include "platform/qt/qt_text.h"
#include "suite/color_distribution.h"

namespace quillan {
namespace {

constexpr double kGapWidth = 1;   // As that of a single address.
constexpr int kFrame = 1;         // Around the lane, in pixels.
constexpr int kOutline = 2;       // Around a selected part.
constexpr int kTextMargin = 4;    // Beside a name.
constexpr int kShortestName = 5;  // A name is shown where there is room for so many characters.
constexpr int kThinnestOutline = 5;
constexpr int kMiddleGray = 140;  // Texts on darker colours are white.

double WidthOf(const CoveragePart& part) {
  return 1 + std::log2(static_cast<double>(part.end - part.start) + 1);
}

QString AddressesOf(const CoveragePart& part) {
  const auto text = [](std::uint32_t address) {
    return ToQString(SortValueToIPAddress(AddressNumberToSortValue(address)));
  };
  return text(part.start) + QStringLiteral(" - ") + text(part.end);
}

}  // namespace

CoverageStrip::CoverageStrip(Grid& grid, GridView& table, QWidget* parent)
    : QWidget(parent), grid_(grid), table_(table), margin_(ToPixels(kMargin)) {
  setObjectName(QStringLiteral("CoverageStrip"));
  setAccessibleName(tr("Address space by group"));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  setFocusPolicy(Qt::TabFocus);
  const QAbstractItemModel* model = table_.model();
  connect(model, &QAbstractItemModel::modelReset, this, &CoverageStrip::OnRowsChanged);
  connect(model, &QAbstractItemModel::layoutChanged, this, &CoverageStrip::OnRowsChanged);
  connect(model, &QAbstractItemModel::rowsInserted, this, &CoverageStrip::OnRowsChanged);
  connect(model, &QAbstractItemModel::dataChanged, this, &CoverageStrip::OnRowsChanged);
  connect(table_.selectionModel(), &QItemSelectionModel::selectionChanged, this,
          qOverload<>(&QWidget::update));
}

void CoverageStrip::OnRowsChanged() {
  stale_ = true;
  update();
}

QSize CoverageStrip::sizeHint() const {
  return {0, fontMetrics().height() + 2 * (kFrame + kOutline) + margin_};
}

QRect CoverageStrip::Lane() const {
  return rect().adjusted(kFrame, kFrame, -kFrame, -kFrame - margin_);
}

void CoverageStrip::FindPieces() {
  if (!std::exchange(stale_, false)) return;
  pieces_.clear();
  current_ = kNoPiece;
  const ColorDistribution colors;
  std::vector<QRgb> color_of_row(static_cast<size_t>(grid_.Rows()));
  std::int16_t next_color = 0;
  double end = 0;
  const auto add = [&](const CoveragePart& part, double width, QRgb color) {
    end += width;
    pieces_.push_back({part, end, color});
  };
  for (const CoveragePart& part : FindCoverage(grid_)) {
    if (!pieces_.empty() && pieces_.back().part.end + 1 != part.start) {
      add({pieces_.back().part.end + 1, part.start - 1, 0}, kGapWidth, 0);
    }
    QRgb& color = color_of_row[static_cast<size_t>(part.row)];
    if (color == 0) {
      const Color given = colors.LookupColor(next_color);
      color = qRgb(static_cast<int>(given & 0xFF), static_cast<int>(given >> 8 & 0xFF),
                   static_cast<int>(given >> 16 & 0xFF));
      next_color = next_color == std::numeric_limits<std::int16_t>::max()
                       ? std::int16_t{0}
                       : static_cast<std::int16_t>(next_color + 1);
    }
    add(part, WidthOf(part), color);
  }
}

int CoverageStrip::PixelAt(double place) const {
  return qCeil(Lane().width() * place / pieces_.back().end - 0.5) + Lane().left();
}

size_t CoverageStrip::PieceAt(int x) const {
  const double place = (x - Lane().left() + 0.5) / Lane().width() * pieces_.back().end;
  const auto found = std::upper_bound(pieces_.begin(), pieces_.end() - 1, place,
                                      [](double at, const Piece& piece) { return at < piece.end; });
  return static_cast<size_t>(found - pieces_.begin());
}

QString CoverageStrip::Describe(const Piece& piece) const {
  const int row = piece.part.row;
  if (row == 0) return tr("No group") + QLatin1Char('\n') + AddressesOf(piece.part);
  // Rows may have gone since the parts were found.
  if (!Exists(row)) return {};
  const auto text = [&](int column) { return ToQString(grid_.Text(row, column)); };
  const QString range = text(kGroupStartColumn) + QStringLiteral(" - ") + text(kGroupEndColumn);
  const QString here = AddressesOf(piece.part);
  QString description = text(kGroupNameColumn) + QLatin1Char('\n') + range;
  if (here != range) description += QLatin1Char('\n') + tr("of which here %1").arg(here);
  return description;
}

bool CoverageStrip::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = static_cast<const QHelpEvent&>(*event);
  FindPieces();
  QString text;
  if (!pieces_.empty() && Lane().contains(help.pos())) text = Describe(pieces_[PieceAt(help.x())]);
  QToolTip::showText(help.globalPos(), Qt::convertFromPlainText(text), this);
  return true;
}

bool CoverageStrip::Select(size_t piece) {
  const int row = pieces_[piece].part.row;
  // A row that the filter hides cannot be selected.
  if (!Exists(row) || !grid_.IsShown(row)) return false;
  current_ = piece;
  grid_.SelectOnly(row, kGroupStartColumn);
  grid_.ShowCell(row, kGroupStartColumn);
  return true;
}

void CoverageStrip::mousePressEvent(QMouseEvent* event) {
  const QPoint place = event->position().toPoint();
  table_.CommitEdit();
  FindPieces();
  if (event->button() != Qt::LeftButton || pieces_.empty() || !Lane().contains(place)) return;
  if (Select(PieceAt(place.x()))) table_.setFocus(Qt::MouseFocusReason);
}

void CoverageStrip::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right) {
    return QWidget::keyPressEvent(event);
  }
  FindPieces();
  // A step in front of the first piece is one behind the last.
  const size_t step = event->key() == Qt::Key_Right ? 1 : ~size_t{0};
  size_t piece = current_ + step;
  while (piece < pieces_.size() && !Select(piece)) piece += step;
  if (piece >= pieces_.size()) return;
  const QString text = Describe(pieces_[piece]);
  setAccessibleDescription(text);
  QToolTip::showText(mapToGlobal(QPoint(PixelAt(pieces_[piece].end), height())),
                     Qt::convertFromPlainText(text), this);
}

void CoverageStrip::paintEvent(QPaintEvent* /*event*/) {
  FindPieces();
  QPainter painter(this);
  const QRect lane = Lane();
  painter.fillRect(lane, palette().base());
  if (pieces_.empty()) {
    painter.drawText(lane, Qt::AlignCenter, tr("No enabled group"));
  } else {
    PaintPieces(painter);
    OutlineSelected(painter);
  }
  painter.setPen(palette().color(hasFocus() ? QPalette::Link : QPalette::Mid));
  painter.drawRect(lane.adjusted(-1, -1, 0, 0));
}

void CoverageStrip::PaintPieces(QPainter& painter) const {
  const QRect lane = Lane();
  for (int x = lane.left(); x <= lane.right();) {
    const Piece& piece = pieces_[PieceAt(x)];
    const int end = std::clamp(PixelAt(piece.end), x + 1, lane.right() + 1);
    const QRect place(x, lane.top(), end - x, lane.height());
    x = end;
    if (!Exists(piece.part.row)) continue;
    painter.fillRect(place, piece.color);
    const QRect inside = place.adjusted(kTextMargin, 0, -kTextMargin, 0);
    if (inside.width() < fontMetrics().averageCharWidth() * kShortestName) continue;
    painter.setPen(qGray(piece.color) < kMiddleGray ? Qt::white : Qt::black);
    painter.drawText(
        inside, Qt::AlignCenter,
        fontMetrics().elidedText(ToQString(grid_.Text(piece.part.row, kGroupNameColumn)),
                                 Qt::ElideRight, inside.width()));
  }
}

void CoverageStrip::OutlineSelected(QPainter& painter) const {
  const QRect lane = Lane();
  int outlined = lane.left() - 1;
  double begin = 0;
  for (const Piece& piece : pieces_) {
    const int left = PixelAt(std::exchange(begin, piece.end));
    const int right = std::max(PixelAt(piece.end), left + kThinnestOutline) - 1;
    // Many rows may share a pixel.
    if (right <= outlined || !Exists(piece.part.row) || !grid_.IsSelected(piece.part.row)) continue;
    outlined = right;
    const QRect place(QPoint(left, lane.top()), QPoint(right, lane.bottom()));
    // Two lines, of which one can be seen on any colour.
    painter.setPen(Qt::black);
    painter.drawRect(place.adjusted(0, 0, -1, -1));
    painter.setPen(Qt::white);
    painter.drawRect(place.adjusted(1, 1, -2, -2));
  }
}

}  // namespace quillan
