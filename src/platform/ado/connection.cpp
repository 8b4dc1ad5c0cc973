#include "platform/ado/connection.h"

#include <algorithm>

namespace quillan::ado {

void Connection::Open() {
  if (driver_) throw Error(kObjectOpen, "", "The connection is already open.");
  ConnectOptions options = options_;
  options.connection_timeout = std::max(options.connection_timeout, 0);
  options.command_timeout = std::max(options.command_timeout, 0);
  driver_ = open_driver_(options);
}

void Connection::Close(std::string_view reason) {
  driver_.reset();
  closed_because_ = reason;
}

void Connection::Execute(std::string_view statement) {
  Run([&](Driver& driver) { driver.Execute(statement); });
}

std::vector<Outcome> Connection::ExecuteBatch(std::span<const std::string> statements,
                                              BatchMode mode) {
  std::vector<Outcome> outcomes;
  Run([&](Driver& driver) { outcomes = driver.ExecuteBatch(statements, mode); });
  if (!outcomes.empty() && outcomes.back()) NoteLoss(*outcomes.back());
  return outcomes;
}

std::unique_ptr<Recordset> Connection::OpenRecordset(std::string_view query, LockType lock_type) {
  std::unique_ptr<Recordset> rows;
  Run([&](Driver& driver) {
    RowStore store = driver.Query(query);
    rows = lock_type == LockType::kReadOnly
               ? std::make_unique<Recordset>(std::move(store))
               : std::make_unique<Recordset>(std::move(store), driver_, query);
  });
  return rows;
}

template <typename Call>
void Connection::Run(Call call) {
  try {
    call(driver());
  } catch (const Error& error) {
    NoteLoss(error);
    throw;
  }
}

void Connection::NoteLoss(const Error& error) {
  if (error.IsConnectionLost()) Close(error.what());
}

void Connection::QueryInBlocks(std::string_view query,
                               const std::function<bool(Recordset& rows)>& on_block) {
  Run([&](Driver& driver) {
    driver.QueryInBlocks(query, [&](RowStore rows) {
      Recordset recordset(std::move(rows));
      return on_block(recordset);
    });
  });
}

Driver& Connection::driver() const {
  if (driver_) return *driver_;
  throw Error(kObjectClosed, "",
              closed_because_.empty() ? "The database connection is closed." : closed_because_);
}

}  // namespace quillan::ado
