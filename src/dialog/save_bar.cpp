#include "dialog/save_bar.h"

#include <QHBoxLayout>
#include <QTime>

#include "dialog/lengths.h"
#include "dialog/table_dialog.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

constexpr int kButtonHeight = 375;  // Twips.
constexpr int kButtonPadding = 300;

QPushButton* NewButton(const char* name, const QString& caption, QWidget* parent) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  button->setFixedSize(button->fontMetrics().horizontalAdvance(caption) + ToPixels(kButtonPadding),
                       ToPixels(kButtonHeight));
  button->hide();
  return button;
}

}  // namespace

SaveBar::SaveBar(const Services& services, QWidget& window)
    : QWidget(&window),
      services_(services),
      status_(new SaveStatus(this)),
      announcement_(new Announcement(this)),
      details_(NewButton("cmdDetails", tr("Details"), this)),
      stop_(NewButton("cmdStop", tr("Stop"), this)),
      progress_(window, *status_, *stop_, services.database, services.messages, services.locale) {
  setAccessibleName(tr("Saving"));
  // Never takes room from the buttons beside it.
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(ToPixels(kMargin));
  layout->addWidget(status_, 1);
  layout->addWidget(details_);
  layout->addWidget(stop_);
  connect(status_, &SaveStatus::clicked, this, &SaveBar::ReviewRequested);
  connect(details_, &QPushButton::clicked, this, &SaveBar::ShowDetails);
}

void SaveBar::ShowPending(int count) {
  status_->ShowPending(count);
  if (count == 0) details_->hide();
}

void SaveBar::ShowReport(const SaveReport& report) {
  report_ = report;
  const auto number = [&](int count) { return ToQString(services_.locale.GroupedNumber(count)); };
  QString outcome;
  if (report.stopped && report.failures.empty()) {
    outcome =
        tr("Stopped: %1 of %2 changes saved").arg(number(report.written), number(report.total));
  } else if (!report.failures.empty()) {
    const int failed = report.total - report.written;
    outcome =
        failed > 0
            ? tr("%1 of %2 changes could not be saved").arg(number(failed), number(report.total))
        : report.total == 1
            ? tr("Saved 1 change, but not without errors")
            : tr("Saved %1 changes, but not without errors").arg(number(report.total));
  } else if (report.total > 0) {
    const text::DateTime now = services_.clock.Now();
    const auto since_midnight = now - std::chrono::floor<std::chrono::days>(now);
    const QString time = QTime(0, 0)
                             .addSecs(static_cast<int>(since_midnight.count()))
                             .toString(QStringLiteral("HH:mm"));
    outcome = report.total == 1 ? tr("Saved 1 change at %1").arg(time)
                                : tr("Saved %1 changes at %2").arg(number(report.total), time);
  }
  status_->ShowOutcome(outcome);
  announcement_->Say(outcome);
  details_->setVisible(!report.failures.empty());
}

void SaveBar::ShowDetails() {
  TableDialog form("DetailsForm", tr("Changes That Could Not Be Saved"), {},
                   {tr("Page"), tr("Row"), tr("Message")}, window());
  std::vector<QStringList> lines;
  for (const auto& [page, row, message] : report_.failures) lines.push_back({page, row, message});
  form.SetRows(lines);
  connect(form.AddButton("cmdClose", tr("Close")), &QPushButton::clicked, &form, &QDialog::reject);
  form.exec();
}

}  // namespace quillan
