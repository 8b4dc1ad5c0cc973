#include "platform/qt/qt_message_box.h"

#include <algorithm>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>

#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

constexpr int kQtsWidest = 1000;  // Qt makes no message box wider.

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

// The window that asks: the one in use, or, while another program has the focus, the one on screen.
QWidget* Owner() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    const Qt::WindowType type = window->windowType();
    if (window->isVisible() && (type == Qt::Window || type == Qt::Dialog)) return window;
  }
  return nullptr;
}

// Qt breaks lines at half of the screen or 500 pixels; they get what they need and the screen has.
void GiveLinesTheirWidth(QMessageBox& box) {
  // The name under which Qt makes it findable, as its documentation of style sheets says.
  auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (label == nullptr) return;
  constexpr int kBesidesLabel = 200;  // The icon and the margins, at the largest font.
  const int available = std::min(box.screen()->availableGeometry().width(), kQtsWidest);
  const int needed = label->fontMetrics().size(0, box.text()).width() + 2 * label->margin();
  label->setMinimumWidth(std::clamp(needed, 0, available - kBesidesLabel));
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
  box.setDefaultButton(buttons == MessageButtons::kOk ? QMessageBox::Ok : QMessageBox::Yes);
  GiveLinesTheirWidth(box);
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
