#include "bench/suite.h"

#include <stdexcept>

#include "bench/harness.h"
#include "lists/address_group_list.h"
#include "lists/interfaces_list.h"
#include "lists/port_list.h"
#include "platform/ado/drivers.h"
#include "platform/qt/worker_driver.h"

namespace quillan::bench {
namespace {

ado::DriverFactory Drivers(const SuiteFolder& folder, test::DriverScript* script) {
  ado::DriverFactory drivers = OnWorkerThread(ado::InstalledDrivers(folder.program()));
  return script != nullptr ? script->Wrap(std::move(drivers)) : drivers;
}

void WriteConnectionFile(const test::TemporaryFolder& folder) {
  folder.Write("program/TBKelvora.DB", "CONNECTION=Provider=SQLite;Data Source=suite.db\r\n");
}

}  // namespace

SuiteFolder::SuiteFolder(const Fill& fill) {
  WriteConnectionFile(folder_);
  test::SqliteFile file(database());
  fill(file);
}

SuiteFolder::SuiteFolder(const SuiteFolder& original) {
  WriteConnectionFile(folder_);
  std::filesystem::copy_file(original.database(), database());
}

Program::Program(std::shared_ptr<const SuiteFolder> folder, test::DriverScript* script)
    : folder_(std::move(folder)),
      database_(files_, folder_->program(), Drivers(*folder_, script)),
      locale_(text::UserLocale::FromEnvironment()),
      registry_(folder_->program(), folder_->program()),
      settings_(registry_, database_, desktop_, clock_, locale_) {
  if (!database_.OpenDatabase()) throw std::runtime_error(database_.LastError());
}

ListServices Program::Services() { return {database_, host_, messages_, clock_, locale_}; }

std::unique_ptr<CheckableList> Program::PortList() {
  return std::make_unique<quillan::PortList>(Services(), [] { return std::nullopt; });
}

std::unique_ptr<CheckableList> Program::GroupList() {
  return std::make_unique<AddressGroupList>(Services(), settings_,
                                            [](const Grid&) { return std::nullopt; });
}

std::unique_ptr<CheckableList> Program::InterfaceList() {
  return std::make_unique<InterfacesList>(Services());
}

std::unique_ptr<SettingsForm> Program::Dialog() {
  return std::make_unique<SettingsForm>(SettingsFormServices{.settings = settings_,
                                                             .registry = registry_,
                                                             .database = database_,
                                                             .files = files_,
                                                             .desktop = desktop_,
                                                             .messages = messages_,
                                                             .printers = printers_,
                                                             .clock = clock_,
                                                             .locale = locale_,
                                                             .help_file = {},
                                                             .end_program = [] {}});
}

std::string Describe(const Grid& grid) {
  Checksum sum;
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    sum.Add(grid.Check(row, 0) == CheckState::kChecked ? 1U : 0U);
    for (int column = 1; column < grid.Columns(); ++column) sum.Add(grid.Text(row, column));
  }
  return std::to_string(grid.Rows() - Grid::kFixedRows) + " rows, sum " + sum.Text();
}

}  // namespace quillan::bench
