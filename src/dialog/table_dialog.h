#pragma once

#include <vector>

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTableWidget>

namespace quillan {

/// A modal window with a table of strings and buttons below it, one of which copies the selected
/// rows, or all of them while none is selected, as text with tabs.
class TableDialog : public QDialog {
  Q_OBJECT

 public:
  TableDialog(const char* name, const QString& caption, const QString& text,
              const QStringList& headers, QWidget* parent);

  void SetRows(const std::vector<QStringList>& rows);
  QTableWidget& Table() { return *table_; }
  /// Adds a button right of the others.
  QPushButton* AddButton(const char* name, const QString& caption);

 private:
  void Copy();

  QTableWidget* table_;
  QHBoxLayout* buttons_;
};

}  // namespace quillan
