#pragma once

#include <memory>
#include <string>

#include "platform/ado/driver.h"

namespace quillan::ado {

/// Opens a session over ODBC. The connection string is in ODBC's form; `driver` is the ODBC driver
/// that it names, empty where a data source does. `data_source` is the server's name for the
/// property "Data Source Name"; empty: what ODBC calls it. `note` is the property "Connection
/// Note". Errors have the server's own number, the SQLSTATE and the server's text. Throws `Error`.
std::unique_ptr<Driver> OpenOdbc(const ConnectOptions& options, const std::string& driver,
                                 std::string data_source, std::string note = {});

}  // namespace quillan::ado
