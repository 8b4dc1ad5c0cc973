#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "lists/list_search.h"
#include "platform/qt/grid_view.h"

namespace quillan {

/// Finds and replaces text in the editable column of a list. The window stays open beside the list,
/// which can be edited meanwhile, and closes when another page is shown.
class FindReplaceForm final : public QDialog {
  Q_OBJECT

 public:
  /// `list`, which must have an editable column, and `table`, which shows it, must outlive the
  /// form.
  FindReplaceForm(CheckableList& list, GridView& table, QWidget* parent);

  /// Shows the window and lets the user type what to find.
  void ShowWindow();
  /// Goes to the next or the previous row that contains the text; opens the window while there is
  /// nothing to find.
  void FindNext();
  void FindPrevious();

  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLineEdit* AddBox(const char* name, const QString& label);
  QPushButton* AddButton(const char* name, const QString& caption);
  void LayOut();
  void Replace();
  void ReplaceAll();
  // Takes over what the user typed; false, and the window opens, if there is nothing to find.
  bool Begin();
  void ShowFound(SearchResult result, bool up);
  void ShowReplaced(int rows, const QString& remark);

  CheckableList& list_;
  GridView& table_;
  ListSearch search_;
  QLineEdit* find_;
  QLineEdit* replace_;
  QCheckBox* match_case_;
  QLabel* result_;
  QPushButton* find_next_;
  QPushButton* find_previous_;
  QPushButton* replace_next_;
  QPushButton* replace_all_;
};

}  // namespace quillan
