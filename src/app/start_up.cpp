#include "app/start_up.h"

#include <string>

#include "platform/program.h"

namespace quillan {
namespace {

// The one failure for which the session has no text of its own; an empty box would help nobody.
constexpr std::string_view kNoConnectionString =
    "The connection file TBKelvora.DB or QuillanGUI.DB names no CONNECTION. Add a line such as\r\n"
    "CONNECTION=Provider=SQLOLEDB;Data Source=server;Initial Catalog=database;User ID=user;"
    "Password=password\r\n"
    "or re-run the Installation Wizard.";

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const bool line_end = c == '\r' || c == '\n';
    if (!line_end) {
      line += c;
    } else if (!line.ends_with(' ')) {
      line += ' ';
    }
  }
  return line;
}

StartUpResult Fail(const StartUpServices& services, std::string_view text,
                   std::string_view title = kDisplayName) {
  services.report_failure(OneLine(text));
  services.messages.Show(text, title, MessageButtons::kOk, MessageIcon::kCritical);
  return StartUpResult::kFailed;
}

StartUpResult StartWizard(const StartUpServices& services) {
  for (const char* place : {"\\Kelvora-Wizard.exe", "\\..\\Kelvora-Wizard.exe"}) {
    const std::filesystem::path wizard = JoinPath(services.program_folder, place);
    if (!services.files.FileExists(wizard)) continue;
    if (services.desktop.StartProgram(wizard)) return StartUpResult::kWizardStarted;
    services.report_failure("Cannot start " + wizard.lexically_normal().string() + ".");
    return StartUpResult::kFailed;
  }
  return Fail(services,
              "Cannot start Configuration Wizard to setup the Quillan Management Pack.\r\n"
              "You may need to reinstall this application.",
              "Config Wizard Startup Error");
}

}  // namespace

StartUpResult StartUp(const StartUpServices& services) {
  services.set_help_file(JoinPath(services.program_folder, "\\Help\\Tarrowby.chm"));
  if (!services.settings.WizardCompleted()) {
    const std::string& unreadable = services.registry.ReadError(RegistryRoot::kLocalMachine);
    return unreadable.empty() ? StartWizard(services) : Fail(services, unreadable);
  }
  if (!services.database.OpenDatabase()) {
    std::string reason = services.database.LastError();
    if (reason.empty()) reason = kNoConnectionString;
    const std::string& advice = services.database.ConnectionFileAdvice();
    if (!advice.empty()) reason += "\r\n\r\n" + advice;
    return Fail(services, reason);
  }
  services.show_dialog();
  return StartUpResult::kRunning;
}

}  // namespace quillan
