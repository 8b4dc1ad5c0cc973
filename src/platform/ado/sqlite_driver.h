#pragma once

#include <filesystem>
#include <memory>

#include "platform/ado/driver.h"

namespace quillan::ado {

/// Opens the SQLite database `file`, which must exist, for reading and writing. Statements wait for
/// other writers and run for at most `command_timeout` seconds (0: without limit). Error numbers
/// are SQLite's extended result codes, states their names. Throws `Error`.
std::unique_ptr<Driver> OpenSqlite(const std::filesystem::path& file, int command_timeout);

}  // namespace quillan::ado
