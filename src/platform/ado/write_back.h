#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/driver.h"

namespace quillan::ado {

/// One row on its way back into its table, column by column: what it held when it was read, and
/// what was set since.
struct Change {
  const std::vector<std::string>& columns;
  const std::vector<Value>& original;
  const std::vector<std::optional<OwnedValue>>& edits;
};

/// The name after the first FROM of `query` outside literals, as it is written there. Throws
/// `Error` when there is none.
std::string SourceTable(std::string_view query);

/// Inserts a row of the set columns into `table`. Throws `Error`.
void InsertRow(Driver& driver, const std::string& table, const Change& change);

/// Writes the set columns into the one row of `table` that the primary key, or without one all
/// original values, finds. Nothing set: does nothing. Throws `Error`.
void UpdateRow(Driver& driver, const std::string& table, const Change& change);

}  // namespace quillan::ado
