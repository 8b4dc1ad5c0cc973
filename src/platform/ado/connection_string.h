#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace quillan::ado {

/// The "key=value;…" text that opens a session, taken apart. A value may be quoted with ' or " (the
/// quote doubled inside) or, for ODBC, with braces; "==" in a key stands for "=". Keys compare
/// without regard to case; of a key that occurs twice the last one counts.
class ConnectionString {
 public:
  /// Throws `ado::Error`, whose text names the piece without showing its value, when a piece has no
  /// "=" or a quoted value does not end.
  explicit ConnectionString(std::string_view text);

  /// The value of the last entry whose key is one of `keys`; empty when there is none.
  std::string Value(std::initializer_list<std::string_view> keys) const;
  /// Whether there is an entry whose key is one of `keys`.
  bool Has(std::initializer_list<std::string_view> keys) const;

 private:
  struct Entry {
    std::string key;
    std::string value;
  };
  const Entry* Find(std::initializer_list<std::string_view> keys) const;

  std::vector<Entry> entries_;
};

}  // namespace quillan::ado
