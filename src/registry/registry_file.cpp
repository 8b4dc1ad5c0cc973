#include "registry/registry_file.h"

#include <utility>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan {
namespace {

constexpr std::string_view kHeader = "REGEDIT4";
constexpr std::string_view kBlanks = " \t\r";

size_t SkipBlanks(std::string_view text, size_t at) {
  while (at < text.size() && kBlanks.find(text[at]) != std::string_view::npos) ++at;
  return at;
}

// The position of the line feed that ends the line at `at`, or the end of the text.
size_t EndOfLine(std::string_view text, size_t at) {
  const size_t end = text.find('\n', at);
  return end == std::string_view::npos ? text.size() : end;
}

size_t NextLine(std::string_view text, size_t line_end) {
  return line_end < text.size() ? line_end + 1 : line_end;
}

// The line [begin, end) without the carriage return at its end.
std::string_view Line(std::string_view text, size_t begin, size_t end) {
  if (end > begin && text[end - 1] == '\r') --end;
  return text.substr(begin, end - begin);
}

std::string_view WithoutBlanksAtEnd(std::string_view line) {
  return line.substr(0, line.find_last_not_of(kBlanks) + 1);
}

struct Quoted {
  std::string text;
  size_t end;  // After the closing quote.
};

// The quoted string whose opening quote is at `at`. A backslash that escapes neither a quote nor a
// backslash is kept, so that paths typed by hand are read as they were meant.
std::optional<Quoted> ReadQuoted(std::string_view text, size_t at) {
  std::string content;
  for (size_t i = at + 1; i < text.size(); ++i) {
    if (text[i] == '"') return Quoted{std::move(content), i + 1};
    const bool escape =
        text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '"' || text[i + 1] == '\\');
    if (escape) ++i;
    content += text[i];
  }
  return std::nullopt;
}

std::string Quote(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

bool IsBlankOrComment(std::string_view line) {
  const size_t start = SkipBlanks(line, 0);
  return start == line.size() || line[start] == ';';
}

// The text between the brackets of a heading, which only a comment may follow.
std::optional<std::string_view> ReadHeading(std::string_view line) {
  for (size_t close = line.find(']'); close != std::string_view::npos;
       close = line.find(']', close + 1)) {
    if (IsBlankOrComment(line.substr(close + 1))) return line.substr(1, close - 1);
  }
  return std::nullopt;
}

// Whether `line` can continue the digits of a hex value.
bool ContinuesHex(std::string_view line) {
  return SkipBlanks(line, 0) < line.size() &&
         line.find_first_not_of("0123456789abcdefABCDEF, \t\\") == std::string_view::npos;
}

bool IsKeyOrBelow(std::string_view key, std::string_view ancestor) {
  return text::StartsWithIgnoringCase(key, ancestor) &&
         (key.size() == ancestor.size() || key[ancestor.size()] == '\\');
}

bool FitsOnALine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

// Whether the heading of `key` would be read back as that key, not as a deletion or as another.
bool CanBeHeading(std::string_view key) {
  return !key.empty() && key.front() != '-' && FitsOnALine(key) && text::IsUtf8(key) &&
         ReadHeading("[" + std::string(key) + "]") == key;
}

}  // namespace

RegistryFile::RegistryFile(std::string text) : text_(std::move(text)) { Parse(); }

void RegistryFile::Parse() {
  sections_.clear();
  for (size_t line = 0; line < text_.size();) {
    const size_t line_end = EndOfLine(text_, line);
    const std::string_view content = Line(text_, line, line_end);
    const size_t start = SkipBlanks(content, 0);
    size_t next = NextLine(text_, line_end);
    if (start < content.size()) {
      if (content[start] == '[') {
        ParseHeading(content.substr(start), line + content.size());
      } else if (!sections_.empty()) {
        sections_.back().end = line + content.size();
        if (content[start] == '"' || content[start] == '@') {
          next = NextLine(text_, ParseValue(line + start, sections_.back()));
        }
      }
    }
    line = next;
  }
}

void RegistryFile::ParseHeading(std::string_view line, size_t line_end) {
  Section section;
  section.end = line_end;
  // A heading that is cut short opens a section without a key, so that what follows it does not
  // belong to the section before it.
  if (const auto heading = ReadHeading(line)) {
    section.deletes = heading->starts_with('-');
    section.key = heading->substr(section.deletes ? 1 : 0);
  }
  sections_.push_back(std::move(section));
}

