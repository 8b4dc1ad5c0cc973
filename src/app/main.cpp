#include <cstdio>
#include <cstring>
#include <memory>

#include <QApplication>

#include "app/shared.h"
#include "app/start_up.h"
#include "dialog/settings_form.h"
#include "platform/ado/drivers.h"
#include "platform/program.h"
#include "platform/qt/appearance.h"
#include "platform/qt/desktop_colors.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_message_box.h"
#include "platform/qt/qt_printers.h"
#include "platform/qt/worker_driver.h"

namespace quillan {
namespace {

constexpr std::string_view kHelp =
    "usage: quillan [--help] [--version] [options of Qt]\n\n"
    "Opens the dialog that configures the suite's NetFlow receiver. The connection file and\n"
    "registry.reg are read from the folder QUILLAN_HOME if that variable is set, else from the\n"
    "folder of the program if it is an installation of its own, else from /etc/quillan.\n";

int Print(std::string_view text) {
  const bool printed = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  return printed && std::fflush(stdout) == 0 ? 0 : 1;
}

void ReportFailure(std::string_view line) {
  std::fprintf(stderr, "quillan: %.*s\n", static_cast<int>(line.size()), line.data());
}

// Creates every object and passes it on.
int Run(int& argc, char** argv) {
  const QApplication application(argc, argv);
  // Closing the dialog ends the program only where the registry option "GUI Style" says so.
  QApplication::setQuitOnLastWindowClosed(false);
  if (const QStringList arguments = QApplication::arguments(); arguments.size() > 1) {
    ReportFailure("unknown argument " + arguments[1].toStdString() + "; see quillan --help");
    return 2;
  }
  QApplication::setDesktopFileName(QStringLiteral("net.tarrowby.quillan"));  // Names its icon.
  InstallAppearance();
  FollowDesktopColors(QCoreApplication::instance());
  QtDesktop desktop;
  QtMessageBox messages;
  QtPrinters printers;
  SharedObjects shared(ProgramFolder(), OnWorkerThread(ado::InstalledDrivers(ProgramFolder())),
                       desktop);

  std::filesystem::path help_file;
  std::unique_ptr<SettingsForm> form;
  const StartUpResult result = StartUp({
      .program_folder = ProgramFolder(),
      .registry = shared.registry,
      .settings = AppSettings(),
      .database = MainDatabase(),
      .files = FileSystem(),
      .desktop = desktop,
      .messages = messages,
      .set_help_file = [&](const std::filesystem::path& file) { help_file = file; },
      .show_dialog =
          [&] {
            form = std::make_unique<SettingsForm>(SettingsFormServices{
                .settings = AppSettings(),
                .registry = shared.registry,
                .database = MainDatabase(),
                .files = FileSystem(),
                .desktop = desktop,
                .messages = messages,
                .printers = printers,
                .clock = shared.clock,
                .locale = shared.locale,
                .help_file = help_file,
                .end_program = [] { QCoreApplication::quit(); },
            });
            form->show();
          },
      .report_failure = ReportFailure,
  });
  if (result == StartUpResult::kRunning) return QApplication::exec();
  return result == StartUpResult::kWizardStarted ? 0 : 1;
}

}  // namespace
}  // namespace quillan

int main(int argc, char** argv) {
  // Answered before Qt looks for a display.
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--help") == 0) return quillan::Print(quillan::kHelp);
    if (std::strcmp(argv[i], "--version") == 0) {
      return quillan::Print("quillan " + std::string(quillan::Version()) + "\n");
    }
  }
  return quillan::Run(argc, argv);
}
