// The least that a program with a page of controls does.

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include "platform/qt/appearance.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  quillan::InstallAppearance();
  QDialog dialog;
  dialog.setObjectName(QStringLiteral("PlainDialog"));
  dialog.resize(640, 432);
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(new QLabel(QStringLiteral("Port")));
  layout->addWidget(new QLineEdit(QStringLiteral("2055")));
  layout->addWidget(new QTableWidget(0, 4));
  auto* tabs = new QTabWidget;
  tabs->addTab(page, QStringLiteral("Service"));
  (new QVBoxLayout(&dialog))->addWidget(tabs);
  dialog.show();
  return QApplication::exec();
}
