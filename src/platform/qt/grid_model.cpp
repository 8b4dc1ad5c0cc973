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
  const int row = GridRow(index);
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
    case Qt::AccessibleTextRole:
      // A check box is called as its column; other cells read their text.
      return grid_.Check(row, column) == CheckState::kNone
                 ? QVariant()
                 : ToQString(grid_.Text(0, column)).trimmed();
    case Qt::AccessibleDescriptionRole:
      return RowDescription(row);
    case Qt::TextAlignmentRole:
      return ToQt(grid_.Column(column).alignment);
    default:
      return {};
  }
}

// What the colours and the type of the row say.
QString GridModel::RowDescription(int row) const {
  QStringList parts;
  if (grid_.RowData(row).state < 0) {
    parts += tr("to be deleted");
  } else if (grid_.RowData(row).state > 0) {
    parts += tr("not saved yet");
  }
  if (grid_.Columns() > 1 && grid_.Bold(row, 1)) parts += tr("user-defined");
  return parts.join(QLatin1String(", "));
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const int row = GridRow(index);
  if (!index.isValid() || row >= grid_.Rows()) return false;
  if (role == Qt::CheckStateRole && grid_.listener() != nullptr) {
    // What assistive technology does to the box is a click; the list toggles it.
    if (index.data(role).toInt() != value.toInt()) grid_.listener()->OnClick(row, index.column());
    return true;
  }
  if (role != Qt::EditRole) return false;
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
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable;
  return index.data(Qt::CheckStateRole).isValid() ? flags | Qt::ItemIsUserCheckable : flags;
}

int GridModel::GridRow(int model_row) const {
  if (!filtered_) return model_row + Grid::kFixedRows;
  const auto position = static_cast<size_t>(model_row);
  return position < shown_.size() ? shown_[position] : grid_.Rows();
}

int GridModel::ModelRow(int row) const {
  if (!filtered_) return row - Grid::kFixedRows;
  return static_cast<int>(std::lower_bound(shown_.begin(), shown_.end(), row) - shown_.begin());
}

QModelIndex GridModel::IndexOf(int row, int column) const {
  if (row < Grid::kFixedRows || row >= grid_.Rows() || !grid_.IsShown(row)) return {};
  return index(ModelRow(row), column);
}

void GridModel::Reload() {
  const auto reload_shown = [this] {
    shown_.clear();
    filtered_ = grid_.IsFiltered();
    for (int row = Grid::kFixedRows; filtered_ && row < grid_.Rows(); ++row) {
      if (grid_.IsShown(row)) shown_.push_back(row);
    }
  };
  const int rows = std::max(grid_.ShownRows(), 0);
  if (rows == rows_ && grid_.Columns() == columns_) {
    // Other content in the same shape; the view keeps its place.
    emit layoutAboutToBeChanged();
    reload_shown();
    changePersistentIndexList(persistentIndexList(), QModelIndexList(persistentIndexList().size()));
    emit layoutChanged();
    emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    return;
  }
  beginResetModel();
  reload_shown();
  rows_ = rows;
  columns_ = grid_.Columns();
  endResetModel();
}

void GridModel::Append(int first_row, int last_row) {
  const int count = last_row - first_row + 1;
  beginInsertRows({}, rows_, rows_ + count - 1);
  for (int row = first_row; filtered_ && row <= last_row; ++row) shown_.push_back(row);
  rows_ += count;
  endInsertRows();
}

void GridModel::Change(int first_row, int last_row) {
  if (last_row < Grid::kFixedRows) {
    emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    return;
  }
  const int first = ModelRow(std::max(first_row, Grid::kFixedRows));
  const int last = ModelRow(last_row + 1) - 1;
  if (first <= last) emit dataChanged(index(first, 0), index(last, columns_ - 1));
}

}  // namespace quillan
