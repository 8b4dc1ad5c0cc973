#include "dialog/service_page.h"

#include <algorithm>
#include <limits>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "dialog/failures.h"
#include "dialog/page_parts.h"
#include "platform/qt/qt_text.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr qsizetype kBoxDigits = 12;  // Room for any port with something to spare.
constexpr int kHighestPort = 65535;

// A message shows no more of a long entry than this.
constexpr int kQuotedLength = 40;

QString Quoted(const QString& text) {
  return text.size() <= kQuotedLength ? text : text.left(kQuotedLength) + QStringLiteral("...");
}

// What is to be pointed out about an entry: that it is not a port, or that another number will be
// stored; empty for an ordinary port.
QString Note(const QString& text) {
  QString not_a_port = ServicePage::tr("Not a number from 1 to %1.").arg(kHighestPort);
  const auto number = text::ReadLeadingWhole(ToUtf8(text));
  if (!number) return not_a_port;
  const int stored = std::max(*number, 1);
  bool whole = false;
  const bool same = text.trimmed().toInt(&whole) == stored && whole;
  const QString saved_as =
      same ? QString() : ServicePage::tr("It will be saved as %1.").arg(stored);
  const bool port = *number >= 1 && *number <= kHighestPort;
  return port ? saved_as : (not_a_port + QLatin1Char(' ') + saved_as).trimmed();
}

}  // namespace

ServicePage::ServicePage(Settings& settings, MessageBox& messages, QWidget* parent)
    : SettingsPage("SSActiveTabPanel4", tr("NetFlow Service"), parent),
      settings_(settings),
      messages_(messages) {
  QFrame* frame = NewPageFrame(this);
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(NewHeading(tr("Netflow Collection Port"), frame));
  layout->addWidget(NewParagraph(tr("The NetFlow Receiver Service will listen for incoming NetFlow "
                                    "datastreams on the following "
                                    "port. The default setting is port 2055."),
                                 frame));

  auto* row = new QHBoxLayout();
  auto* prompt = new QLabel(tr("Listen for NetFlow packets on port "), frame);
  listen_port_ = new QLineEdit(QStringLiteral("2055"), frame);
  listen_port_->setObjectName(QStringLiteral("ListenPort"));
  listen_port_->setAccessibleName(tr("NetFlow listening port"));
  listen_port_->setMaxLength(std::numeric_limits<int>::max());
  listen_port_->setFixedWidth(
      listen_port_->fontMetrics().horizontalAdvance(QString(kBoxDigits, QLatin1Char('0'))));
  prompt->setBuddy(listen_port_);
  note_ = NewParagraph(QString(), frame);
  note_->setObjectName(QStringLiteral("ListenPortNote"));
  row->addWidget(prompt);
  row->addWidget(listen_port_);
  row->addWidget(note_, 1);
  layout->addLayout(row);
  layout->addStretch();
  connect(listen_port_, &QLineEdit::textChanged, this, [this] {
    ShowNote();
    emit PendingChanged();
  });
}

void ServicePage::LoadOptions() {
  loaded_text_ = QString::number(settings_.ListenPort());
  listen_port_->setText(loaded_text_);
  ShowNote();
  emit PendingChanged();
}

std::vector<PendingRow> ServicePage::Pending() const {
  if (PendingCount() == 0) return {};
  const std::string name = ToUtf8(tr("Listening port"));
  return {{.row = 1,
           .state = RowState::kChanged,
           .name = name,
           .values = {{name, ToUtf8(loaded_text_), ToUtf8(listen_port_->text())}}}};
}

void ServicePage::Revert(const std::vector<int>& /*rows*/) { listen_port_->setText(loaded_text_); }

void ServicePage::ShowNote() {
  const std::string& error = settings_.ListenPortError();
  const QString note = error.empty() || listen_port_->isModified()
                           ? Note(listen_port_->text())
                           : tr("The port could not be read: %1").arg(ToQString(error));
  note_->setText(note);
  listen_port_->setAccessibleDescription(note);
}

SaveResult ServicePage::SaveOptions() {
  // A port that could not be read is stored only if the user entered it.
  if (!settings_.ListenPortError().empty() && !listen_port_->isModified()) {
    settings_.DropListenPort();
    return SaveResult::kDone;
  }
  const auto port = text::ReadLeadingWhole(ToUtf8(listen_port_->text()));
  if (!port) {
    emit NeedsAttention();
    ShowRefusal(messages_, *this,
                {"The listening port " + ToUtf8(Quoted(listen_port_->text())) +
                     " cannot be stored.\r\nPlease enter a number from 1 to 65535; the default is "
                     "2055. Nothing has been saved.",
                 "ListenPort"});
    return SaveResult::kFailed;
  }
  settings_.SetListenPort(*port);
  return SaveResult::kDone;
}

}  // namespace quillan
