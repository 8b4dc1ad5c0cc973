#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <sql.h>
#include <sqlext.h>

namespace quillan::ado {

/// An ODBC handle, freed at the end of its life. What belongs to it must go first.
class OdbcHandle {
 public:
  /// Allocates a handle of `type` (SQL_HANDLE_…) that belongs to `parent`. Throws `Error`.
  explicit OdbcHandle(SQLSMALLINT type, const OdbcHandle* parent = nullptr);
  ~OdbcHandle();
  OdbcHandle(OdbcHandle&& other) noexcept
      : type_(other.type_), handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&&) = delete;

  SQLSMALLINT type() const { return type_; }
  SQLHANDLE get() const { return handle_; }

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = nullptr;
};

/// A number in the place where ODBC's attribute calls take a pointer.
inline SQLPOINTER AttributeValue(SQLULEN value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr)
}

/// A column of a result as the driver describes it.
struct OdbcColumn {
  std::string name;
  SQLSMALLINT type = 0;
  SQLULEN size = 0;       // Characters or digits; 0: without limit.
  SQLSMALLINT scale = 0;  // Digits after the decimal point.
};

/// One record of what a driver reports about a call.
struct OdbcDiagnostic {
  std::string state;
  SQLINTEGER number = 0;
  std::string text;
};

/// What differs between the engines that are reached over ODBC, in one place; strings are UTF-8.
/// SQL Server's drivers have Unicode functions, which take UTF-16. The driver for SQLite has none:
/// it is given UTF-8 by the functions for bytes, because ODBC's own conversion depends on the
/// locale of the process.
class OdbcApi {
 public:
  /// The functions for the driver or database product called `name`.
  static const OdbcApi& For(std::string_view name);
  virtual ~OdbcApi() = default;

  /// Whether the engine is SQLite, which speaks another dialect of SQL and whose values need not
  /// have the declared type or length of their column.
  virtual bool IsSqlite() const = 0;
  /// How strings are fetched and bound: SQL_C_WCHAR or SQL_C_CHAR.
  virtual SQLSMALLINT TextType() const = 0;
  /// The bytes in which the driver takes `text` as a parameter of that type.
  virtual std::string TextParameter(std::string_view text) const = 0;

  // ODBC's functions of these names.
  virtual SQLRETURN DriverConnect(SQLHDBC connection, std::string_view text) const = 0;
  virtual SQLRETURN ExecDirect(SQLHSTMT statement, std::string_view text) const = 0;
  /// An empty catalog or schema is not sent.
  virtual SQLRETURN PrimaryKeys(SQLHSTMT statement, std::string_view catalog,
                                std::string_view schema, std::string_view table) const = 0;
  /// Column `number` counts from 1.
  virtual SQLRETURN DescribeCol(SQLHSTMT statement, SQLUSMALLINT number,
                                OdbcColumn& column) const = 0;
  /// An information type that is a string; empty when the driver gives none.
  virtual std::string GetInfo(SQLHDBC connection, SQLUSMALLINT type) const = 0;
  /// Record `number` counts from 1; nothing after the last one.
  virtual std::optional<OdbcDiagnostic> GetDiagRec(const OdbcHandle& handle,
                                                   SQLSMALLINT number) const = 0;
};

}  // namespace quillan::ado
