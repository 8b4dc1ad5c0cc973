#include "platform/ado/drivers.h"

#include "platform/ado/connection_string.h"
#include "platform/ado/error.h"
#include "platform/ado/odbc_connection_string.h"
#include "platform/ado/odbc_driver.h"
#include "platform/ado/odbc_session.h"
#include "platform/ado/sqlite_driver.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

std::unique_ptr<Driver> OpenEmbedded(const ConnectionString& settings,
                                     const std::filesystem::path& program_folder,
                                     const ConnectOptions& options) {
  const std::string source = settings.Value({"Data Source"});
  if (source.empty()) {
    throw Error(0, "", "The connection string names no database file. Add \"Data Source=<file>\".");
  }
  return OpenSqlite(program_folder / text::ReplaceAll(source, "\\", "/"), options);
}

std::unique_ptr<Driver> OpenSqlServer(const ConnectionString& settings, ConnectOptions options) {
  const std::optional<std::string> driver = SqlServerDriver(InstalledOdbcDrivers());
  if (!driver) {
    throw Error(0, "IM002",
                "No ODBC driver for SQL Server is installed. Install the package msodbcsql18 or "
                "tdsodbc.");
  }
  options.connection_string = TranslateToOdbc(settings, *driver);
  return OpenOdbc(options, *driver, SqlServerName(settings));
}

}  // namespace

DriverFactory InstalledDrivers(std::filesystem::path program_folder) {
  return [folder = std::move(program_folder)](const ConnectOptions& options) {
    const ConnectionString settings(options.connection_string);
    const std::string provider = settings.Value({"Provider"});
    if (text::EqualsIgnoringCase(provider, "SQLite")) {
      return OpenEmbedded(settings, folder, options);
    }
    if (IsSqlServerProvider(provider)) return OpenSqlServer(settings, options);
    if (provider.empty() && settings.Has({"Driver", "DSN"})) {
      return OpenOdbc(options, settings.Value({"Driver"}), "");
    }
    throw Error(0, "",
                "The connection string's provider \"" + provider +
                    "\" is unknown. Use SQLite, SQLOLEDB, SQLNCLI or MSOLEDBSQL, or name an ODBC "
                    "driver with \"Driver={name}\" or a data source with \"DSN=name\".");
  };
}

}  // namespace quillan::ado
