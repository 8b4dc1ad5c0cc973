#include "app/start_up.h"

#include "platform/program.h"

namespace quillan {
namespace {

// The one failure for which the session has no text of its own; an empty box would help nobody.
constexpr std::string_view kNoConnectionString =
    "The connection file TBKelvora.DB or QuillanGUI.DB names no CONNECTION.\r\n"
    "Please re-run the Installation Wizard.";

void StartWizard(const StartUpServices& services) {
  for (const char* place : {"\\Kelvora-Wizard.exe", "\\..\\Kelvora-Wizard.exe"}) {
    const std::filesystem::path wizard = JoinPath(services.program_folder, place);
    if (!services.files.FileExists(wizard)) continue;
    services.desktop.StartProgram(wizard);
    return;
  }
  services.messages.Show(
      "Cannot start Configuration Wizard to setup the Quillan Management Pack.\r\n"
      "You may need to reinstall this application.",
      "Config Wizard Startup Error", MessageButtons::kOk, MessageIcon::kCritical);
}

}  // namespace

StartUpResult StartUp(const StartUpServices& services) {
  services.set_help_file(JoinPath(services.program_folder, "\\Help\\Tarrowby.chm"));
  if (!services.settings.WizardCompleted()) {
    StartWizard(services);
    return StartUpResult::kEnded;
  }
  if (!services.database.OpenDatabase()) {
    const std::string& reason = services.database.LastError();
    services.messages.Show(reason.empty() ? kNoConnectionString : std::string_view{reason},
                           kDisplayName, MessageButtons::kOk, MessageIcon::kCritical);
    return StartUpResult::kEnded;
  }
  services.show_dialog();
  return StartUpResult::kRunning;
}

}  // namespace quillan
