#include "photographer.h"

#include <iostream>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QTableWidget>
#include <QTimer>

#include "platform/qt/qt_text.h"

namespace quillan {

void Photographer::Complain(const char* problem, const QString& name) {
  std::cerr << problem << ' ' << ToUtf8(name) << '\n';
  good_ = false;
}

void Photographer::Save(const QPixmap& picture, const QString& name) {
  const std::filesystem::path file = folder_ / ToUtf8(name + QStringLiteral(".png"));
  if (!picture.save(ToQString(file.string()))) Complain("Cannot write", name);
}

void Photographer::Take(QWidget& window, const QString& name) {
  // So that it shows what has the focus, also after another window was closed.
  window.activateWindow();
  QApplication::processEvents();
  Save(window.grab(), name);
}

void Photographer::TakeTogether(const std::vector<QWidget*>& windows, const QString& name) {
  QApplication::processEvents();
  QPixmap picture = windows.front()->grab();
  QPainter painter(&picture);
  const QPoint origin = windows.front()->mapToGlobal(QPoint());
  for (QWidget* window : windows) {
    painter.drawPixmap(window->mapToGlobal(QPoint()) - origin, window->grab());
  }
  painter.end();
  Save(picture, name);
}

void Photographer::TakeModal(const QString& name, const char* button,
                             const std::function<void()>& action,
                             const std::function<void(QWidget&)>& prepare) {
  QTimer::singleShot(0, &form_, [&] {
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr) return Complain("No window for", name);
    if (auto* table = window->findChild<QTableWidget*>()) table->selectRow(0);
    if (prepare) prepare(*window);
    Take(*window, name);
    if (button == nullptr) {
      window->close();
    } else {
      Press(button, *window);
    }
  });
  action();
}

void Photographer::TakeMessage(const QString& name, const std::function<void()>& action,
                               QMessageBox::StandardButton answer,
                               const std::function<void()>& before_the_next) {
  QTimer::singleShot(0, &form_, [this, name, answer, before_the_next] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return Complain("No message for", name);
    Take(*box, name);
    if (before_the_next) before_the_next();
    if (answer == QMessageBox::NoButton) {
      box->close();
    } else {
      box->button(answer)->click();
    }
  });
  action();
}

GridView& Photographer::ShowList(int tab) {
  Tabs().setCurrentIndex(tab);
  return *Tabs().currentWidget()->findChild<GridView*>();
}

void Photographer::Toggle(int tab, int first, int last) {
  GridView& table = ShowList(tab);
  table.selectionModel()->select(
      QItemSelection(table.model()->index(first, 0), table.model()->index(last, 0)),
      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
  QApplication::sendEvent(&table, &space);
}

void Photographer::Choose(const char* action) {
  auto* menu = Tabs().currentWidget()->findChild<QMenu*>(QStringLiteral("ListMenu"));
  menu->findChild<QAction*>(QLatin1String(action))->trigger();
}

void Photographer::PressShortcut(const QKeySequence& key) {
  for (auto* shortcut : Tabs().currentWidget()->findChildren<QShortcut*>()) {
    if (shortcut->key() == key) emit shortcut->activated();
  }
}

void Type(const char* box, const QString& text, QWidget& window) {
  window.findChild<QLineEdit*>(QLatin1String(box))->setText(text);
}

void Press(const char* button, QWidget& window) {
  window.findChild<QPushButton*>(QLatin1String(button))->click();
}

}  // namespace quillan
