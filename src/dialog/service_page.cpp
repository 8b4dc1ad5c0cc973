#include "dialog/service_page.h"

#include <stdexcept>

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "dialog/page_parts.h"
#include "platform/qt/qt_text.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr int kPortBoxWidth = 90;  // Pixels; room for any port with something to spare.

}  // namespace

ServicePage::ServicePage(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("SSActiveTabPanel4"));
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
  listen_port_->setFixedWidth(kPortBoxWidth);
  prompt->setBuddy(listen_port_);
  row->addWidget(prompt);
  row->addWidget(listen_port_);
  row->addStretch();
  layout->addLayout(row);
  layout->addStretch();
}

void ServicePage::Load(const Settings& settings) {
  listen_port_->setText(QString::number(settings.ListenPort()));
}

void ServicePage::Save(Settings& settings) const {
  // A port that could not be read and that the user left alone must not be stored.
  if (!settings.ListenPortError().empty() && !listen_port_->isModified()) return;
  const std::string text = ToUtf8(listen_port_->text());
  const auto port = text::ReadLeadingWhole(text);
  if (!port) {
    throw std::out_of_range(
        "The listening port " + text +
        " is too large.\r\nPlease enter the number of a UDP port; the default is "
        "2055. Nothing has been saved.");
  }
  settings.SetListenPort(*port);
}

}  // namespace quillan
