#include "dialog/help_button.h"

#include <QShortcut>

#include "suite/url.h"

namespace quillan {
namespace {

constexpr std::string_view kHelpServer = "Help Server";
constexpr std::string_view kHelpPath = "/Kelvora/Help/Admin/NetFlow.htm";

}  // namespace

HelpButton::HelpButton(const HelpServices& services, QWidget* parent)
    : QPushButton(tr("Help"), parent), services_(services) {
  setObjectName(QStringLiteral("CmdHelp"));
  connect(this, &QPushButton::clicked, this, &HelpButton::OpenHelpPage);
  auto* key = new QShortcut(QKeySequence(Qt::Key_F1), parent);
  connect(key, &QShortcut::activated, this, &HelpButton::OpenHelpFile);
}

std::string HelpButton::Refresh() {
  std::string address = Address();
  setEnabled(!address.empty());
  setToolTip(isEnabled()
                 ? QString()
                 : tr("Set the registry option \"Help Server\" of the program's Settings section "
                      "to the host of the suite's web help server."));
  return address;
}

std::string HelpButton::Address() const {
  const OptionValue option = services_.settings.RetrieveOption(kHelpServer, std::string());
  const std::string host = std::get<std::string>(option);
  if (host.empty()) return {};
  URL address;
  address.SetURL(host.find("://") == std::string::npos ? "http://" + host : host);
  address.SetURLPath(kHelpPath);
  return address.GetURL();
}

void HelpButton::OpenHelpPage() {
  try {
    const std::string address = Refresh();
    if (!address.empty()) OpenInBrowser(services_.desktop, services_.messages, address);
  } catch (const std::exception&) {
    // Nothing depends on the browser.
  }
}

void HelpButton::OpenHelpFile() {
  if (services_.files.FileExists(services_.help_file)) {
    services_.desktop.OpenUrl(services_.help_file.string());
  }
}

}  // namespace quillan
