#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/ado/connection_string.h"

namespace quillan::ado {

/// Whether `provider` is one of the OLE DB providers for SQL Server, of whichever version.
bool IsSqlServerProvider(std::string_view provider);

/// The best of the `installed` ODBC drivers for SQL Server: the newest of Microsoft's, else
/// FreeTDS; nothing when there is none.
std::optional<std::string> SqlServerDriver(std::span<const std::string> installed);

/// The server that an OLE DB connection string names, as it is written there; empty when it names
/// none.
std::string SqlServerName(const ConnectionString& settings);

/// Where a SQL Server is reached.
struct SqlServerAddress {
  std::string host;
  std::string instance;  // Empty: the default instance.
  int port = 0;          // 0: not given.
};

/// That of the server that `settings` names. Throws `Error` when it names none, a port that is not
/// a number, or a protocol other than TCP.
SqlServerAddress AddressOf(const ConnectionString& settings);

bool UsesIntegratedSecurity(const ConnectionString& settings);
bool AsksForEncryption(const ConnectionString& settings);
bool NamesUser(const ConnectionString& settings);

/// The ODBC connection string by which `driver`, a result of `SqlServerDriver`, opens what the OLE
/// DB string `settings` describes, at `server`, whose instance does not count beside its port.
/// `application` is the name that the server shows unless the string has one. Encrypted only where
/// the string asks for it; FreeTDS then checks the server's certificate only where its own
/// configuration names an authority, and a string that demands the check is refused. Keys that have
/// no counterpart are dropped, but one that decides where or as whom the session is opened is
/// refused. Throws `Error`, whose text shows no password.
std::string TranslateToOdbc(const ConnectionString& settings, std::string_view driver,
                            const SqlServerAddress& server, const std::string& application);

}  // namespace quillan::ado
