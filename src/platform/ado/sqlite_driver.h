#pragma once

#include <filesystem>
#include <memory>

#include "platform/ado/driver.h"

namespace quillan::ado {

/// Opens the SQLite database `file`, which must exist, for reading and writing. Opening waits for a
/// program that holds the file for at most the connection time-out of `options`; a statement, its
/// wait for other writers included, takes at most the command time-out. Error numbers are SQLite's
/// extended result codes, states their names. Throws `Error`.
std::unique_ptr<Driver> OpenSqlite(const std::filesystem::path& file,
                                   const ConnectOptions& options);

}  // namespace quillan::ado
