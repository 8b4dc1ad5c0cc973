#include "platform/text/case_fold.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan::text {
namespace {

constexpr size_t kInsideCharacter = std::string::npos;

// The C library's Unicode tables, which are part of it and need no installed locale.
locale_t UnicodeLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

char32_t Lower(char32_t c) {
  const locale_t locale = UnicodeLocale();
  if (locale == nullptr) return c;
  // By way of the capital, so that letters with two small forms (σ and ς) meet.
  return static_cast<char32_t>(towlower_l(towupper_l(static_cast<wint_t>(c), locale), locale));
}

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Appends the folded form of the character at `text[at]`; returns its length in `text`.
size_t AppendFolded(std::string_view text, size_t at, std::string& folded) {
  const DecodedUtf8 character = DecodeUtf8(text, at);
  if (character.valid) {
    AppendUtf8(Lower(character.code_point), folded);
  } else {
    folded.append(text, at, character.length);
  }
  return character.length;
}

// A folded text whose bytes remember the character of the original that they come from: a character
// and its folded form may differ in length.
struct TracedText {
  explicit TracedText(std::string_view text) {
    for (size_t at = 0; at < text.size();) {
      origins.push_back(at);
      at += AppendFolded(text, at, folded);
      origins.resize(folded.size(), kInsideCharacter);
    }
    origins.push_back(text.size());
  }

  // The position of the next occurrence that begins and ends between characters.
  size_t Find(std::string_view needle, size_t from) const {
    size_t found = folded.find(needle, from);
    while (found != std::string::npos && (origins[found] == kInsideCharacter ||
                                          origins[found + needle.size()] == kInsideCharacter)) {
      found = folded.find(needle, found + 1);
    }
    return found;
  }

  std::string folded;
  std::vector<size_t> origins;
};

size_t FindInAscii(std::string_view text, std::string_view folded, size_t from) {
  const auto found =
      std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), folded.begin(),
                  folded.end(), [](char a, char b) { return LowerAscii(a) == b; });
  return found != text.end() ? static_cast<size_t>(found - text.begin()) : std::string::npos;
}

// `text` with everything that `find` finds replaced by `to`. `origin` is the position in `text`
// that belongs to a position of `find`.
template <typename Find, typename Origin>
std::optional<std::string> ReplaceFound(std::string_view text, size_t length, std::string_view to,
                                        Find find, Origin origin) {
  size_t found = find(0);
  if (found == std::string::npos) return std::nullopt;
  std::string result;
  result.reserve(text.size() + to.size());
  size_t copied = 0;
  for (; found != std::string::npos; found = find(found + length)) {
    result.append(text.substr(copied, origin(found) - copied)).append(to);
    copied = origin(found + length);
  }
  return result.append(text.substr(copied));
}

}  // namespace

std::string FoldCase(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  if (IsAscii(text)) {
    for (const char c : text) folded += LowerAscii(c);
    return folded;
  }
  for (size_t at = 0; at < text.size();) at += AppendFolded(text, at, folded);
  return folded;
}

bool ContainsIgnoringCase(std::string_view text, std::string_view folded) {
  return IsAscii(text) ? FindInAscii(text, folded, 0) != std::string::npos
                       : TracedText(text).Find(folded, 0) != std::string::npos;
}

std::optional<std::string> ReplaceIgnoringCase(std::string_view text, std::string_view folded,
                                               std::string_view to) {
  if (IsAscii(text)) {
    return ReplaceFound(
        text, folded.size(), to, [&](size_t from) { return FindInAscii(text, folded, from); },
        [](size_t at) { return at; });
  }
  const TracedText traced(text);
  return ReplaceFound(
      text, folded.size(), to, [&](size_t from) { return traced.Find(folded, from); },
      [&](size_t at) { return traced.origins[at]; });
}

}  // namespace quillan::text
