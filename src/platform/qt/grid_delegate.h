#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <QPointer>
#include <QStyledItemDelegate>

namespace quillan {

/// Paints a grid's cells: the check box in the middle of its cell, coloured texts in their colour
/// also where they are selected. Knows the editor that is open.
class GridDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  /// Shows the text of a cell that is too narrow for it as a tooltip.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;
  void destroyEditor(QWidget* editor, const QModelIndex& index) const override;

  /// `check` says why a text cannot stand in a column; its editor does not take such a text.
  void SetCheck(std::function<std::string(int column, std::string_view text)> check) {
    check_ = std::move(check);
  }

  /// The editor that is open; null when there is none.
  QWidget* OpenEditor() const { return editor_; }

 signals:
  /// An edit was finished; its text stands in the model.
  void EditFinished(const QModelIndex& index) const;

 protected:
  // A delegate toggles the check box that is clicked; here the list alone does, or every toggle
  // would happen twice.
  bool editorEvent(QEvent* /*event*/, QAbstractItemModel* /*model*/,
                   const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) override {
    return false;
  }
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  void PaintCheckBox(QPainter* painter, QStyleOptionViewItem cell, const QModelIndex& index) const;

  std::function<std::string(int column, std::string_view text)> check_;
  mutable QPointer<QWidget> editor_;  // Cleared when it is closed; it is deleted only later.
};

}  // namespace quillan
