// Writes a picture of every page of the settings dialog, the two hidden ones too, of what can be
// opened on them, of every state of a save, and of every message of the dialog.
//
// Usage: quillan_pictures <program folder> <output folder> <scheme>
// where the scheme is light, dark, high-contrast or high-contrast-light. The demonstration in the
// program folder is changed.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <string_view>

#include <QApplication>

#include "app/start_up.h"
#include "platform/ado/drivers.h"
#include "platform/qt/appearance.h"
#include "platform/qt/color_scheme.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_message_box.h"
#include "subjects.h"

namespace quillan {
namespace {

// What a start shows that fails: without a wizard, and without a connection file.
void TakeStart(Photographer& photographer, Registry& registry) {
  const std::filesystem::path nowhere = "nowhere";
  const DiskFiles files;
  FlowDatabase database(files, nowhere, ado::InstalledDrivers(nowhere));
  Registry empty(nowhere, nowhere, RegistryAccess::kReadOnly);
  const SystemClock clock;
  const auto locale = text::UserLocale::FromEnvironment();
  QtDesktop desktop;
  QtMessageBox messages;
  for (Registry* each : {&empty, &registry}) {
    const Settings settings(*each, database, desktop, clock, locale);
    photographer.TakeMessage(
        each == &empty ? QStringLiteral("28-no-wizard") : QStringLiteral("29-no-connection-file"),
        [&] {
          StartUp({nowhere, *each, settings, database, files, desktop, messages, [](const auto&) {},
                   [] {}, [](std::string_view) {}});
        });
  }
}

int Run(const std::filesystem::path& program_folder, const std::filesystem::path& folder) {
  QtDesktop desktop;
  QtMessageBox messages;
  DemoPrinters printers;
  const DiskFiles files;
  const SystemClock clock;
  const auto locale = text::UserLocale::FromEnvironment();
  // The time-out is short: one picture shows what comes after it.
  std::ofstream(program_folder / "TBKelvora.DB", std::ios::binary)
      << "CONNECTION=Provider=SQLite;Data Source=quillan-demo.db\r\nCOMMANDTIMEOUT=2\r\n";
  FlowDatabase database(files, program_folder, ado::InstalledDrivers(program_folder));
  FlowDatabase other(files, program_folder, ado::InstalledDrivers(program_folder));
  if (!database.OpenDatabase() || !other.OpenDatabase()) {
    std::cerr << database.LastError() << other.LastError() << '\n';
    return 1;
  }
  Registry registry(program_folder, program_folder);
  Settings settings(registry, database, desktop, clock, locale);
  SettingsForm form(
      {settings, registry, database, files, desktop, messages, printers, clock, locale, {}, [] {}});
  form.show();
  std::filesystem::create_directories(folder);
  Photographer photographer(form, folder);
  TakeLists(photographer, printers);
  TakeSaves(photographer, other);
  TakeStart(photographer, registry);
  return photographer.Good() ? 0 : 1;
}

}  // namespace
}  // namespace quillan

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  using enum quillan::ColorScheme;
  const std::map<std::string_view, quillan::ColorScheme> schemes = {
      {"light", kLight},
      {"dark", kDark},
      {"high-contrast", kHighContrastDark},
      {"high-contrast-light", kHighContrastLight}};
  if (argc != 4 || !schemes.contains(argv[3])) {
    std::cerr << "Usage: quillan_pictures <program folder> <output folder> "
                 "light|dark|high-contrast|high-contrast-light\n";
    return 2;
  }
  quillan::InstallAppearance();
  quillan::SetColorScheme(schemes.at(argv[3]));
  const std::filesystem::path program_folder = std::filesystem::absolute(argv[1]);
  const std::filesystem::path folder = std::filesystem::absolute(argv[2]);
  // Where file dialogs open.
  std::filesystem::current_path(program_folder);
  return quillan::Run(program_folder, folder);
}
