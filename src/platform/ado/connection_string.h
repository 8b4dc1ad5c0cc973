#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace quillan::ado {

/// The "key=value;…" text that opens a session, taken apart. Keys compare without regard to case;
/// of a key that occurs twice the last one counts. An OLE DB string may quote a value with ' or "
/// (the quote doubled inside), and "==" in a key stands for "=". A string without "Provider" that
/// has "Driver" or "DSN" is ODBC's: there only braces quote, and a piece without "=" is ignored.
class ConnectionString {
 public:
  /// Throws `ado::Error`, whose text names the piece without showing its value, when a piece of an
  /// OLE DB string has no "=" or a quoted value does not end.
  explicit ConnectionString(std::string_view text);

  /// The value of the last entry whose key is one of `keys`; empty when there is none.
  std::string Value(std::initializer_list<std::string_view> keys) const;
  /// The key of that entry as it is written.
  std::string Key(std::initializer_list<std::string_view> keys) const;
  /// Whether there is an entry whose key is one of `keys`.
  bool Has(std::initializer_list<std::string_view> keys) const;

 private:
  struct Entry {
    std::string key;
    std::string value;
  };
  void ParseOleDb(std::string_view text);
  void ParseOdbc(std::string_view text);
  const Entry* Find(std::initializer_list<std::string_view> keys) const;

  std::vector<Entry> entries_;
};

/// `connection_string`, in either form, with each password, quoted or not, shown as asterisks.
std::string MaskPasswords(std::string_view connection_string);

}  // namespace quillan::ado
