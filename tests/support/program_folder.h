#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "db/flow_database.h"
#include "platform/ado/drivers.h"
#include "platform/files.h"
#include "settings/settings.h"
#include "support/fakes.h"
#include "support/scripted_driver.h"
#include "support/sqlite_file.h"
#include "support/temporary_folder.h"

namespace quillan::test {

/// A program folder with a connection file and an empty suite database, and the session over it.
class ProgramFolder {
 public:
  /// `wrap` may put a driver of the test's own around the real one.
  using WrapDrivers = std::function<ado::DriverFactory(ado::DriverFactory)>;
  explicit ProgramFolder(const WrapDrivers& wrap = {})
      : suite(folder / "program/suite.db"),
        database(files, folder / "program",
                 wrap ? wrap(ado::InstalledDrivers(folder / "program"))
                      : ado::InstalledDrivers(folder / "program")) {
    folder.Write("program/TBKelvora.DB", "CONNECTION=Provider=SQLite;Data Source=suite.db\r\n");
  }

  TemporaryFolder folder;
  SqliteFile suite;
  DiskFiles files;
  FlowDatabase database;
};

/// A program folder, its statements written down, and what the settings are made of.
class ProgramTest : public testing::Test {
 protected:
  DriverScript script_;
  ProgramFolder program_{
      [this](ado::DriverFactory drivers) { return script_.Wrap(std::move(drivers)); }};
  Registry registry_{program_.folder / "program", program_.folder / "user"};
  FakeDesktop desktop_;
  FixedClock clock_;
  text::UserLocale locale_{"C"};
  ScriptedMessageBox messages_;
};

}  // namespace quillan::test
