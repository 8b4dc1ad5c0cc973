// The least that a program with a dialog does.

#include <QApplication>
#include <QDialog>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QDialog dialog;
  dialog.setObjectName(QStringLiteral("EmptyDialog"));
  dialog.resize(640, 432);
  dialog.show();
  return QApplication::exec();
}
