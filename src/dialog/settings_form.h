#pragma once

#include <array>
#include <filesystem>
#include <functional>

#include <QDialog>
#include <QPushButton>
#include <QTabWidget>

#include "dialog/collapse_page.h"
#include "dialog/list_control.h"
#include "dialog/retention_page.h"
#include "dialog/service_page.h"
#include "lists/address_group_list.h"
#include "lists/interfaces_list.h"
#include "lists/port_list.h"
#include "platform/desktop.h"
#include "platform/files.h"

namespace quillan {

/// What the settings dialog works with; all of it outlives the dialog.
struct SettingsFormServices {
  Settings& settings;
  FlowDatabase& database;
  const Files& files;
  Desktop& desktop;
  MessageBox& messages;
  const Clock& clock;
  const text::UserLocale& locale;
  std::filesystem::path help_file;
  std::function<void()> end_program;  ///< Called when closing the dialog ends the program.
};

/// The program's main window: six pages over the settings and the database's lists. It owns no
/// data; OK and Apply write everything back in one fixed order.
class SettingsForm final : public QDialog, private ListHost {
  Q_OBJECT

 public:
  explicit SettingsForm(const SettingsFormServices& services);
  ~SettingsForm() override;

  /// Loads every control from the settings and reloads the lists; a step that fails is skipped.
  void Sync();

  void reject() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class SaveResult { kSaved, kCancelled, kFailed };

  void AddPages();
  void AddButtons();
  ListControl* AddListPage(CheckableList& list, const char* page, const char* name,
                           const QString& caption);
  void ConnectHelp();
  void OpenAtComfortableSize();

  bool SaveSettings();
  SaveResult TrySave();
  void OnOk();
  void OnApply();
  void OnTabSelected(int tab);
  void Unload();
  std::string HelpAddress() const;

  void ShowBusyPointer() override { setCursor(Qt::WaitCursor); }
  void ShowDefaultPointer() override { unsetCursor(); }

  SettingsFormServices services_;
  PortList ports_;
  AddressGroupList groups_;
  InterfacesList interfaces_;
  size_t synced_lists_ = 0;  // How many lists the save under way has finished.

  QTabWidget* tabs_;
  RetentionPage* retention_ = nullptr;
  CollapsePage* collapse_ = nullptr;
  ServicePage* service_ = nullptr;
  std::array<ListControl*, 3> lists_{};
  std::array<QPushButton*, 4> buttons_{};
};

}  // namespace quillan
