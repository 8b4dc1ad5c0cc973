#pragma once

#include <filesystem>
#include <memory>

#include "bench/suite_data.h"
#include "db/flow_database.h"
#include "dialog/settings_form.h"
#include "lists/checkable_list.h"
#include "platform/text/user_locale.h"
#include "settings/settings.h"
#include "support/fakes.h"
#include "support/scripted_driver.h"
#include "support/temporary_folder.h"

namespace quillan::bench {

/// A program folder on the memory file system with a suite database.
class SuiteFolder {
 public:
  explicit SuiteFolder(const Fill& fill);
  /// A separate folder with a copy of the database.
  SuiteFolder(const SuiteFolder& original);
  SuiteFolder& operator=(const SuiteFolder&) = delete;

  std::filesystem::path program() const { return folder_ / "program"; }
  std::filesystem::path database() const { return folder_ / "program/suite.db"; }

 private:
  test::TemporaryFolder folder_;
};

/// The program over a folder: an open session, whose calls run on a worker thread, settings, the
/// lists, and the dialog.
class Program {
 public:
  /// `script`, if any, records what the session runs.
  explicit Program(std::shared_ptr<const SuiteFolder> folder, test::DriverScript* script = nullptr);

  const SuiteFolder& folder() const { return *folder_; }
  std::unique_ptr<CheckableList> PortList();
  std::unique_ptr<CheckableList> GroupList();
  std::unique_ptr<CheckableList> InterfaceList();
  std::unique_ptr<SettingsForm> Dialog();

 private:
  ListServices Services();

  std::shared_ptr<const SuiteFolder> folder_;
  DiskFiles files_;
  FlowDatabase database_;
  test::FakeDesktop desktop_;
  test::FixedClock clock_;
  test::ScriptedMessageBox messages_;
  test::FakePrinters printers_;
  test::FakeListHost host_;
  text::UserLocale locale_;
  Registry registry_;
  Settings settings_;
};

/// Makes one of the lists.
using MakeList = std::unique_ptr<CheckableList> (Program::*)();

/// A list that has been loaded, and its program.
struct LoadedList {
  LoadedList(const Fill& fill, MakeList make_list)
      : program(std::make_shared<const SuiteFolder>(fill)), list((program.*make_list)()) {
    list->Refresh();
  }

  Program program;
  std::unique_ptr<CheckableList> list;
};

/// Every data row that the list shows, in one checksum.
std::string Describe(const Grid& grid);

}  // namespace quillan::bench
