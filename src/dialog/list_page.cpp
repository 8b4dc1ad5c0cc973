#include "dialog/list_page.h"

#include <QVBoxLayout>

#include "dialog/lengths.h"

namespace quillan {
namespace {

QString Title(QString caption) { return caption.replace(QLatin1String("&&"), QLatin1String("&")); }

}  // namespace

ListPage::ListPage(const Names& names, std::unique_ptr<CheckableList> list, MessageBox& messages,
                   QWidget* parent)
    : SettingsPage(names.page, names.caption, parent),
      list_(std::move(list)),
      control_(new ListControl(*list_, messages, QLatin1String(names.list), Title(names.caption),
                               this)) {
  auto* layout = new QVBoxLayout(this);
  const int margin = ToPixels(kMargin);
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->addWidget(control_);
}

// The control shows the list, so it must go first.
ListPage::~ListPage() { delete control_; }

int ListPage::PendingCount() const {
  int count = 0;
  const Grid& grid = list_->Table();
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) count += grid.RowData(row).state != 0;
  return count;
}

}  // namespace quillan
