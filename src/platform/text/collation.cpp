#include "platform/text/collation.h"

#include <langinfo.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstring>

#include "platform/text/case_fold.h"

namespace quillan::text {
namespace {

bool LocaleHasAlphabet() {
  const std::string_view name = std::setlocale(LC_COLLATE, nullptr);
  const bool by_code = name == "C" || name == "POSIX" || name.substr(0, 2) == "C.";
  return !by_code && std::string_view(nl_langinfo(CODESET)) == "UTF-8";
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::string CollationKey(std::string_view text) {
  if (!LocaleHasAlphabet()) return FoldCase(text);
  const std::string terminated(text);
  std::array<char, 1024> buffer;
  const size_t length = std::strxfrm(buffer.data(), terminated.c_str(), buffer.size());
  if (length < buffer.size()) return {buffer.data(), length};
  std::string key(length, '\0');
  // A string has room for the zero that is written behind the key.
  std::strxfrm(key.data(), terminated.c_str(), length + 1);
  return key;
}

std::string DigitsByValue(std::string_view text) {
  std::string changed;
  while (!text.empty()) {
    const auto digits = std::find_if(text.begin(), text.end(), IsDigit);
    changed.append(text.begin(), digits);
    const auto end = std::find_if_not(digits, text.end(), IsDigit);
    const auto significant = std::find_if(digits, end, [](char c) { return c != '0'; });
    // The count of digits before them puts the longer number behind the shorter one; a 9 in the
    // count says that more of it follows.
    auto count = end - significant;
    for (; count >= 9; count -= 9) changed += '9';
    if (digits != end) changed += static_cast<char>('0' + count);
    changed.append(significant, end);
    text.remove_prefix(static_cast<size_t>(end - text.begin()));
  }
  return changed;
}

}  // namespace quillan::text
