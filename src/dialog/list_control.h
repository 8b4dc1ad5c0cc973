#pragma once

#include <vector>

#include <QPushButton>
#include <QWidget>

#include "lists/checkable_list.h"
#include "platform/message_box.h"
#include "platform/qt/grid_view.h"

namespace quillan {

/// A list's grid with its buttons in a column beside it.
class ListControl final : public QWidget {
  Q_OBJECT

 public:
  /// `list` must outlive the control; `title` names it to assistive technology.
  ListControl(CheckableList& list, MessageBox& messages, const QString& name, const QString& title,
              QWidget* parent);
  ~ListControl() override;

  /// Finishes the edit of a cell, if one is open.
  void CommitEdit() { table_->CommitEdit(); }
  /// Wide enough to show every column as it is laid out.
  QSize sizeHint() const override;

 private:
  QPushButton* AddButton(const ListCommand& command);
  void Run(const std::function<void()>& command);
  void EnableRowCommands();

  CheckableList& list_;
  MessageBox& messages_;
  GridView* table_;
  std::vector<QPushButton*> row_buttons_;  // Those that need a data row.
};

}  // namespace quillan
