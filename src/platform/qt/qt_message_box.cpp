#include "platform/qt/qt_message_box.h"

#include <QApplication>
#include <QMessageBox>

#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

QMessageBox::Icon ToQt(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kCritical:
      return QMessageBox::Critical;
    case MessageIcon::kQuestion:
      return QMessageBox::Question;
    case MessageIcon::kExclamation:
      return QMessageBox::Warning;
    case MessageIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ToQt(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::kYesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::kYesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::kOk:
      break;
  }
  return QMessageBox::Ok;
}

// The window to stand over, also while another program has the focus.
QWidget* Owner() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return window;
  }
  return nullptr;
}

}  // namespace

MessageAnswer QtMessageBox::Show(std::string_view text, std::string_view title,
                                 MessageButtons buttons, MessageIcon icon) {
  QString lines = ToQString(text);
  lines.replace(QLatin1String("\r\n"), QLatin1String("\n"))
      .replace(QLatin1Char('\r'), QLatin1Char('\n'));
  QMessageBox box(ToQt(icon), ToQString(title), lines, ToQt(buttons), Owner());
  box.setObjectName(QLatin1String("MessageBox"));
  box.setTextFormat(Qt::PlainText);
  // Esc and the close box take the most cautious answer.
  if (buttons == MessageButtons::kYesNo) box.setEscapeButton(QMessageBox::No);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return MessageAnswer::kYes;
    case QMessageBox::No:
      return MessageAnswer::kNo;
    case QMessageBox::Cancel:
      return MessageAnswer::kCancel;
    default:
      return MessageAnswer::kOk;
  }
}

}  // namespace quillan
