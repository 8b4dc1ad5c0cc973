#include "dialog/new_port_form.h"

#include "platform/qt/qt_text.h"

namespace quillan {

std::optional<NewPort> NewPortForm::AddNewPort(FlowDatabase& database, MessageBox& messages,
                                               QWidget* parent) {
  NewPortForm form(database, messages, parent);
  form.exec();
  return form.accepted_;
}

NewPortForm::NewPortForm(FlowDatabase& database, MessageBox& messages, QWidget* parent)
    : EntryForm("NewPortForm", tr("Add New Port"), messages, parent),
      database_(database),
      port_number_(AddBox("PortNumber", tr("Port"))),
      description_(AddBox("Description", tr("Description"))) {
  AddButtons();
}

std::optional<Refusal> NewPortForm::Refuse() {
  auto result =
      ValidateNewPort(ToUtf8(port_number_->text()), ToUtf8(description_->text()), database_);
  if (auto* refusal = std::get_if<Refusal>(&result)) return *refusal;
  accepted_ = std::get<NewPort>(result);
  return std::nullopt;
}

}  // namespace quillan
