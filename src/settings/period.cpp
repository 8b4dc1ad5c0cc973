#include "settings/period.h"

#include "platform/text/ascii.h"

namespace quillan {

bool Period::IsAlias(std::string_view text) const {
  const std::string upper = text::ToUpperAscii(text);
  return upper == name_ || IsListedAlias(aliases_, upper);
}

bool IsListedAlias(std::string_view aliases, std::string_view name) {
  while (!aliases.empty()) {
    const size_t comma = aliases.find(',');
    if (aliases.substr(0, comma) == name) return true;
    if (comma == std::string_view::npos) break;
    aliases.remove_prefix(comma + 1);
  }
  return false;
}

}  // namespace quillan
