#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillan::text {

/// The bytes of a file or a clipboard as UTF-8. Like `DecodeText`, but UTF-16 is also recognised
/// without a byte-order mark, by the zero bytes of its ASCII characters.
std::string DecodeTable(std::string_view bytes);

/// One record of a text of separated fields.
struct DelimitedRecord {
  int line = 0;  ///< Where it begins, from 1.
  std::vector<std::string> fields;
};

/// Where a text is not well-formed, and why.
struct DelimitedError {
  int line = 0;  ///< From 1; of an unclosed quote, where its field begins.
  std::string message;
};

/// Reads the records of a text of separated fields (RFC 4180) one by one. The separator is the
/// first tab, semicolon or comma outside quotes in the first record. Lines end in CR LF, LF or CR;
/// blank lines are skipped. Quotes inside an unquoted field are text where tabs separate, as
/// spreadsheets copy them, and errors elsewhere.
class DelimitedReader {
 public:
  /// A longer record is an error: no table of this program has such rows.
  static constexpr size_t kLongestRecord = 65'536;  // Bytes.

  /// `text` is UTF-8 and outlives the reader.
  explicit DelimitedReader(std::string_view text);

  /// Reads the next record; false at the end of the text and from the first error on.
  bool Next(DelimitedRecord& record);
  const std::optional<DelimitedError>& error() const { return error_; }
  char separator() const { return separator_; }

 private:
  bool ReadField(std::string& field);
  bool ReadQuotedField(std::string& field);
  bool SkipLineEnd();
  bool AtFieldEnd() const;
  bool Fail(int line, std::string message);

  std::string_view text_;
  size_t at_ = 0;
  size_t record_start_ = 0;
  int line_ = 1;
  char separator_;
  std::optional<DelimitedError> error_;
};

/// Appends one record, ended by CR LF, to `text`. Fields that would be read as something else are
/// quoted.
void AppendDelimitedRecord(std::span<const std::string_view> fields, char separator,
                           std::string& text);

}  // namespace quillan::text
