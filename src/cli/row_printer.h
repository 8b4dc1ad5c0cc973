#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/options.h"

namespace quillan {

/// How a value is written in JSON.
enum class ValueKind { kText, kNumber, kBoolean };

/// A column of the output.
struct OutputColumn {
  std::string header;     ///< In tables and CSV.
  std::string json_name;  ///< In JSON.
  ValueKind kind = ValueKind::kText;
};

/// Writes rows to standard output as they come: an aligned table, CSV as an import reads it, or a
/// JSON array with one object a line. Booleans are given as "yes" and "no".
class RowPrinter {
 public:
  RowPrinter(OutputFormat format, std::vector<OutputColumn> columns);
  void Row(std::span<const std::string_view> values);
  /// Writes what is left; false if standard output cannot be written.
  bool Finish();

 private:
  // The rows from which the widths of a table's columns are taken; later rows may be wider.
  static constexpr size_t kMeasuredRows = 1000;
  static constexpr size_t kBufferBytes = size_t{1} << 16;

  void TableRow(std::span<const std::string_view> values);
  void JsonRow(std::span<const std::string_view> values);
  void WriteMeasuredRows();
  void Flush();

  OutputFormat format_;
  std::vector<OutputColumn> columns_;
  std::vector<size_t> widths_;  // In characters; empty until they are known.
  std::vector<std::vector<std::string>> measured_;
  std::string buffer_;
  bool first_ = true;
  bool written_ = true;
};

/// Writes `text` to standard output; false if it cannot.
bool PrintData(std::string_view text);

}  // namespace quillan
