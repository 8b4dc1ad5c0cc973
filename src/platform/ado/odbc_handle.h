#pragma once

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

}  // namespace quillan::ado
