#pragma once

#include <vector>

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "dialog/coverage_strip.h"
#include "dialog/filter_bar.h"
#include "dialog/find_replace_form.h"
#include "dialog/list_menu.h"
#include "lists/checkable_list.h"
#include "platform/message_box.h"
#include "platform/qt/grid_view.h"

namespace quillan {

/// A list's grid with its buttons in a column beside it.
class ListControl final : public QWidget {
  Q_OBJECT

 public:
  /// `list` must outlive the control; `title` names it to assistive technology.
  ListControl(CheckableList& list, const ListMenu::Services& services, const QString& name,
              const QString& title, QWidget* parent);
  ~ListControl() override;

  GridView& Table() { return *table_; }
  /// Finishes the edit of a cell, if one is open.
  void CommitEdit() { table_->CommitEdit(); }
  /// Shows the grid or, in its place, why the rows could not be read.
  void ShowRows(const QString& error);
  /// Whether the strip above the groups list is shown; always false in another list.
  bool StripShown() const { return strip_shown_; }
  void ShowStrip(bool shown);
  /// Lets the strip follow the rows, hidden ones included.
  void UpdateStrip();
  /// Wide enough to show every column as it is laid out.
  QSize sizeHint() const override;

 signals:
  /// The user wants the rows to be read again.
  void RetryRequested();
  /// The strip was shown or hidden.
  void StripToggled(bool shown);

 private:
  void AddSearchKeys();
  void AddStrip(QVBoxLayout& rows);
  void AddErrorPanel();
  void AddTableKey(const QKeySequence& key, const std::function<void()>& action);
  QPushButton* AddButton(const ListCommand& command);
  void Run(const std::function<void()>& command);
  void EnableRowCommands();

  CheckableList& list_;
  MessageBox& messages_;
  FilterBar* filter_;
  GridView* table_;
  FindReplaceForm* search_ = nullptr;  // Made when it is first needed.
  CoverageStrip* strip_ = nullptr;     // Of the groups list alone.
  bool strip_shown_ = false;
  QFrame* error_panel_;
  QLabel* error_;
  QPushButton* retry_;
  std::vector<QPushButton*> row_buttons_;  // Those that need a data row.
};

}  // namespace quillan
