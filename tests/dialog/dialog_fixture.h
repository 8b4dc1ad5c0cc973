#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include <QApplication>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "dialog/list_control.h"
#include "dialog/settings_form.h"
#include "support/program_folder.h"

namespace quillan::test {

/// The settings dialog over a suite database of the test's own, to be clicked and typed into.
class DialogTest : public ProgramTest {
 protected:
  void SetUp() override { EXPECT_TRUE(program_.database.OpenDatabase()); }

  // What shows the dialog's messages.
  virtual MessageBox& Messages() { return messages_; }

  // Shows the dialog over what the database and the registry hold by now.
  void Open() {
    form_.reset();
    settings_.reset();
    settings_ = std::make_unique<Settings>(registry_, program_.database, desktop_, clock_, locale_);
    form_ = std::make_unique<SettingsForm>(SettingsFormServices{
        *settings_, registry_, program_.database, program_.files, desktop_, Messages(), printers_,
        clock_, locale_, program_.folder / "program/Help/Tarrowby.chm", [this] { ++ended_; }});
    form_->show();
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
  }

  // One thing to edit on each page, and what becomes of it when each is toggled or set to 9996.
  void FillEveryPage() {
    program_.suite.Run(
        "insert into ServicePorts values (80, 'http', 1, 1), (9000, 'mine', 0, 1);"
        "insert into IPAddressGroups values (1, 10000000000, 10000255255, 'big', 1, 1);"
        "insert into Nodes values (1, 'node'); insert into Interfaces values (10, 1, 'a')");
  }
  void ExpectEveryPageSaved() {
    EXPECT_THAT(program_.suite.Rows("select NetFlowPort, (select Enabled from IPAddressGroups), "
                                    "(select Enabled from ServicePorts where Port = 80), "
                                    "(select InterfaceID from NetFlowSources) from FlowEngines"),
                testing::ElementsAre("9996|0|0|10"));
  }

  template <typename Widget>
  Widget* Find(const char* name, QWidget* within = nullptr) {
    auto* found =
        (within != nullptr ? within : form_.get())->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void Click(const char* button, QWidget* within = nullptr) {
    QTest::mouseClick(Find<QPushButton>(button, within), Qt::LeftButton);
  }
  // Selects the page with the system's number, from 1.
  void SelectPage(int page) { Find<QTabWidget>("Tabs")->setCurrentIndex(page - 1); }

  // The list named `control` with its grid's view.
  GridView* Table(const char* control) {
    return Find<GridView>("Table", Find<ListControl>(control));
  }
  static QString Cell(GridView* table, int row, int column) {
    return table->model()->index(row - 1, column).data().toString();
  }
  static QVariant Check(GridView* table, int row) {
    return table->model()->index(row - 1, 0).data(Qt::CheckStateRole);
  }
  static QColor TextColor(GridView* table, int row, int column) {
    return qvariant_cast<QBrush>(table->model()->index(row - 1, column).data(Qt::ForegroundRole))
        .color();
  }
  // Clicks into a cell; rows count as in the grid, from 1.
  static void ClickCell(GridView* table, int row, int column,
                        Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QModelIndex index = table->model()->index(row - 1, column);
    table->scrollTo(index);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers,
                      table->visualRect(index).center());
  }
  // The rows of a window's table, their columns joined by "|".
  static std::vector<std::string> Lines(QWidget* window) {
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
  std::vector<std::string> StoredPorts() {
    return program_.suite.Rows("select Port, ServiceName, Enabled from ServicePorts order by Port");
  }
  std::string Status() {
    auto* status = Find<QAbstractButton>("SaveStatus");
    EXPECT_EQ(status->accessibleName(), status->text());
    EXPECT_EQ(status->isVisible(), form_->isVisible() && !status->text().isEmpty());
    return status->text().toStdString();
  }
  // Does `act` in the modal dialog that the next click opens, which must leave it closed.
  void InNextDialog(std::function<void(QDialog*)> act) {
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
  // Opens the editor of the current cell with F2; null when the edit is refused.
  static QWidget* Edit(GridView* table) {
    QTest::keyClick(table, Qt::Key_F2);
    return table->findChild<QWidget*>(QStringLiteral("CellEditor"));
  }

  FakePrinters printers_;
  std::unique_ptr<Settings> settings_;
  std::unique_ptr<SettingsForm> form_;
  int ended_ = 0;
};

}  // namespace quillan::test
