#pragma once

#include <filesystem>

#include "cli/console.h"
#include "cli/options.h"
#include "db/flow_database.h"
#include "lists/list_services.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/text/user_locale.h"
#include "registry/registry.h"
#include "settings/settings.h"

namespace quillan {

/// What every command works with. The registry is read and never written.
class Session {
 public:
  Session(const std::filesystem::path& program_folder, const Options& options);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Opens the database; false, and said on standard error, if it cannot.
  bool Open();
  ListServices Services() { return {database_, console_, console_, clock_, locale_}; }

  const Options& options() const { return options_; }
  FlowDatabase& database() { return database_; }
  Settings& settings() { return settings_; }
  Console& console() { return console_; }

 private:
  const Options& options_;
  DiskFiles files_;
  Desktop desktop_;
  SystemClock clock_;
  text::UserLocale locale_;
  FlowDatabase database_;
  Registry registry_;
  Settings settings_;
  Console console_;
};

}  // namespace quillan
