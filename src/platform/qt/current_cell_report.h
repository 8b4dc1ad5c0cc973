#pragma once

#include <QTableView>
#include <QTimer>

namespace quillan {

/// Tells assistive technology what becomes of a table's current cell while the table has the focus:
/// that the focus has come to it, of which Qt reports the table alone, and that its check box or
/// its description has changed, which Qt does not report.
class CurrentCellReport final : public QObject {
  Q_OBJECT

 public:
  /// Reports for `table`, which has its model and owns this object.
  explicit CurrentCellReport(QTableView* table);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Note();
  void TellFocus();
  void TellChanges();

  QTableView& table_;
  // What was last known of the current cell.
  QVariant check_;
  QString description_;
  QTimer focus_;    // Until Qt has made its own report.
  QTimer changes_;  // Until the table has made them all.
};

}  // namespace quillan
