#include "app/shared.h"

#include "platform/ado/drivers.h"
#include "platform/program.h"
#include "registry/registry.h"

namespace quillan {
namespace {

Desktop*& DesktopInUse() {
  static PosixDesktop without_toolkit;
  static Desktop* desktop = &without_toolkit;
  return desktop;
}

}  // namespace

void UseDesktop(Desktop& desktop) { DesktopInUse() = &desktop; }

Files& FileSystem() {
  static DiskFiles files;
  return files;
}

const Clock& LocalClock() {
  static const SystemClock clock;
  return clock;
}

const text::UserLocale& Locale() {
  static const text::UserLocale locale = text::UserLocale::FromEnvironment();
  return locale;
}

FlowDatabase& MainDatabase() {
  static FlowDatabase database(FileSystem(), ProgramFolder(),
                               ado::InstalledDrivers(ProgramFolder()));
  return database;
}

Settings& AppSettings() {
  static Registry registry(ProgramFolder(), UserConfigurationFolder());
  static Settings settings(registry, MainDatabase(), *DesktopInUse(), LocalClock(), Locale());
  return settings;
}

}  // namespace quillan
