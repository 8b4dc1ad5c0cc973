#pragma once

#include <filesystem>
#include <functional>

#include "db/flow_database.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "settings/settings.h"

namespace quillan {

/// What start-up works with.
struct StartUpServices {
  std::filesystem::path program_folder;
  const Settings& settings;
  FlowDatabase& database;
  const Files& files;
  Desktop& desktop;
  MessageBox& messages;
  std::function<void(const std::filesystem::path&)> set_help_file;
  std::function<void()> show_dialog;
};

enum class StartUpResult {
  kRunning,  ///< The dialog is shown; the message loop is to run.
  kEnded,    ///< The process is to end at once.
};

/// Brings the program up: sets the help file; where the suite's configuration wizard has not
/// completed, starts it, or says that it cannot, and ends; opens the database, or says why it
/// cannot, and ends; shows the dialog.
StartUpResult StartUp(const StartUpServices& services);

}  // namespace quillan
