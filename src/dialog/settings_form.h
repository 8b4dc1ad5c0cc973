#pragma once

#include <filesystem>
#include <functional>

#include <QDialog>

#include "dialog/help_button.h"
#include "dialog/list_exporter.h"
#include "dialog/page_sequence.h"
#include "dialog/page_tabs.h"
#include "dialog/remembered_view.h"
#include "dialog/save_bar.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/printers.h"
#include "settings/settings.h"

namespace quillan {

/// What the settings dialog works with; all of it outlives the dialog.
struct SettingsFormServices {
  Settings& settings;
  Registry& registry;
  FlowDatabase& database;
  const Files& files;
  Desktop& desktop;
  MessageBox& messages;
  Printers& printers;
  const Clock& clock;
  const text::UserLocale& locale;
  std::filesystem::path help_file;
  std::function<void()> end_program;  ///< Called when closing the dialog ends the program.
};

/// The program's main window: pages over the settings and the database's lists. OK and Apply write
/// everything back in one fixed order.
class SettingsForm final : public QDialog {
  Q_OBJECT

 public:
  explicit SettingsForm(const SettingsFormServices& services);
  ~SettingsForm() override;
  /// Loads every page from the settings and the database.
  void Sync();
  /// Esc and the close box: asks once before changes are lost.
  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddButtons();
  void OpenAtComfortableSize();
  void RestoreLists();
  void RememberView();
  SaveResult Save();
  void Review();
  void OnOk();
  void OnApply();
  void Close();

  SettingsFormServices services_;
  PageTabs* tabs_;
  SaveBar* save_bar_;
  ListExporter exporter_;
  PageSequence pages_;
  HelpButton* help_ = nullptr;
  RememberedView view_;
  QSize opened_size_;
};

}  // namespace quillan
