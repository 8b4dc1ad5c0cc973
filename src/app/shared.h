#pragma once

#include <filesystem>

#include "db/flow_database.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/text/user_locale.h"
#include "registry/registry.h"
#include "settings/settings.h"

namespace quillan {

/// The objects of which the process has one each. `main` creates them and passes them on; every
/// other class is given what it needs.
struct SharedObjects {
  /// Loads the registry options; opens no database. `desktop` outlives the objects.
  /// `open_driver` opens database sessions.
  SharedObjects(const std::filesystem::path& program_folder, ado::DriverFactory open_driver,
                const Desktop& desktop);
  ~SharedObjects();
  SharedObjects(const SharedObjects&) = delete;
  SharedObjects& operator=(const SharedObjects&) = delete;

  DiskFiles files;
  SystemClock clock;
  text::UserLocale locale;
  FlowDatabase database;
  Registry registry;
  Settings settings;
};

// The instances that `main` created; they must exist.
Settings& AppSettings();
FlowDatabase& MainDatabase();
Files& FileSystem();

}  // namespace quillan
