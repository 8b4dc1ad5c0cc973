#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/ado/connection_string.h"

namespace quillan::ado {

/// Whether `provider` is one of the OLE DB providers for SQL Server, of whichever version.
bool IsSqlServerProvider(std::string_view provider);

/// The best of the `installed` ODBC drivers for SQL Server: the newest of the server's maker, else
/// FreeTDS; nothing when there is none.
std::optional<std::string> SqlServerDriver(std::span<const std::string> installed);

/// The server that an OLE DB connection string names, as it is written there; empty when it names
/// none.
std::string SqlServerName(const ConnectionString& settings);

/// The ODBC connection string by which `driver`, a result of `SqlServerDriver`, opens what the OLE
/// DB string `settings` describes. Encrypted only where the string asks for it; FreeTDS then checks
/// the server's certificate only where its own configuration names an authority, and a string that
/// demands the check is refused. Keys that have no counterpart are dropped. Throws `Error`, whose
/// text shows no password, when the string names no server, a port that is no number, a protocol
/// other than TCP, or a value that the driver cannot be given.
std::string TranslateToOdbc(const ConnectionString& settings, std::string_view driver);

}  // namespace quillan::ado
