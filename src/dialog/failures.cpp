#include "dialog/failures.h"

#include <QLineEdit>

#include "platform/program.h"
#include "platform/qt/qt_text.h"

namespace quillan {

void ShowFailure(MessageBox& messages, std::string_view message) {
  messages.Show(message, kDisplayName, MessageButtons::kOk, MessageIcon::kExclamation);
}

void ShowRefusal(MessageBox& messages, const QWidget& window, const Refusal& refusal) {
  ShowFailure(messages, refusal.message);
  auto* field = window.findChild<QWidget*>(ToQString(refusal.field));
  if (field == nullptr) return;
  field->setFocus();
  auto* box = qobject_cast<QLineEdit*>(field);
  if (refusal.select_text && box != nullptr) box->selectAll();
}

}  // namespace quillan