// Reads the value that begins at `at`; returns the end of its last line. Anything that is not a
// value takes one line, so that a quote that is never closed does not hide the sections after it.
size_t RegistryFile::ParseValue(size_t at, Section& section) const {
  size_t line_end = EndOfLine(text_, at);
  Value value;
  if (text_[at] == '"') {
    const std::string_view text = text_;
    const auto name = ReadQuoted(text.substr(0, line_end), at);
    if (!name) return line_end;
    value.name = name->text;
    at = name->end;
  } else {
    ++at;
  }
  at = SkipBlanks(text_, at);
  if (at >= line_end || text_[at] != '=') return line_end;
  value.begin = SkipBlanks(text_, at + 1);
  if (value.begin >= line_end) return line_end;

  if (text_[value.begin] == '"') {
    const auto quoted = ReadQuoted(text_, value.begin);
    if (!quoted) return line_end;
    const size_t last_end = EndOfLine(text_, quoted->end);
    const std::string_view rest = Line(text_, quoted->end, last_end);
    // After a string of several lines not even a comment may follow: the quote that closed it could
    // be the one that opens the next value.
    if (last_end == line_end ? !IsBlankOrComment(rest) : SkipBlanks(rest, 0) < rest.size())
      return line_end;
    value.kind = ValueKind::kString;
    value.text = quoted->text;
    value.end = quoted->end;
    section.end = quoted->end + rest.size();
    section.values.push_back(std::move(value));
    return last_end;
  }

  const std::string_view line = WithoutBlanksAtEnd(Line(text_, value.begin, line_end));
  value.end = value.begin + line.size();
  const bool deletion = line.starts_with('-') && IsBlankOrComment(line.substr(1));
  value.kind = deletion ? ValueKind::kDeletion : ValueKind::kOther;
  while (text_[value.end - 1] == '\\' && line_end < text_.size()) {
    const size_t next_end = EndOfLine(text_, line_end + 1);
    const std::string_view next = WithoutBlanksAtEnd(Line(text_, line_end + 1, next_end));
    if (!ContinuesHex(next)) break;
    value.end = line_end + 1 + next.size();
    line_end = next_end;
  }
  section.end = value.begin + Line(text_, value.begin, line_end).size();
  section.values.push_back(std::move(value));
  return line_end;
}

// The index of the first section after the last deletion of `key`.
size_t RegistryFile::FirstLiveSection(std::string_view key) const {
  size_t first = sections_.size();
  while (first > 0 && !(sections_[first - 1].deletes && !sections_[first - 1].key.empty() &&
                        IsKeyOrBelow(key, sections_[first - 1].key))) {
    --first;
  }
  return first;
}

bool RegistryFile::HasKey(std::string_view key) const {
  for (size_t i = FirstLiveSection(key); i < sections_.size(); ++i) {
    const Section& section = sections_[i];
    if (section.deletes || !IsKeyOrBelow(section.key, key)) continue;
    if (FirstLiveSection(section.key) <= i) return true;
  }
  return false;
}

const RegistryFile::Value* RegistryFile::LastValue(std::string_view key,
                                                   std::string_view name) const {
  const Value* last = nullptr;
  for (size_t i = FirstLiveSection(key); i < sections_.size(); ++i) {
    if (sections_[i].deletes || !text::EqualsIgnoringCase(sections_[i].key, key)) continue;
    for (const Value& value : sections_[i].values) {
      if (text::EqualsIgnoringCase(value.name, name)) last = &value;
    }
  }
  return last;
}

std::optional<std::string> RegistryFile::StringValue(std::string_view key,
                                                     std::string_view name) const {
  const Value* value = LastValue(key, name);
  if (value == nullptr || value->kind != ValueKind::kString) return std::nullopt;
  return value->text;
}

std::string_view RegistryFile::LineEnd() const {
  const size_t first = text_.find('\n');
  return first != std::string::npos && first > 0 && text_[first - 1] == '\r' ? "\r\n" : "\n";
}

void RegistryFile::AppendSection(std::string_view key) {
  const std::string line_end(LineEnd());
  if (text_.find_first_not_of(" \t\r\n") == std::string::npos) {
    text_.append(kHeader).append(line_end);
  } else if (!text_.ends_with('\n')) {
    text_ += line_end;
  }
  text_.append(line_end).append("[").append(key).append("]").append(line_end);
  Parse();
}

bool RegistryFile::AddKey(std::string_view key) {
  if (!CanBeHeading(key)) return false;
  if (!HasKey(key)) AppendSection(key);
  return true;
}

bool RegistryFile::SetStringValue(std::string_view key, std::string_view name,
                                  std::string_view value) {
  if (!CanBeHeading(key) || !FitsOnALine(name) || !text::IsUtf8(name)) return false;
  if (value.find('\0') != std::string_view::npos || !text::IsUtf8(value)) return false;
  const std::string before = text_;
  Put(key, name, value);
  if (StringValue(key, name) == value) return true;
  text_ = before;
  Parse();
  return false;
}

void RegistryFile::Put(std::string_view key, std::string_view name, std::string_view value) {
  const Value* existing = LastValue(key, name);
  if (existing != nullptr && existing->kind != ValueKind::kDeletion) {
    text_.replace(existing->begin, existing->end - existing->begin, Quote(value));
    Parse();
    return;
  }
  const auto last_section = [&] {
    Section* last = nullptr;
    for (size_t i = FirstLiveSection(key); i < sections_.size(); ++i) {
      if (!sections_[i].deletes && text::EqualsIgnoringCase(sections_[i].key, key)) {
        last = &sections_[i];
      }
    }
    return last;
  };
  if (last_section() == nullptr) AppendSection(key);
  const Section* section = last_section();
  if (section == nullptr) return;
  const std::string line =
      std::string(LineEnd()) + (name.empty() ? "@" : Quote(name)) + "=" + Quote(value);
  // Where the file ended in mid-line, the new line ends it.
  const bool at_end = section->end == text_.size();
  text_.insert(section->end, at_end ? line + std::string(LineEnd()) : line);
  Parse();
}

}  // namespace quillan
