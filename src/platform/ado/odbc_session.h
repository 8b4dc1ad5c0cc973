#pragma once

#include <string>
#include <vector>

#include "platform/ado/odbc_api.h"

namespace quillan::ado {

/// One connection over ODBC, outside any pool; closed at the end of its life, with what was not
/// committed rolled back.
class OdbcSession {
 public:
  /// Opens what `connection_string` (UTF-8) describes; `driver` is the ODBC driver that it names,
  /// empty where a data source does. Waits at most `login_timeout` seconds (0: without limit).
  /// Throws `Error`.
  OdbcSession(const std::string& connection_string, const std::string& driver, int login_timeout);
  ~OdbcSession();
  OdbcSession(const OdbcSession&) = delete;
  OdbcSession& operator=(const OdbcSession&) = delete;

  const OdbcHandle& connection() const { return connection_; }
  const OdbcApi& api() const { return *api_; }

  /// Unless `result` is a success, with or without messages, or says that there is no data, throws
  /// what the driver reported about its last call on `handle`: the server's own text and number,
  /// without the names of the components that passed them on; `kTimeoutExpired` for an expired
  /// time-out; state 08S01 for a lost connection.
  void Check(SQLRETURN result, const OdbcHandle& handle) const;

  /// A string that SQLGetInfo gives (SQL_DBMS_NAME, …); empty when it gives none.
  std::string Info(SQLUSMALLINT type) const { return api_->GetInfo(connection_.get(), type); }
  /// Sets a connection attribute (SQL_ATTR_…). Throws `Error`.
  void SetAttribute(SQLINTEGER attribute, SQLULEN value);
  /// Ends the transaction with SQL_COMMIT or SQL_ROLLBACK. Throws `Error`.
  void EndTransaction(SQLSMALLINT completion);

 private:
  void Connect(const std::string& connection_string, const std::string& driver);
  bool IsDead() const;

  OdbcHandle environment_;
  OdbcHandle connection_;
  const OdbcApi* api_;
  bool connected_ = false;
};

/// The names of the ODBC drivers that are installed on this machine.
std::vector<std::string> InstalledOdbcDrivers();

}  // namespace quillan::ado
