#pragma once

#include <string>
#include <vector>

#include "platform/ado/error.h"

namespace quillan {

/// A statement or query that failed.
struct StatementFailure {
  size_t index;  ///< Its position, from 0, among the statements of the report.
  std::string statement;
  ado::Error error;
};

/// The outcome of the statements and queries of one save or load, in the order in which they ran.
struct StatementReport {
  size_t statements = 0;  ///< How many ran, the failed ones included.
  std::vector<StatementFailure> failures;
};

}  // namespace quillan
