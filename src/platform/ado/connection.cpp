#include "platform/ado/connection.h"

#include <algorithm>

#include "platform/ado/error.h"

namespace quillan::ado {

void Connection::Open() {
  if (driver_) throw Error(kObjectOpen, "", "The connection is already open.");
  ConnectOptions options = options_;
  options.connection_timeout = std::max(options.connection_timeout, 0);
  options.command_timeout = std::max(options.command_timeout, 0);
  driver_ = open_driver_(options);
}

std::unique_ptr<Recordset> Connection::OpenRecordset(std::string_view query, LockType lock_type) {
  RowStore rows = driver().Query(query);
  if (lock_type == LockType::kReadOnly) return std::make_unique<Recordset>(std::move(rows));
  return std::make_unique<Recordset>(std::move(rows), driver_, query);
}

void Connection::QueryInBlocks(std::string_view query,
                               const std::function<bool(Recordset& rows)>& on_block) {
  driver().QueryInBlocks(query, [&](RowStore rows) {
    Recordset recordset(std::move(rows));
    return on_block(recordset);
  });
}

Driver& Connection::driver() const {
  if (!driver_) throw Error(kObjectClosed, "", "The database connection is closed.");
  return *driver_;
}

}  // namespace quillan::ado
