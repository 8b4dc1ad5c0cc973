#include <memory>

#include <QApplication>

#include "app/shared.h"
#include "app/start_up.h"
#include "dialog/settings_form.h"
#include "platform/program.h"
#include "platform/qt/appearance.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_message_box.h"

// The wiring diagram: which part is given which.
int main(int argc, char** argv) {
  using namespace quillan;  // NOLINT(google-build-using-namespace): this file wires all of it.
  const QApplication application(argc, argv);
  InstallAppearance();
  QtDesktop desktop;
  QtMessageBox messages;
  UseDesktop(desktop);

  std::filesystem::path help_file;
  std::unique_ptr<SettingsForm> form;
  const StartUpResult result = StartUp({
      .program_folder = ProgramFolder(),
      .settings = AppSettings(),
      .database = MainDatabase(),
      .files = FileSystem(),
      .desktop = desktop,
      .messages = messages,
      .set_help_file = [&](const std::filesystem::path& file) { help_file = file; },
      .show_dialog =
          [&] {
            form = std::make_unique<SettingsForm>(SettingsFormServices{
                AppSettings(), MainDatabase(), FileSystem(), desktop, messages, LocalClock(),
                Locale(), help_file, [] { QCoreApplication::quit(); }});
            form->show();
          },
  });
  return result == StartUpResult::kRunning ? QApplication::exec() : 0;
}
