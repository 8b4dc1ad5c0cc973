// Writes a picture of every page of the settings dialog, the two hidden ones too.
//
// Usage: quillan_pictures <program folder> <output folder>

#include <filesystem>
#include <iostream>

#include <QApplication>
#include <QTabBar>
#include <QTabWidget>

#include "dialog/settings_form.h"
#include "platform/ado/drivers.h"
#include "platform/qt/appearance.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_message_box.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

// "2-ip-address-groups.png" for the second tab.
QString PictureName(int tab, const QString& caption) {
  QString name = QString::number(tab + 1);
  for (const QString& word : caption.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    if (word.front().isLetter()) name += QLatin1Char('-') + word.toLower();
  }
  return name + QStringLiteral(".png");
}

// Shows page after page; false when a picture cannot be written.
bool TakePictures(SettingsForm& form, const std::filesystem::path& folder) {
  auto* tabs = form.findChild<QTabWidget*>(QStringLiteral("Tabs"));
  for (int tab = 0; tab < tabs->count(); ++tab) {
    const bool hidden = !tabs->isTabVisible(tab);
    tabs->setTabVisible(tab, true);
    tabs->tabBar()->setTabEnabled(tab, true);
    tabs->setCurrentIndex(tab);
    QApplication::processEvents();
    const std::filesystem::path file = folder / ToUtf8(PictureName(tab, tabs->tabText(tab)));
    if (!form.grab().save(ToQString(file.string()))) {
      std::cerr << "Cannot write " << file.string() << '\n';
      return false;
    }
    tabs->setTabVisible(tab, !hidden);
    tabs->tabBar()->setTabEnabled(tab, !hidden);
  }
  return true;
}

int Run(const std::filesystem::path& program_folder, const std::filesystem::path& folder) {
  QtDesktop desktop;
  QtMessageBox messages;
  const DiskFiles files;
  const SystemClock clock;
  const auto locale = text::UserLocale::FromEnvironment();
  FlowDatabase database(files, program_folder, ado::InstalledDrivers(program_folder));
  if (!database.OpenDatabase()) {
    std::cerr << database.LastError() << '\n';
    return 1;
  }
  Registry registry(program_folder, program_folder);
  Settings settings(registry, database, desktop, clock, locale);
  SettingsForm form({settings, database, files, desktop, messages, clock, locale, {}, [] {}});
  form.show();
  std::filesystem::create_directories(folder);
  return TakePictures(form, folder) ? 0 : 1;
}

}  // namespace
}  // namespace quillan

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "Usage: quillan_pictures <program folder> <output folder>\n";
    return 2;
  }
  quillan::InstallAppearance();
  return quillan::Run(argv[1], argv[2]);
}
