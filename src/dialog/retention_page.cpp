#include "dialog/retention_page.h"

#include <QVBoxLayout>

#include "dialog/page_parts.h"
#include "platform/qt/qt_text.h"

namespace quillan {

RetentionPage::RetentionPage(Settings& settings, const text::UserLocale& locale, QWidget* parent)
    : SettingsPage("AlertsPanel", tr("Data Retention"), parent),
      settings_(settings),
      locale_(locale) {
  QFrame* frame = NewPageFrame(this);
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(NewHeading(tr("NetFlow Statistics Retention"), frame));
  retain_data_ = NewParagraph(tr("Retain NetFlow statistics for xx days"), frame);
  retain_data_->setObjectName(QStringLiteral("RetainData"));
  layout->addWidget(retain_data_);
  days_ = NewScrollBar(QStringLiteral("RetainData_Scroll"), 1, 3650, 10, 1, frame);
  days_->setAccessibleName(tr("Days to retain NetFlow statistics"));
  layout->addWidget(days_);
  description_ = NewParagraph(
      tr("NetFlow statistics older than xx days will be detailed from the Zephram database "),
      frame);
  description_->setObjectName(QStringLiteral("RetainDescription"));
  layout->addWidget(description_);
  layout->addStretch();
  connect(days_, &QScrollBar::valueChanged, this, &RetentionPage::ShowTexts);
}

void RetentionPage::LoadOptions() { SetScrollValue(*days_, settings_.RetainDays()); }

SaveResult RetentionPage::SaveOptions() {
  settings_.SetRetainDays(days_->value());
  return SaveResult::kDone;
}

void RetentionPage::ShowTexts(int days) {
  const QString number = ToQString(locale_.GroupedNumber(days));
  retain_data_->setText(tr("Retain NetFlow Statistics for ") + number + tr(" days"));
  description_->setText(tr("NetFlow Statistics older than ") + number +
                        tr(" days will be deleted from the Zephram database"));
}

}  // namespace quillan
