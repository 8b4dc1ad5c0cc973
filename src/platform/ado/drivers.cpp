#include "platform/ado/drivers.h"

#include <algorithm>
#include <chrono>

#include "platform/ado/connection_string.h"
#include "platform/ado/error.h"
#include "platform/ado/odbc_connection_string.h"
#include "platform/ado/odbc_driver.h"
#include "platform/ado/odbc_session.h"
#include "platform/ado/sql_server_browser.h"
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

// What the administrator can do about a login that the server or the driver refused. The drivers
// themselves only say that it failed.
std::string LoginAdvice(const ConnectionString& settings, const Error& error) {
  const bool refused = error.state() == "28000" || error.state() == "HY000" ||
                       (error.state() == "08001" && error.number() == 0);
  if (!refused) return {};
  if (UsesIntegratedSecurity(settings)) {
    return " Integrated security needs a Kerberos ticket of the user who runs the program: get one "
           "with kinit, and check it with klist.";
  }
  if (!NamesUser(settings)) {
    return " The connection string names no user. Add \"User ID=<name>;Password=<password>\", or "
           "\"Integrated Security=SSPI\" to log in with Kerberos.";
  }
  if (AsksForEncryption(settings) && error.state() == "08001") {
    return " The connection string asks for encryption, which the server may not offer. Install a "
           "certificate there, or do not ask for encryption.";
  }
  return {};
}

std::unique_ptr<Driver> OpenSqlServer(const ConnectionString& settings, ConnectOptions options) {
  const std::optional<std::string> driver = SqlServerDriver(InstalledOdbcDrivers());
  if (!driver) {
    throw Error(0, "IM002",
                "No ODBC driver for SQL Server is installed. Install the package msodbcsql18 or "
                "tdsodbc.");
  }
  SqlServerAddress server = AddressOf(settings);
  if (server.port == 0 && !server.instance.empty()) {
    const auto start = std::chrono::steady_clock::now();
    server.port = FindInstancePort(server.host, server.instance, options.connection_timeout);
    if (options.connection_timeout > 0) {
      const auto spent = std::chrono::duration_cast<std::chrono::seconds>(
          std::chrono::steady_clock::now() - start);
      options.connection_timeout =
          std::max(options.connection_timeout - static_cast<int>(spent.count()), 1);
    }
  }
  options.connection_string = TranslateToOdbc(settings, *driver, server, options.application);
  std::string note;
  if (*driver == "FreeTDS" && AsksForEncryption(settings)) {
    note = "The connection is encrypted, but FreeTDS does not check the server's certificate.";
  }
  try {
    return OpenOdbc(options, *driver, SqlServerName(settings), std::move(note));
  } catch (const Error& error) {
    throw Error(error.number(), error.state(), error.what() + LoginAdvice(settings, error));
  }
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
