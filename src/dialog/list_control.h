#pragma once

#include <vector>

#include <QPushButton>
#include <QWidget>

#include "lists/checkable_list.h"
#include "platform/message_box.h"
#include "platform/qt/grid_view.h"

namespace quillan {

/// A list on a page of the dialog: its grid with its buttons in a column beside it.
class ListControl final : public QWidget {
  Q_OBJECT

 public:
  /// `list` must outlive the control; `title` names it to assistive technology.
  ListControl(CheckableList& list, MessageBox& messages, const QString& name, const QString& title,
              QWidget* parent);
  ~ListControl() override;

  /// Reloads the rows from the database.
  void Refresh() { list_.Refresh(); }
  /// Writes the user's changes, that of an open cell editor included, to the database. May throw
  /// `ado::Error`.
  void Sync();
  /// Finishes the edit of a cell, if one is open.
  void CommitEdit() { table_->CommitEdit(); }
  /// The width at which every column is shown as it is laid out, in pixels.
  int PreferredWidth() const;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void AddButton(const ListCommand& command);
  void Run(const std::function<void()>& command);
  void EnableRowCommands();

  struct Button {
    QPushButton* widget;
    CommandPlace place;
    CommandEnabled enabled;
  };

  CheckableList& list_;
  MessageBox& messages_;
  GridView* table_;
  std::vector<Button> buttons_;
};

}  // namespace quillan
