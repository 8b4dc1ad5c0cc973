#pragma once

#include <string>
#include <string_view>

namespace quillan::text {

/// `c` as a capital letter where it is one of a..z; every other byte as it is, in any locale.
constexpr char ToUpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// `text` with a..z as capitals; other characters, those outside ASCII too, unchanged.
std::string ToUpperAscii(std::string_view text);

/// Whether the texts are equal when a..z and A..Z count as the same letters.
bool EqualsIgnoringCase(std::string_view left, std::string_view right);

/// Whether `text` begins with `prefix`, without regard to the case of ASCII letters.
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);

/// `text` without the spaces (only the space character) at both ends.
std::string_view TrimSpaces(std::string_view text);

/// `text` up to its first NUL character, or all of it when it has none.
std::string_view TrimAtNull(std::string_view text);

/// `text` with every occurrence of `from` (not empty) replaced by `to`.
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

/// Whether every byte of `text` is an ASCII character.
bool IsAscii(std::string_view text);

}  // namespace quillan::text
