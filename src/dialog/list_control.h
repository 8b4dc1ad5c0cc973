#pragma once

#include <vector>

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "dialog/filter_bar.h"
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

  GridView& Table() { return *table_; }
  /// Finishes the edit of a cell, if one is open.
  void CommitEdit() { table_->CommitEdit(); }
  /// Shows the grid or, in its place, why the rows could not be read.
  void ShowRows(const QString& error);
  /// Wide enough to show every column as it is laid out.
  QSize sizeHint() const override;

 signals:
  /// The user wants the rows to be read again.
  void RetryRequested();

 private:
  void AddErrorPanel();
  void AddTableKey(const QKeySequence& key, const std::function<void()>& action);
  QPushButton* AddButton(const ListCommand& command);
  void Run(const std::function<void()>& command);
  void EnableRowCommands();

  CheckableList& list_;
  MessageBox& messages_;
  FilterBar* filter_;
  GridView* table_;
  QFrame* error_panel_;
  QLabel* error_;
  QPushButton* retry_;
  std::vector<QPushButton*> row_buttons_;  // Those that need a data row.
};

}  // namespace quillan
