#include "dialog/new_addr_group_form.h"

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
    : EntryForm("NewAddrGroupForm", tr("Add New IP Address Group"), messages, parent),
      grid_(grid),
      database_(database),
      start_(AddBox("StartIPAddress", tr("Start of IP Address range"))),
      end_(AddBox("EndIPAddress", tr("End of IP Address range"))),
      description_(AddBox("Description", tr("Description"))) {
  AddButtons();
}

std::optional<Refusal> NewAddrGroupForm::Refuse() {
  return RefuseNewGroup(ToUtf8(start_->text()), ToUtf8(end_->text()), grid_, database_,
                        ToUtf8(description_->text()));
}

}  // namespace quillan
