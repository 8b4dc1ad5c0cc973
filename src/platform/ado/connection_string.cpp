#include "platform/ado/connection_string.h"

#include <algorithm>

#include "platform/ado/error.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

[[noreturn]] void Refuse(const std::string& problem) {
  throw Error(0, "", "The connection string is malformed: " + problem);
}

// Reads up to the "=" that ends the key; `at` moves past it.
std::string TakeKey(std::string_view text, size_t& at) {
  std::string key;
  for (; at < text.size() && text[at] != ';'; ++at) {
    if (text[at] == '=') {
      if (at + 1 == text.size() || text[at + 1] != '=') {
        ++at;
        return std::string(text::TrimSpaces(key));
      }
      ++at;
    }
    key += text[at];
  }
  // The piece may be the rest of a password that holds a ";", so it is not repeated here.
  Refuse("a piece has no \"=\". Quote a value that contains a semicolon.");
}

std::string TakeQuoted(std::string_view text, size_t& at, char close, const std::string& key) {
  std::string value;
  for (++at; at < text.size(); ++at) {
    if (text[at] == close) {
      if (at + 1 == text.size() || text[at + 1] != close) {
        at = std::min(text.find(';', at), text.size());
        return value;
      }
      ++at;
    }
    value += text[at];
  }
  Refuse("the quoted value of \"" + key + "\" does not end.");
}

std::string TakeValue(std::string_view text, size_t& at, const std::string& key) {
  while (at < text.size() && text[at] == ' ') ++at;
  if (at < text.size()) {
    const char open = text[at];
    if (open == '\'' || open == '"') return TakeQuoted(text, at, open, key);
  }
  const size_t end = std::min(text.find(';', at), text.size());
  const std::string_view value = text::TrimSpaces(text.substr(at, end - at));
  at = end;
  return std::string(value);
}

// Where the first piece of `text` ends: at a ";" outside a quoted value, whichever of the two forms
// the string has; a value whose quote does not end reaches to the end.
size_t EndOfPiece(std::string_view text) {
  const size_t equals = text.find('=');
  size_t at = text.find(';');
  if (equals != std::string_view::npos && equals < at) {
    const size_t value = text.find_first_not_of(' ', equals + 1);
    const char open = value < text.size() ? text[value] : ';';
    if (open == '\'' || open == '"' || open == '{') {
      const char close = open == '{' ? '}' : open;
      at = text.find(close, value + 1);
      // A doubled quote is part of the value.
      while (at != std::string_view::npos && at + 1 < text.size() && text[at + 1] == close) {
        at = text.find(close, at + 2);
      }
      at = text.find(';', at);
    }
  }
  return std::min(at, text.size());
}

}  // namespace

ConnectionString::ConnectionString(std::string_view text) {
  ParseOdbc(text);
  if (!Has({"Provider"}) && Has({"Driver", "DSN"})) return;
  entries_.clear();
  ParseOleDb(text);
}

void ConnectionString::ParseOdbc(std::string_view text) {
  while (!text.empty()) {
    const size_t equals = std::min(text.find_first_of("=;"), text.size());
    const std::string key(text::TrimSpaces(text.substr(0, equals)));
    const bool has_value = equals < text.size() && text[equals] == '=';
    text.remove_prefix(std::min(equals + 1, text.size()));
    if (!has_value) continue;
    if (text.starts_with('{')) {
      const size_t close = std::min(text.find('}'), text.size());
      entries_.push_back({key, std::string(text.substr(1, close - 1))});
      text.remove_prefix(close);
    } else {
      const size_t end = text.find(';');
      entries_.push_back({key, std::string(text::TrimSpaces(text.substr(0, end)))});
    }
    text.remove_prefix(std::min(text.find(';'), text.size()));
  }
}

void ConnectionString::ParseOleDb(std::string_view text) {
  for (size_t at = 0; at < text.size(); ++at) {
    at = text.find_first_not_of(" ;", at);
    if (at == std::string_view::npos) break;
    std::string key = TakeKey(text, at);
    std::string value = TakeValue(text, at, key);
    entries_.push_back({std::move(key), std::move(value)});
  }
}

std::string MaskPasswords(std::string_view connection_string) {
  std::string masked;
  while (!connection_string.empty()) {
    const size_t end = EndOfPiece(connection_string);
    const std::string_view piece = connection_string.substr(0, end);
    const std::string_view key = text::TrimSpaces(piece.substr(0, piece.find('=')));
    const bool secret =
        text::EqualsIgnoringCase(key, "Password") || text::EqualsIgnoringCase(key, "PWD");
    if (secret && piece.find('=') != std::string_view::npos) {
      masked.append(piece, 0, piece.find_first_not_of(' ')).append("Password='*********'");
    } else {
      masked += piece;
    }
    connection_string.remove_prefix(end);
    if (connection_string.empty()) break;
    masked += ';';
    connection_string.remove_prefix(1);
  }
  return masked;
}

const ConnectionString::Entry* ConnectionString::Find(
    std::initializer_list<std::string_view> keys) const {
  const auto found = std::find_if(entries_.rbegin(), entries_.rend(), [&](const Entry& entry) {
    return std::any_of(keys.begin(), keys.end(), [&](std::string_view key) {
      return text::EqualsIgnoringCase(entry.key, key);
    });
  });
  return found == entries_.rend() ? nullptr : &*found;
}

std::string ConnectionString::Value(std::initializer_list<std::string_view> keys) const {
  const Entry* entry = Find(keys);
  return entry != nullptr ? entry->value : std::string();
}

std::string ConnectionString::Key(std::initializer_list<std::string_view> keys) const {
  const Entry* entry = Find(keys);
  return entry != nullptr ? entry->key : std::string();
}

bool ConnectionString::Has(std::initializer_list<std::string_view> keys) const {
  return Find(keys) != nullptr;
}

}  // namespace quillan::ado
