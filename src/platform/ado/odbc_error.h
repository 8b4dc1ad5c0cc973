#pragma once

#include "platform/ado/odbc_handle.h"

namespace quillan::ado {

/// How texts travel to and from a driver. A driver without Unicode functions is given UTF-8 by the
/// functions for bytes, since ODBC itself would convert by way of the process's locale.
enum class OdbcText { kUtf16, kUtf8 };

/// Throws what the driver reported about its last call on `handle`: the server's own text and
/// number, without the names of the components that passed them on; `kTimeoutExpired` for an
/// expired time-out.
[[noreturn]] void ThrowOdbcError(const OdbcHandle& handle, OdbcText text);

/// Throws as `ThrowOdbcError` does unless `result` is a success, with or without messages, or says
/// that there is no data.
inline void CheckOdbc(SQLRETURN result, const OdbcHandle& handle, OdbcText text) {
  if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) ThrowOdbcError(handle, text);
}

}  // namespace quillan::ado
