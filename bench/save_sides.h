#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bench/comparison.h"
#include "bench/plain_database.h"
#include "bench/suite.h"

namespace quillan::bench {

/// A list whose changed rows are saved.
struct SaveWork {
  std::shared_ptr<const SuiteFolder> original;  ///< Each run works on a copy of its own.
  MakeList list;
  std::function<void(CheckableList&)> change;  ///< What the user changes in the loaded list.
  std::function<std::string(PlainDatabase&)> describe;  ///< The database after the save.
};

/// What a save of `work` runs, as the engine understands it.
std::vector<std::string> StatementsOf(const SaveWork& work);

/// The program's save of `work`, and the bare driver running `statements` on the same database.
Comparison CompareSaves(const SaveWork& work, std::vector<std::string> statements);

/// The rows of a query in one sum.
template <std::size_t columns>
std::string DescribeRows(PlainDatabase& database, std::string_view query) {
  Checksum sum;
  const auto rows = database.Read<columns>(query);
  for (const auto& row : rows) {
    for (const std::string& text : row) sum.Add(text);
  }
  return std::to_string(rows.size()) + " rows, sum " + sum.Text();
}

}  // namespace quillan::bench
