#include "platform/ado/drivers.h"

#include "platform/ado/connection_string.h"
#include "platform/ado/error.h"
#include "platform/ado/sqlite_driver.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

std::unique_ptr<Driver> OpenEmbedded(const ConnectionString& settings,
                                     const std::filesystem::path& program_folder,
                                     int command_timeout) {
  const std::string source = settings.Value({"Data Source"});
  if (source.empty()) {
    throw Error(0, "", "The connection string names no database file. Add \"Data Source=<file>\".");
  }
  return OpenSqlite(program_folder / text::ReplaceAll(source, "\\", "/"), command_timeout);
}

}  // namespace

DriverFactory InstalledDrivers(std::filesystem::path program_folder) {
  return [folder = std::move(program_folder)](const ConnectOptions& options) {
    const ConnectionString settings(options.connection_string);
    const std::string provider = settings.Value({"Provider"});
    if (text::EqualsIgnoringCase(provider, "SQLite")) {
      return OpenEmbedded(settings, folder, options.command_timeout);
    }
    throw Error(0, "",
                "The connection string's provider \"" + provider + "\" is unknown. Use SQLite.");
  };
}

}  // namespace quillan::ado
