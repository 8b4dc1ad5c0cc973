#include "dialog/dialog_fixture.h"

#include <QTableWidget>
#include <QTimer>

namespace quillan::test {

void DialogTest::InNextDialog(std::function<void(QDialog*)> act) {
  QTimer::singleShot(0, form_.get(), [act = std::move(act)] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->isActiveWindow(); }));
    act(dialog);
    if (dialog->isVisible()) {
      ADD_FAILURE() << "the dialog was left open";
      dialog->reject();
    }
  });
}

QWidget* DialogTest::Edit(GridView* table) {
  QTest::keyClick(table, Qt::Key_F2);
  return table->findChild<QWidget*>(QStringLiteral("CellEditor"));
}

std::vector<std::string> DialogTest::Lines(QWidget* window) {
  auto* table = window->findChild<QTableWidget*>();
  std::vector<std::string> lines;
  for (int row = 0; row < table->rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < table->columnCount(); ++column) {
      cells += table->item(row, column)->text();
    }
    lines.push_back(cells.join(QLatin1Char('|')).toStdString());
  }
  return lines;
}

}  // namespace quillan::test
