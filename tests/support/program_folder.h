#pragma once

#include <memory>
#include <string>

#include "db/flow_database.h"
#include "platform/ado/drivers.h"
#include "platform/files.h"
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

}  // namespace quillan::test
