#include "dialog/table_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QVBoxLayout>

#include "dialog/lengths.h"
#include "dialog/page_parts.h"

namespace quillan {
namespace {

constexpr int kWidth = 11700;  // Twips.
constexpr int kHeight = 5250;
constexpr int kWidestColumn = 4500;

}  // namespace

TableDialog::TableDialog(const char* name, const QString& caption, const QString& text,
                         const QStringList& headers, QWidget* parent)
    : QDialog(parent),
      table_(new QTableWidget(0, static_cast<int>(headers.size()), this)),
      buttons_(new QHBoxLayout()) {
  setObjectName(QLatin1String(name));
  setWindowTitle(caption);
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  if (!text.isEmpty()) layout->addWidget(NewParagraph(text, this));
  layout->addWidget(table_);
  layout->addLayout(buttons_);
  buttons_->addStretch();
  table_->setObjectName(QStringLiteral("Rows"));
  table_->setAccessibleName(caption);
  table_->setHorizontalHeaderLabels(headers);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setTabKeyNavigation(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
  table_->horizontalHeader()->setStretchLastSection(true);
  table_->horizontalHeader()->setHighlightSections(false);
  table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  connect(AddButton("cmdCopy", tr("Copy")), &QPushButton::clicked, this, &TableDialog::Copy);
  resize(ToPixels(kWidth), ToPixels(kHeight));
}

QPushButton* TableDialog::AddButton(const char* name, const QString& caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  buttons_->addWidget(button);
  return button;
}

void TableDialog::SetRows(const std::vector<QStringList>& rows) {
  table_->setRowCount(static_cast<int>(rows.size()));
  for (int row = 0; row < table_->rowCount(); ++row) {
    const QStringList& texts = rows[static_cast<size_t>(row)];
    for (int column = 0; column < static_cast<int>(texts.size()); ++column) {
      auto* item = new QTableWidgetItem(texts[column]);
      item->setToolTip(texts[column]);
      table_->setItem(row, column, item);
    }
  }
  // The last column takes what the others leave.
  for (int column = 0; column + 1 < table_->columnCount(); ++column) {
    table_->resizeColumnToContents(column);
    table_->setColumnWidth(column, std::min(table_->columnWidth(column), ToPixels(kWidestColumn)));
  }
}

void TableDialog::Copy() {
  QString text;
  const auto add = [&](auto cell) {
    QStringList line;
    for (int column = 0; column < table_->columnCount(); ++column) line += cell(column)->text();
    text += line.join(QLatin1Char('\t')) + QLatin1Char('\n');
  };
  add([&](int column) { return table_->horizontalHeaderItem(column); });
  const bool all = !table_->selectionModel()->hasSelection();
  for (int row = 0; row < table_->rowCount(); ++row) {
    if (!all && !table_->selectionModel()->isRowSelected(row)) continue;
    add([&](int column) { return table_->item(row, column); });
  }
  QApplication::clipboard()->setText(text);
}

}  // namespace quillan
