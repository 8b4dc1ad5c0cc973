#include "dialog/review_form.h"

#include <algorithm>
#include <map>
#include <set>

#include <QVBoxLayout>

#include "dialog/page_parts.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

QString Describe(RowState state) {
  switch (state) {
    case RowState::kNew:
      return ReviewForm::tr("New");
    case RowState::kDeleted:
      return ReviewForm::tr("To be deleted");
    case RowState::kChanged:
    case RowState::kUnchanged:
      break;
  }
  return ReviewForm::tr("Changed");
}

}  // namespace

ReviewForm::ReviewForm(std::vector<SettingsPage*> pages, QWidget* parent)
    : TableDialog("ReviewForm", tr("Changes Not Saved"), {},
                  {tr("Page"), tr("Row"), tr("Change"), tr("Column"), tr("From"), tr("To")},
                  parent),
      pages_(std::move(pages)),
      revert_(AddButton("cmdRevert", tr("Revert Selected"))),
      go_(AddButton("cmdGoToRow", tr("Go to Row"))),
      note_(NewParagraph({}, this)) {
  note_->setObjectName(QStringLiteral("ReviewNote"));
  static_cast<QVBoxLayout*>(layout())->insertWidget(1, note_);
  connect(AddButton("cmdClose", tr("Close")), &QPushButton::clicked, this, &QDialog::reject);
  connect(revert_, &QPushButton::clicked, this, &ReviewForm::Revert);
  connect(go_, &QPushButton::clicked, this, &ReviewForm::GoToRow);
  connect(&Table(), &QTableWidget::cellDoubleClicked, this, &ReviewForm::GoToRow);
  connect(Table().selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &ReviewForm::ShowSelected);
  Refresh();
}

void ReviewForm::Refresh() {
  std::vector<QStringList> lines;
  rows_.clear();
  for (SettingsPage* page : pages_) {
    for (const PendingRow& row : page->Pending()) {
      const QStringList start = {page->Title(), ToQString(row.name), Describe(row.state)};
      const auto add = [&](const PendingValue& value) {
        lines.push_back(start + QStringList{ToQString(value.column), ToQString(value.from),
                                            ToQString(value.to)});
        rows_.emplace_back(page, row.row);
      };
      std::ranges::for_each(row.values, add);
      // A row that was marked and then set back by hand is written all the same.
      if (row.values.empty()) add({});
    }
  }
  SetRows(lines);
  ShowSelected();
}

void ReviewForm::ShowSelected() {
  const QModelIndexList selected = Table().selectionModel()->selectedRows();
  // Rows of a list that could not be read again are not in its grid.
  const bool shown = std::ranges::any_of(selected, [&](const QModelIndex& index) {
    return rows_[static_cast<size_t>(index.row())].second != 0;
  });
  revert_->setEnabled(shown);
  go_->setEnabled(shown && selected.size() == 1);
  QString note;
  if (selected.size() == 1) {
    const auto& [page, row] = rows_[static_cast<size_t>(selected.front().row())];
    note = page->RowNote(row);
  }
  note_->setText(note);
  note_->setVisible(!note.isEmpty());
}

void ReviewForm::Revert() {
  std::map<SettingsPage*, std::set<int>> rows;
  for (const QModelIndex& index : Table().selectionModel()->selectedRows()) {
    const auto& [page, row] = rows_[static_cast<size_t>(index.row())];
    rows[page].insert(row);
  }
  for (const auto& [page, numbers] : rows) page->Revert({numbers.begin(), numbers.end()});
  Refresh();
}

void ReviewForm::GoToRow() {
  const QModelIndexList selected = Table().selectionModel()->selectedRows();
  if (!go_->isEnabled()) return;
  target_ = rows_[static_cast<size_t>(selected.front().row())];
  accept();
}

}  // namespace quillan
