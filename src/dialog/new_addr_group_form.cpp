#include "dialog/new_addr_group_form.h"

#include "dialog/entry_form.h"
#include "dialog/guarded.h"
#include "platform/program.h"
#include "platform/qt/qt_text.h"

namespace quillan {

std::optional<NewGroup> NewAddrGroupForm::AddNewAddressGroup(const Grid* grid,
                                                             FlowDatabase& database,
                                                             MessageBox& messages,
                                                             QWidget* parent) {
  NewAddrGroupForm form(grid, database, messages, parent);
  if (form.exec() != Accepted) return std::nullopt;
  return NewGroup{ToUtf8(form.start_->text()), ToUtf8(form.end_->text()),
                  ToUtf8(form.description_->text())};
}

NewAddrGroupForm::NewAddrGroupForm(const Grid* grid, FlowDatabase& database, MessageBox& messages,
                                   QWidget* parent)
    : QDialog(parent), grid_(grid), database_(database), messages_(messages) {
  setObjectName(QStringLiteral("NewAddrGroupForm"));
  EntryForm form(*this, tr("Add New IP Address Group"),
                 [this] { RunGuarded(messages_, [this] { OnOk(); }); });
  start_ = form.AddBox(QStringLiteral("StartIPAddress"), tr("Start of IP Address range"));
  end_ = form.AddBox(QStringLiteral("EndIPAddress"), tr("End of IP Address range"));
  description_ = form.AddBox(QStringLiteral("Description"), tr("Description"));
  form.AddButtons();
}

void NewAddrGroupForm::OnOk() {
  const auto refusal =
      RefuseNewGroup(ToUtf8(start_->text()), ToUtf8(end_->text()), grid_, database_);
  if (!refusal) {
    accept();
    return;
  }
  messages_.Show(refusal->message, kDisplayName, MessageButtons::kOk, MessageIcon::kExclamation);
  QLineEdit* field = refusal->field == NewGroupField::kStart ? start_ : end_;
  field->setFocus();
  if (refusal->select_text) field->selectAll();
}

}  // namespace quillan
