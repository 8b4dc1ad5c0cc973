#pragma once

#include <filesystem>
#include <memory>

#include "bench/suite_data.h"
#include "db/flow_database.h"
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
  /// A folder of its own with the same database.
  SuiteFolder(const SuiteFolder& original);
  SuiteFolder& operator=(const SuiteFolder&) = delete;

  std::filesystem::path program() const { return folder_ / "program"; }
  std::filesystem::path database() const { return folder_ / "program/suite.db"; }

 private:
  test::TemporaryFolder folder_;
};

/// The program without windows over a folder: an open session, settings, and the lists.
class Program {
 public:
  /// `script`, if any, sees what passes through the session; the folder must outlive the program.
  explicit Program(const SuiteFolder& folder, test::DriverScript* script = nullptr);

  FlowDatabase& database() { return database_; }
  std::unique_ptr<CheckableList> PortList();
  std::unique_ptr<CheckableList> GroupList();
  std::unique_ptr<CheckableList> InterfaceList();

 private:
  ListServices Services();

  DiskFiles files_;
  FlowDatabase database_;
  test::FakeDesktop desktop_;
  test::FixedClock clock_;
  test::ScriptedMessageBox messages_;
  test::FakeListHost host_;
  text::UserLocale locale_;
  Registry registry_;
  Settings settings_;
};

/// Makes one of the lists.
using MakeList = std::unique_ptr<CheckableList> (Program::*)();

/// Every data row of a list as text, what the window shows of it, in one sum.
std::string Describe(const Grid& grid);

}  // namespace quillan::bench
