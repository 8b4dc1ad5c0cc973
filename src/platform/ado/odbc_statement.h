#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/ado/odbc_session.h"
#include "platform/ado/value.h"

namespace quillan::ado {

/// A statement on an ODBC connection, which may be run again and again; it steps through one result
/// after the other. Every member may throw `Error`.
class OdbcStatement {
 public:
  /// Each run may take `timeout` seconds (0: without limit), where the driver can keep time.
  OdbcStatement(const OdbcSession& session, int timeout);

  const OdbcSession& session() const { return session_; }
  SQLHANDLE handle() const { return handle_.get(); }
  /// `OdbcSession::Check` for a call on this statement.
  void Check(SQLRETURN result) const { session_.Check(result, handle_); }

  /// Drops what is left of the last run's results and runs `statement`; stands on its first result.
  void Execute(std::string_view statement);
  /// The same with one of `parameters` in the place of every "?".
  void Execute(std::string_view statement, std::span<const Value> parameters);
  /// Asks for the primary key of a table; the catalog and the schema may be empty.
  void PrimaryKeys(std::string_view catalog, std::string_view schema, std::string_view table);

  /// The number of columns of the current result; 0 where it has no rows.
  SQLSMALLINT ColumnCount() const;
  /// Column `number`, from 1.
  OdbcColumn Column(SQLSMALLINT number) const;
  /// The rows that the current result affected; -1 where the driver does not say.
  SQLLEN RowCount() const;
  /// Steps to the next result; false when there is none.
  bool NextResult();
  /// Drops what is left of the results, so that another statement can run on the connection.
  void Close() { SQLFreeStmt(handle(), SQL_CLOSE); }

 private:
  const OdbcSession& session_;
  OdbcHandle handle_;
};

}  // namespace quillan::ado
