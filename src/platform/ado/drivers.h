#pragma once

#include <filesystem>

#include "platform/ado/driver.h"

namespace quillan::ado {

/// Opens sessions by their connection string: `Provider=SQLite;Data Source=<file>` with the
/// embedded engine, a relative file taken from `program_folder` (either path separator); the SQL
/// Server providers, `Driver={…}` and `DSN=…` through ODBC. An unknown provider is an error that
/// names the known ones.
DriverFactory InstalledDrivers(std::filesystem::path program_folder);

}  // namespace quillan::ado
