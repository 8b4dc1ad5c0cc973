#include "platform/text/delimited_text.h"

#include <algorithm>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan::text {
namespace {

constexpr std::string_view kSeparators = "\t;,";

// The byte-order mark that is missing from a text in UTF-16; empty when the text is not UTF-16.
// Digits and separators have a zero in one of their two bytes; a stray NUL in other text is rare.
std::string_view MissingUtf16Mark(std::string_view bytes) {
  const std::string_view sample = bytes.substr(0, 4096);
  size_t at_even = 0;
  size_t at_odd = 0;
  for (size_t i = 0; i < sample.size(); ++i) {
    if (sample[i] == '\0') ++(i % 2 == 0 ? at_even : at_odd);
  }
  const bool both = at_even > 0 && at_odd > 0;
  if (both || (at_even + at_odd) * 8 < sample.size() || sample.empty()) return {};
  return at_odd > 0 ? "\xFF\xFE" : "\xFE\xFF";
}

// Whether a field that holds `c` needs quotes, whatever the separator is.
bool MustBeQuoted(char c) {
  switch (c) {
    case '"':
    case '\r':
    case '\n':
    case '\t':
    case ';':
    case ',':
    case '\0':
      return true;
    default:
      return false;
  }
}

bool EndsLine(char c) { return c == '\n' || c == '\r'; }

char DetectSeparator(std::string_view text) {
  bool quoted = false;
  for (const char c : text.substr(0, DelimitedReader::kLongestRecord)) {
    if (c == '"') quoted = !quoted;
    if (quoted) continue;
    if (EndsLine(c)) break;
    if (kSeparators.find(c) != std::string_view::npos) return c;
  }
  return ',';
}

}  // namespace

std::string DecodeTable(std::string_view bytes) {
  const std::string_view mark = MissingUtf16Mark(bytes);
  if (mark.empty() || bytes.starts_with(mark)) return DecodeText(bytes);
  return DecodeText(std::string(mark).append(bytes));
}

DelimitedReader::DelimitedReader(std::string_view text) : text_(text), separator_(',') {
  while (SkipLineEnd()) continue;
  separator_ = DetectSeparator(text_.substr(at_));
}

bool DelimitedReader::Next(DelimitedRecord& record) {
  if (error_) return false;
  while (SkipLineEnd()) continue;
  if (at_ == text_.size()) return false;
  record_start_ = at_;
  record.line = line_;
  for (size_t count = 1;; ++count) {
    // Fields are reused from record to record, and so is their memory.
    if (record.fields.size() < count) record.fields.emplace_back();
    std::string& field = record.fields[count - 1];
    field.clear();
    if (!ReadField(field)) return false;
    if (at_ == text_.size() || text_[at_] != separator_) {
      record.fields.resize(count);
      break;
    }
    ++at_;
  }
  SkipLineEnd();
  return true;
}

bool DelimitedReader::ReadField(std::string& field) {
  if (at_ < text_.size() && text_[at_] == '"') return ReadQuotedField(field);
  const size_t start = at_;
  for (; !AtFieldEnd(); ++at_) {
    if (text_[at_] == '"' && separator_ != '\t') {
      return Fail(line_,
                  "A quote stands inside a field. Enclose the whole field in quotes and "
                  "double the quotes inside it.");
    }
  }
  if (at_ - record_start_ > kLongestRecord) return Fail(line_, "The line is too long.");
  field = text_.substr(start, at_ - start);
  return true;
}

bool DelimitedReader::ReadQuotedField(std::string& field) {
  const int first_line = line_;
  while (true) {
    const size_t start = ++at_;
    at_ = std::min(text_.find('"', at_), text_.size());
    // A long field is more likely one whose closing quote is missing.
    if (at_ == text_.size() || at_ - record_start_ > kLongestRecord) {
      return Fail(first_line, "A quoted field is not closed, or too long.");
    }
    const std::string_view piece = text_.substr(start, at_ - start);
    field += piece;
    for (size_t i = 0; i < piece.size(); ++i) {
      if (piece[i] == '\n' || (piece[i] == '\r' && piece.substr(i, 2) != "\r\n")) ++line_;
    }
    ++at_;
    if (at_ == text_.size() || text_[at_] != '"') break;
    field += '"';
  }
  if (AtFieldEnd()) return true;
  return Fail(line_, "Text follows the closing quote of a field.");
}

bool DelimitedReader::SkipLineEnd() {
  const std::string_view rest = text_.substr(at_, 2);
  if (rest.empty() || !EndsLine(rest[0])) return false;
  at_ += rest == "\r\n" ? 2 : 1;
  ++line_;
  return true;
}

bool DelimitedReader::AtFieldEnd() const {
  return at_ == text_.size() || text_[at_] == separator_ || EndsLine(text_[at_]);
}

bool DelimitedReader::Fail(int line, std::string message) {
  error_ = {line, std::move(message)};
  return false;
}

void AppendDelimitedRecord(std::span<const std::string_view> fields, char separator,
                           std::string& text) {
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) text += separator;
    const std::string_view field = fields[i];
    // A lone empty field would be a blank line.
    const bool plain = std::none_of(field.begin(), field.end(), MustBeQuoted) &&
                       TrimSpaces(field).size() == field.size() &&
                       (!field.empty() || fields.size() > 1);
    if (plain) {
      text += field;
    } else {
      text.append("\"").append(ReplaceAll(field, "\"", "\"\"")).append("\"");
    }
  }
  text += "\r\n";
}

}  // namespace quillan::text
