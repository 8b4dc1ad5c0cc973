#pragma once

#include <string>

namespace quillan::ado {

/// The TCP port of the SQL Server instance `instance` on `host`, as the host's browser service
/// tells it over UDP port 1434. Waits at most `timeout` seconds, the search for the host's address
/// included; without a limit (0), as long as an
/// answer may reasonably take. Throws `Error`, whose text says what to do instead. Source of the
/// protocol: [MC-SQLR], requests of one instance.
int FindInstancePort(const std::string& host, const std::string& instance, int timeout);

}  // namespace quillan::ado
