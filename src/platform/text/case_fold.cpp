#include "platform/text/case_fold.h"

#include <locale.h>
#include <wctype.h>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan::text {
namespace {

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

}  // namespace

std::string FoldCase(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  if (IsAscii(text)) {
    for (const char c : text) folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    return folded;
  }
  const std::u16string units = Utf8ToUtf16(text);
  for (size_t i = 0; i < units.size(); ++i) {
    char32_t c = units[i];
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < units.size()) {
      c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00U);
    }
    AppendUtf8(Lower(c), folded);
  }
  return folded;
}

}  // namespace quillan::text
