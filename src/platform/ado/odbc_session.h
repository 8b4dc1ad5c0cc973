#pragma once

#include <string>
#include <vector>

#include "platform/ado/odbc_error.h"
#include "platform/ado/odbc_handle.h"

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
  OdbcText text() const { return sqlite_ ? OdbcText::kUtf8 : OdbcText::kUtf16; }
  /// Whether the engine at the other end is SQLite.
  bool is_sqlite() const { return sqlite_; }

  /// A text that SQLGetInfo gives (SQL_DBMS_NAME, …); empty when it gives none.
  std::string Info(SQLUSMALLINT type) const;
  /// Sets a connection attribute (SQL_ATTR_…). Throws `Error`.
  void SetAttribute(SQLINTEGER attribute, SQLULEN value);
  /// Ends the transaction with SQL_COMMIT or SQL_ROLLBACK. Throws `Error`.
  void EndTransaction(SQLSMALLINT completion);

 private:
  void Connect(const std::string& connection_string, const std::string& driver);

  OdbcHandle environment_;
  OdbcHandle connection_;
  bool sqlite_ = false;
};

/// The names of the ODBC drivers that are installed on this machine.
std::vector<std::string> InstalledOdbcDrivers();

}  // namespace quillan::ado
