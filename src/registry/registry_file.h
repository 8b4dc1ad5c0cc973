#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillan {

/// One text in the interchange format of registry editors: an optional header line ("REGEDIT4" or
/// "Windows Registry Editor Version 5.00"), key sections `[HKEY_LOCAL_MACHINE\Software]`, and in
/// each of them values `"Name"="text"`, or `@="text"` for the key's own value, whose name is empty.
///
/// Only string values are understood. Everything else (other kinds of values, deletions, comments,
/// a value that was cut short) is preserved by every edit. Keys and value names compare
/// without regard to the case of ASCII letters. Deletions, `[-KEY]` and `"Name"=-`, undo what
/// precedes them; if a value occurs twice, the last one counts.
class RegistryFile {
 public:
  /// Takes any UTF-8 text; whatever is not understood is kept and ignored.
  explicit RegistryFile(std::string text);

  /// Whether `key`, or a key below it, has a section.
  bool HasKey(std::string_view key) const;
  /// The text of a string value; nothing when it is absent, deleted or of another kind.
  std::optional<std::string> StringValue(std::string_view key, std::string_view name) const;

  /// Adds an empty section for `key` unless `HasKey`. False when the key cannot be represented:
  /// when it is empty, begins with "-", contains a line break or NUL or is not valid UTF-8.
  bool AddKey(std::string_view key);
  /// Sets the value: in place if it exists, whatever its kind was; else at the end of the key's
  /// section, which is added at the end of the text if it is missing. False, with the text as it
  /// was, when key, name or value cannot be represented or what precedes the value (a string
  /// without its closing quote) would hide it.
  bool SetStringValue(std::string_view key, std::string_view name, std::string_view value);

  /// The whole text as it now stands.
  const std::string& text() const { return text_; }

 private:
  enum class ValueKind { kString, kOther, kDeletion };
  struct Value {
    std::string name;
    ValueKind kind = ValueKind::kOther;
    std::string text;  // Of a string.
    size_t begin = 0;  // Of what follows "=", in the whole text.
    size_t end = 0;
  };
  struct Section {
    std::string key;
    bool deletes = false;  // [-KEY]
    size_t end = 0;        // After the section's last line that is not empty, without its line end.
    std::vector<Value> values;
  };

  void Parse();
  size_t ParseValue(size_t line, Section& section) const;
  void ParseHeading(std::string_view line, size_t line_end);
  size_t FirstLiveSection(std::string_view key) const;
  const Value* LastValue(std::string_view key, std::string_view name) const;
  std::string_view LineEnd() const;
  void AppendSection(std::string_view key);
  void Put(std::string_view key, std::string_view name, std::string_view value);

  std::string text_;
  std::vector<Section> sections_;
};

}  // namespace quillan
