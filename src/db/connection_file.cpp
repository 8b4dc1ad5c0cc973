#include "db/connection_file.h"

#include <set>

#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

std::int32_t ReadSeconds(std::string_view key, std::string_view value) {
  const auto seconds = text::ReadLeadingWhole(value);
  if (!seconds) {
    throw ConnectionFileError("the value of " + std::string(key) + ", " + std::string(value) +
                              ", is beyond the 32-bit range.");
  }
  return *seconds;
}

void ReadLine(std::string_view line, ConnectionValues& values, std::set<std::string>& seen) {
  if (line.empty() || std::string_view("#'\\/").find(line.front()) != std::string_view::npos) {
    return;
  }
  const size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  const std::string key = text::ToUpperAscii(text::TrimSpaces(line.substr(0, equals)));
  const std::string_view value = text::TrimSpaces(line.substr(equals + 1));
  if (!seen.insert(key).second) return;
  if (key == "CONNECTION") {
    values.connection_string = value;
  } else if (key == "TIMEOUT") {
    values.connection_timeout = ReadSeconds(key, value);
  } else if (key == "COMMANDTIMEOUT") {
    values.command_timeout = ReadSeconds(key, value);
  }
}

}  // namespace

void ReadConnectionFile(std::string_view text, ConnectionValues& values) {
  std::set<std::string> seen;
  while (!text.empty()) {
    const size_t end = text.find('\r');
    const std::string line = text::ReplaceAll(text.substr(0, end), "\n", "");
    ReadLine(text::TrimSpaces(line), values, seen);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
}

bool HasJoinedLines(std::string_view text) {
  for (size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
    if (at == 0 || text[at - 1] != '\r') return true;
  }
  return false;
}

}  // namespace quillan
