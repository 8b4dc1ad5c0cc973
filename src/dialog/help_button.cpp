#include "dialog/help_button.h"

#include <QShortcut>

namespace quillan {
namespace {

constexpr std::string_view kHelpServer = "Help Server";
constexpr std::string_view kHelpPath = "/Kelvora/Help/Admin/NetFlow.htm";

}  // namespace

HelpButton::HelpButton(const HelpServices& services, QWidget* parent)
    : QPushButton(tr("Help"), parent), services_(services) {
  setObjectName(QStringLiteral("CmdHelp"));
  setEnabled(!Address().empty());
  if (!isEnabled()) {
    setToolTip(
        tr("Set the registry option \"Help Server\" of the program's Settings section "
           "to the host of the suite's web help server."));
  }
  connect(this, &QPushButton::clicked, this, [this] {
    try {
      OpenInBrowser(services_.desktop, services_.messages, Address());
    } catch (const std::exception&) {
      // Nothing depends on the browser.
    }
  });
  auto* key = new QShortcut(QKeySequence(Qt::Key_F1), parent);
  connect(key, &QShortcut::activated, this, &HelpButton::OpenHelpFile);
}

std::string HelpButton::Address() const {
  const OptionValue option = services_.settings.RetrieveOption(kHelpServer, std::string());
  const std::string host = std::get<std::string>(option);
  if (host.empty()) return {};
  const bool has_scheme = host.find("://") != std::string::npos;
  return (has_scheme ? host : "http://" + host) + std::string(kHelpPath);
}

void HelpButton::OpenHelpFile() {
  if (services_.files.FileExists(services_.help_file)) {
    services_.desktop.OpenUrl(services_.help_file.string());
  }
}

}  // namespace quillan
