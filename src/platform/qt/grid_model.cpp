#include "platform/qt/grid_model.h"

#include <algorithm>

#include <QBrush>
#include <QFont>

#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

int ToQt(Alignment alignment) {
  return static_cast<int>((alignment == Alignment::kCenter ? Qt::AlignHCenter : Qt::AlignLeft) |
                          Qt::AlignVCenter);
}

// A string is laid out as a whole to be painted, so only as much of it is shown as a screen is
// wide.
QString ShownText(std::string_view text) {
  constexpr size_t kMostBytes = 1000;
  if (text.size() <= kMostBytes) return ToQString(text);
  size_t length = kMostBytes;
  // Not within a character.
  while (length > 0 && (text[length] & 0xC0) == 0x80) --length;
  return ToQString(text.substr(0, length)) + QChar(0x2026);
}

}  // namespace

GridModel::GridModel(Grid& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid) {
  Reload();
}

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  const int row = index.row() + Grid::kFixedRows;
  // Between a change of the grid and its report the views may ask for a row that is gone.
  if (!index.isValid() || row >= grid_.Rows() || index.column() >= grid_.Columns()) return {};
  if (role == Qt::DisplayRole) return ShownText(grid_.Text(row, index.column()));
  if (role == Qt::EditRole) return ToQString(grid_.Text(row, index.column()));
  return Decoration(row, index.column(), role);
}

QVariant GridModel::Decoration(int row, int column, int role) const {
  switch (role) {
    case Qt::CheckStateRole: {
      const CheckState state = grid_.Check(row, column);
      if (state == CheckState::kNone) return {};
      return static_cast<int>(state == CheckState::kChecked ? Qt::Checked : Qt::Unchecked);
    }
    case Qt::ForegroundRole: {
      const Color color = grid_.ForeColor(row, column);
      if (color == 0) return {};
      return QBrush(QColor(static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
                           static_cast<int>(color >> 16 & 0xFF)));
    }
    case Qt::FontRole: {
      if (!grid_.Bold(row, column)) return {};
      // Only the weight is set; everything else comes from the view's font.
      static const QFont bold = [] {
        QFont font;
        font.setResolveMask(0);
        font.setBold(true);
        return font;
      }();
      return bold;
    }
    case Qt::TextAlignmentRole:
      return ToQt(grid_.Column(column).alignment);
    default:
      return {};
  }
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const int row = index.row() + Grid::kFixedRows;
  if (role != Qt::EditRole || !index.isValid() || row >= grid_.Rows()) return false;
  grid_.SetText(row, index.column(), ToUtf8(value.toString()));
  return true;
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section >= grid_.Columns()) return {};
  if (role == Qt::TextAlignmentRole) return ToQt(grid_.Column(section).alignment);
  if (role == Qt::DisplayRole && grid_.Rows() > 0) return ToQString(grid_.Text(0, section));
  return {};
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  // Never user-checkable: the list alone toggles a box, or every toggle would happen twice.
  return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable
                         : Qt::NoItemFlags;
}

void GridModel::Reload() {
  const int rows = std::max(grid_.Rows() - Grid::kFixedRows, 0);
  if (rows == rows_ && grid_.Columns() == columns_) {
    // Other content in the same shape; the view keeps its place.
    emit layoutAboutToBeChanged();
    changePersistentIndexList(persistentIndexList(), QModelIndexList(persistentIndexList().size()));
    emit layoutChanged();
    emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    return;
  }
  beginResetModel();
  rows_ = rows;
  columns_ = grid_.Columns();
  endResetModel();
}

void GridModel::Append(int last_row) {
  const int last = last_row - Grid::kFixedRows;
  if (last < rows_) return;
  beginInsertRows({}, rows_, last);
  rows_ = last + 1;
  endInsertRows();
}

void GridModel::Change(int first_row, int last_row) {
  if (last_row < Grid::kFixedRows) {
    emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    return;
  }
  emit dataChanged(index(std::max(first_row - Grid::kFixedRows, 0), 0),
                   index(last_row - Grid::kFixedRows, columns_ - 1));
}

}  // namespace quillan
