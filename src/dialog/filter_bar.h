#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "lists/checkable_list.h"

namespace quillan {

/// The line above a list in which the user types what its rows must contain; rows that do not are
/// hidden. Not shown until it is opened.
class FilterBar final : public QWidget {
  Q_OBJECT

 public:
  /// `list` must outlive the bar.
  FilterBar(CheckableList& list, QWidget* parent);

  /// Shows the bar and lets the user type.
  void Open();
  /// Says again what is shown, after the rows have changed.
  void Update();

 signals:
  /// The bar was closed; the list shows all its rows.
  void Closed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Apply();
  void ShowResult(bool ask_database);

  CheckableList& list_;
  QLineEdit* text_;
  QLabel* result_;
};

}  // namespace quillan
