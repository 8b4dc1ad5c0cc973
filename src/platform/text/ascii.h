#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace quillan::text {

/// `c` in upper case if it is one of a..z; every other byte unchanged, in any locale.
constexpr char ToUpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// `text` in upper case as far as a..z go; all other characters unchanged.
std::string ToUpperAscii(std::string_view text);

/// Whether the strings are equal without regard to the case of ASCII letters.
inline bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char a, char b) { return ToUpperAscii(a) == ToUpperAscii(b); });
}

/// Whether `text` begins with `prefix`, without regard to the case of ASCII letters.
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);

/// `text` without the spaces (only the space character) at both ends.
std::string_view TrimSpaces(std::string_view text);

/// `text` up to its first NUL character, or all of it if it has none.
std::string_view TrimAtNull(std::string_view text);

/// `text` with every occurrence of `from` (not empty) replaced by `to`.
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);
/// The same in `result`, whose memory is used again.
void ReplaceAll(std::string_view text, std::string_view from, std::string_view to,
                std::string& result);

/// Whether every byte of `text` is an ASCII character.
bool IsAscii(std::string_view text);

}  // namespace quillan::text
