#pragma once

#include <filesystem>

#include <QPushButton>

#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "settings/settings.h"

namespace quillan {

/// What the dialog's help works with; all of it outlives the button.
struct HelpServices {
  const Settings& settings;
  const Files& files;
  Desktop& desktop;
  MessageBox& messages;
  std::filesystem::path help_file;
};

/// The button "Help", which opens the suite's web help on the host named by the registry option
/// "Help Server"; disabled while that is not set. F1 in its window opens the help file.
class HelpButton final : public QPushButton {
  Q_OBJECT

 public:
  HelpButton(const HelpServices& services, QWidget* parent);

  /// Reads the option again; returns the address of the help page, empty while the option is not
  /// set.
  std::string Refresh();

 private:
  std::string Address() const;
  void OpenHelpPage();
  void OpenHelpFile();

  HelpServices services_;
};

}  // namespace quillan
