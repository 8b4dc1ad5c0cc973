#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

#include "db/flow_database.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "registry/registry.h"
#include "settings/settings.h"

namespace quillan {

/// What start-up works with.
struct StartUpServices {
  std::filesystem::path program_folder;
  const Registry& registry;
  const Settings& settings;
  FlowDatabase& database;
  const Files& files;
  Desktop& desktop;
  MessageBox& messages;
  std::function<void(const std::filesystem::path&)> set_help_file;
  std::function<void()> show_dialog;
  /// Receives why the start failed, in one line without its end.
  std::function<void(std::string_view)> report_failure;
};

enum class StartUpResult {
  kRunning,        ///< The dialog is shown; the message loop is to run.
  kWizardStarted,  ///< The wizard takes over; the process is to end at once.
  kFailed,         ///< The failure was shown and reported; the process is to end at once.
};

/// Starts the program: sets the help file; where the suite's configuration wizard has not
/// completed, starts it; else opens the database and shows the dialog. A registry that cannot be
/// read is a failure, not a wizard that has not completed.
StartUpResult StartUp(const StartUpServices& services);

}  // namespace quillan
