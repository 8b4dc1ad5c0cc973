#include "platform/ado/odbc_handle.h"

#include "platform/ado/error.h"
#include "platform/ado/odbc_error.h"

namespace quillan::ado {

OdbcHandle::OdbcHandle(SQLSMALLINT type, const OdbcHandle* parent) : type_(type) {
  const SQLHANDLE owner = parent != nullptr ? parent->get() : nullptr;
  if (SQL_SUCCEEDED(SQLAllocHandle(type, owner, &handle_))) return;
  handle_ = nullptr;
  if (parent != nullptr) ThrowOdbcError(*parent, OdbcText::kUtf16);
  throw Error(0, "", "ODBC has no memory for a session.");
}

OdbcHandle::~OdbcHandle() {
  if (handle_ != nullptr) SQLFreeHandle(type_, handle_);
}

}  // namespace quillan::ado
