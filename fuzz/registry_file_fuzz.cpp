// Registry files: an edit changes its own value and nothing else.

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "fuzz/fuzz.h"
#include "platform/text/ascii.h"
#include "platform/text/encoding.h"
#include "registry/registry_file.h"

namespace quillan {
namespace {

using Values = std::map<std::pair<std::string, std::string>, std::optional<std::string>>;

std::set<std::string> Between(const std::string& text, char open, char close) {
  std::set<std::string> found;
  for (std::size_t at = text.find(open); at != std::string::npos; at = text.find(open, at + 1)) {
    const std::size_t end = text.find(close, at + 1);
    if (end == std::string::npos) break;
    found.insert(text.substr(at + 1, end - at - 1));
    if (found.size() == 12) break;
  }
  return found;
}

// What may be a value of the file, by every key and name that occurs in it.
Values ReadValues(const RegistryFile& file, const std::set<std::string>& keys,
                  const std::set<std::string>& names) {
  Values values;
  for (const std::string& key : keys) {
    for (const std::string& name : names) {
      values[{text::ToUpperAscii(key), text::ToUpperAscii(name)}] = file.StringValue(key, name);
    }
  }
  return values;
}

void ExpectValues(const Values& values, const Values& expected, const char* what) {
  for (const auto& [place, value] : expected) {
    const auto found = values.find(place);
    if (found != values.end() && found->second == value) continue;
    std::fprintf(stderr, "[%s] \"%s\" is \"%s\" instead of \"%s\"\n", place.first.c_str(),
                 place.second.c_str(),
                 found == values.end() ? "" : found->second.value_or("absent").c_str(),
                 value.value_or("absent").c_str());
    fuzz::Expect(false, what);
  }
}

void Check(const std::string& key, const std::string& name, const std::string& value,
           const std::string& text) {
  RegistryFile file(text);
  fuzz::ExpectSame(file.text(), text, "reading changes nothing");
  std::set<std::string> keys = Between(text, '[', ']');
  std::set<std::string> names = Between(text, '"', '"');
  keys.insert(key);
  names.insert({name, ""});
  Values expected = ReadValues(file, keys, names);
  const auto old = file.StringValue(key, name);
  if (!file.SetStringValue(key, name, value)) {
    fuzz::ExpectSame(file.text(), text, "a refused edit changes nothing");
    return;
  }
  expected[{text::ToUpperAscii(key), text::ToUpperAscii(name)}] = value;
  ExpectValues(ReadValues(file, keys, names), expected, "the edit is the only change");
  const RegistryFile again(file.text());
  ExpectValues(ReadValues(again, keys, names), expected, "the file reads the same again");

  // The edit is one replacement, within a line unless the old value had several.
  const std::string& after = file.text();
  const auto from = std::mismatch(text.begin(), text.end(), after.begin(), after.end());
  const auto back = std::mismatch(text.rbegin(), std::make_reverse_iterator(from.first),
                                  after.rbegin(), std::make_reverse_iterator(from.second));
  const std::string removed(from.first, back.first.base());
  const bool several_lines = old.value_or("").find('\n') != std::string::npos ||
                             text.find("\\\n") != std::string::npos ||
                             text.find("\\\r") != std::string::npos;
  fuzz::Expect(several_lines || removed.find('\n') == std::string::npos, "no other line is lost");
  RegistryFile twice(after);
  fuzz::Expect(twice.SetStringValue(key, name, value), "an edit can be repeated");
  fuzz::ExpectSame(twice.text(), after, "the same edit again changes nothing");
}

}  // namespace
}  // namespace quillan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillan::fuzz::Input input(data, size);
  const std::string key(input.Piece());
  const std::string name(input.Piece());
  const std::string value(input.Piece());
  const std::string text(input.Rest());
  if (quillan::text::IsUtf8(text)) quillan::Check(key, name, value, text);
  return 0;
}
