#include "platform/text/ascii.h"

#include <algorithm>

namespace quillan::text {

std::string ToUpperAscii(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = ToUpperAscii(c);
  return upper;
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualsIgnoringCase(text.substr(0, prefix.size()), prefix);
}

std::string_view TrimSpaces(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::string_view TrimAtNull(std::string_view text) { return text.substr(0, text.find('\0')); }

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string result;
  ReplaceAll(text, from, to, result);
  return result;
}

void ReplaceAll(std::string_view text, std::string_view from, std::string_view to,
                std::string& result) {
  result.clear();
  result.reserve(text.size() + to.size());
  size_t start = 0;
  for (size_t found = text.find(from); found != std::string_view::npos;
       found = text.find(from, start)) {
    result.append(text, start, found - start).append(to);
    start = found + from.size();
  }
  result.append(text, start);
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

}  // namespace quillan::text
