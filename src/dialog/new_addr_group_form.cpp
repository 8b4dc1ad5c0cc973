#include "dialog/new_addr_group_form.h"

#include <QLocale>
#include <QSignalBlocker>

#include "ip/address_range.h"
#include "ip/ip_functions.h"
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
      range_note_(AddNote("RangeNote")),
      description_(AddBox("Description", tr("Description"))) {
  AddButtons();
  connect(start_, &QLineEdit::textChanged, this, &NewAddrGroupForm::OnStartChanged);
  connect(start_, &QLineEdit::editingFinished, this, &NewAddrGroupForm::TakeRange);
  connect(end_, &QLineEdit::textChanged, this, [this] { ShowRange({}); });
}

void NewAddrGroupForm::ShowRange(const QString& note) {
  ShowNote(range_note_, note);
  start_->setAccessibleDescription(note);
}

void NewAddrGroupForm::OnStartChanged() {
  const std::string typed = ToUtf8(start_->text());
  const auto parsed = ParseAddressRange(typed);
  const auto* range = std::get_if<AddressRange>(&parsed);
  if (range == nullptr || !IsWrittenAsRange(typed)) return ShowRange({});
  const double addresses =
      SortValueToAddressNumber(range->end_value) - SortValueToAddressNumber(range->start_value) + 1;
  QString note = (addresses == 1 ? tr("%1 to %2, %3 address.") : tr("%1 to %2, %3 addresses."))
                     .arg(ToQString(range->start), ToQString(range->end),
                          QLocale().toString(static_cast<qlonglong>(addresses)));
  if (!range->note.empty()) note += QLatin1Char('\n') + ToQString(range->note);
  ShowRange(note);
}

void NewAddrGroupForm::TakeRange() {
  const std::string typed = ToUtf8(start_->text());
  if (!IsWrittenAsRange(typed)) return;
  const auto parsed = ParseAddressRange(typed);
  if (const auto* range = std::get_if<AddressRange>(&parsed)) {
    // What the note says of the range stays.
    const QSignalBlocker quiet_start(start_);
    const QSignalBlocker quiet_end(end_);
    start_->setText(ToQString(range->start));
    end_->setText(ToQString(range->end));
  } else {
    ShowRange(ToQString(std::get<std::string>(parsed)));
  }
}

std::optional<Refusal> NewAddrGroupForm::Refuse() {
  TakeRange();
  return RefuseNewGroup(ToUtf8(start_->text()), ToUtf8(end_->text()), grid_, database_,
                        ToUtf8(description_->text()));
}

}  // namespace quillan
