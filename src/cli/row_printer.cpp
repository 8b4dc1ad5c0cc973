#include "cli/row_printer.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "platform/text/delimited_text.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

// Characters of UTF-8, each taken as one place wide.
size_t Width(std::string_view text) {
  return static_cast<size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::vector<std::string_view> Headers(const std::vector<OutputColumn>& columns) {
  std::vector<std::string_view> headers;
  headers.reserve(columns.size());
  for (const OutputColumn& column : columns) headers.emplace_back(column.header);
  return headers;
}

nlohmann::ordered_json JsonValue(std::string_view value, ValueKind kind) {
  if (kind == ValueKind::kBoolean) return value == "yes";
  if (kind == ValueKind::kText) return value;
  if (value.empty()) return nullptr;
  return static_cast<std::int64_t>(text::ReadLeadingNumber(value));
}

}  // namespace

bool PrintData(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
         std::fflush(stdout) == 0;
}

RowPrinter::RowPrinter(OutputFormat format, std::vector<OutputColumn> columns)
    : format_(format), columns_(std::move(columns)) {
  if (format_ == OutputFormat::kCsv) {
    text::AppendDelimitedRecord(Headers(columns_), ',', buffer_);
  } else if (format_ == OutputFormat::kJson) {
    buffer_ = "[";
  }
}

void RowPrinter::Row(std::span<const std::string_view> values) {
  switch (format_) {
    case OutputFormat::kTable:
      if (!widths_.empty()) {
        TableRow(values);
        break;
      }
      measured_.emplace_back(values.begin(), values.end());
      if (measured_.size() == kMeasuredRows) WriteMeasuredRows();
      break;
    case OutputFormat::kCsv:
      text::AppendDelimitedRecord(values, ',', buffer_);
      break;
    case OutputFormat::kJson:
      JsonRow(values);
      break;
  }
  if (buffer_.size() >= kBufferBytes) Flush();
}

void RowPrinter::TableRow(std::span<const std::string_view> values) {
  for (size_t i = 0; i < values.size(); ++i) {
    if (i > 0) buffer_ += "  ";
    // A line end inside a value would break the table.
    for (const char c : values[i]) buffer_ += c == '\n' || c == '\r' || c == '\t' ? ' ' : c;
    const size_t width = Width(values[i]);
    if (i + 1 < values.size() && width < widths_[i]) buffer_.append(widths_[i] - width, ' ');
  }
  buffer_ += '\n';
}

void RowPrinter::JsonRow(std::span<const std::string_view> values) {
  nlohmann::ordered_json object;
  for (size_t i = 0; i < columns_.size(); ++i) {
    object[columns_[i].json_name] = JsonValue(values[i], columns_[i].kind);
  }
  buffer_ += first_ ? "\n" : ",\n";
  buffer_ += object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  first_ = false;
}

void RowPrinter::WriteMeasuredRows() {
  const auto headers = Headers(columns_);
  for (const std::string_view header : headers) widths_.push_back(Width(header));
  for (const auto& row : measured_) {
    for (size_t i = 0; i < row.size(); ++i) widths_[i] = std::max(widths_[i], Width(row[i]));
  }
  TableRow(headers);
  for (const auto& row : measured_) {
    TableRow(std::vector<std::string_view>(row.begin(), row.end()));
  }
  measured_.clear();
}

bool RowPrinter::Finish() {
  if (format_ == OutputFormat::kTable && widths_.empty()) WriteMeasuredRows();
  if (format_ == OutputFormat::kJson) buffer_ += first_ ? "]\n" : "\n]\n";
  Flush();
  return written_ && std::fflush(stdout) == 0;
}

void RowPrinter::Flush() {
  written_ = std::fwrite(buffer_.data(), 1, buffer_.size(), stdout) == buffer_.size() && written_;
  buffer_.clear();
}

}  // namespace quillan
