#include "platform/qt/grid_delegate.h"

#include <limits>

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

#include "platform/qt/color_scheme.h"
#include "platform/qt/text_check.h"

namespace quillan {

void GridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  const QVariant mark = index.data(Qt::ForegroundRole);
  if (!mark.isValid()) return;
  const QColor color = qvariant_cast<QBrush>(mark).color();
  QPalette& palette = option->palette;
  palette.setColor(QPalette::Text, Legible(color, palette.color(QPalette::Base)));
  palette.setColor(QPalette::HighlightedText, Legible(color, palette.color(QPalette::Highlight)));
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyleOptionViewItem cell = option;
  // The style's own mark of the current cell tints the text and is hardly seen on a selected row.
  cell.state &= ~QStyle::State_HasFocus;
  if (index.data(Qt::CheckStateRole).isValid()) {
    PaintCheckBox(painter, cell, index);
  } else {
    QStyledItemDelegate::paint(painter, cell, index);
  }
  if ((option.state & QStyle::State_HasFocus) == 0) return;
  const bool selected = (option.state & QStyle::State_Selected) != 0;
  painter->setPen(QPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text),
                       1, Qt::DotLine));
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
}

void GridDelegate::PaintCheckBox(QPainter* painter, QStyleOptionViewItem cell,
                                 const QModelIndex& index) const {
  const QRect whole = cell.rect;
  initStyleOption(&cell, index);
  const Qt::CheckState state = cell.checkState;
  QStyle& style = *QApplication::style();
  // The cell without its box, then the box in its middle.
  cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
  style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
  const QSize size(style.pixelMetric(QStyle::PM_IndicatorWidth, &cell, cell.widget),
                   style.pixelMetric(QStyle::PM_IndicatorHeight, &cell, cell.widget));
  cell.rect = QStyle::alignedRect(cell.direction, Qt::AlignCenter, size, whole);
  cell.state &= ~QStyle::State_Selected;
  cell.state |= state == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
  style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &cell, painter, cell.widget);
}

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  editor_ = QStyledItemDelegate::createEditor(parent, option, index);
  if (editor_ != nullptr) editor_->setObjectName(QStringLiteral("CellEditor"));
  // Qt's own limit of 32767 characters would cut a longer text when it is merely looked at.
  if (auto* line = qobject_cast<QLineEdit*>(editor_)) {
    line->setMaxLength(std::numeric_limits<int>::max());
    if (check_) {
      const auto check = [this, column = index.column()](std::string_view text) {
        return check_(column, text);
      };
      line->setValidator(new TextCheck(line, index.data(Qt::EditRole).toString(), check));
    }
  }
  return editor_;
}

void GridDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                const QModelIndex& index) const {
  QStyledItemDelegate::setModelData(editor, model, index);
  emit EditFinished(index);
}

bool GridDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip) {
    return QStyledItemDelegate::helpEvent(event, view, option, index);
  }
  const bool cut_off = sizeHint(option, index).width() > option.rect.width();
  // Rich text is broken into lines; the text itself is plain.
  QToolTip::showText(event->globalPos(),
                     cut_off ? Qt::convertFromPlainText(index.data().toString()) : QString(), view);
  return true;
}

void GridDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const {
  editor_.clear();
  QStyledItemDelegate::destroyEditor(editor, index);
}

}  // namespace quillan
