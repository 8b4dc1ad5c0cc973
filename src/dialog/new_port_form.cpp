#include "dialog/new_port_form.h"

#include "dialog/entry_form.h"
#include "dialog/guarded.h"
#include "platform/program.h"
#include "platform/qt/qt_text.h"

namespace quillan {

std::optional<NewPort> NewPortForm::AddNewPort(FlowDatabase& database, MessageBox& messages,
                                               QWidget* parent) {
  NewPortForm form(database, messages, parent);
  form.exec();
  return form.accepted_;
}

NewPortForm::NewPortForm(FlowDatabase& database, MessageBox& messages, QWidget* parent)
    : QDialog(parent), database_(database), messages_(messages) {
  setObjectName(QStringLiteral("NewPortForm"));
  EntryForm form(*this, tr("Add New Port"), [this] { RunGuarded(messages_, [this] { OnOk(); }); });
  port_number_ = form.AddBox(QStringLiteral("PortNumber"), tr("Port"));
  description_ = form.AddBox(QStringLiteral("Description"), tr("Description"));
  form.AddButtons();
}

void NewPortForm::OnOk() {
  const auto result =
      ValidateNewPort(ToUtf8(port_number_->text()), ToUtf8(description_->text()), database_);
  if (const auto* refusal = std::get_if<Refusal<NewPortField>>(&result)) {
    messages_.Show(refusal->message, kDisplayName, MessageButtons::kOk, MessageIcon::kExclamation);
    QLineEdit* field = refusal->field == NewPortField::kPortNumber ? port_number_ : description_;
    field->setFocus();
    if (refusal->select_text) field->selectAll();
    return;
  }
  accepted_ = std::get<NewPort>(result);
  accept();
}

}  // namespace quillan
