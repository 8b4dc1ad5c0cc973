#include "dialog/list_page.h"

#include <QVBoxLayout>

#include "dialog/lengths.h"
#include "platform/qt/qt_text.h"

namespace quillan {

ListPage::ListPage(const Names& names, std::unique_ptr<CheckableList> list,
                   const ListMenu::Services& services, QWidget* parent)
    : SettingsPage(names.page, names.caption, parent),
      rows_name_(names.rows),
      list_(std::move(list)),
      control_(new ListControl(*list_, services, QLatin1String(names.list), Title(), this)) {
  auto* layout = new QVBoxLayout(this);
  const int margin = ToPixels(kMargin);
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->addWidget(control_);
  list_->OnPendingChanged([this] {
    control_->UpdateStrip();
    emit PendingChanged();
  });
  connect(control_, &ListControl::RetryRequested, this, &SettingsPage::RetryRequested);
}

// The control shows the list, so it must go first.
ListPage::~ListPage() {
  list_->OnPendingChanged({});
  delete control_;
}

void ListPage::GoTo(int row) {
  if (row < Grid::kFixedRows) return;
  list_->Table().SelectOnly(row, 1);
  list_->Table().ShowCell(row, 1);
}

QString ListPage::RowNote(int row) const {
  return row < Grid::kFixedRows ? QString() : ToQString(list_->RowNote(row));
}

}  // namespace quillan
