// Connection files: what a line means does not depend on the lines that cannot change it.

#include <optional>

#include "db/connection_file.h"
#include "fuzz/fuzz.h"
#include "platform/text/ascii.h"

namespace quillan {
namespace {

// Nothing when the text is refused.
std::optional<ConnectionValues> Read(const std::string& text) {
  ConnectionValues values;
  try {
    ReadConnectionFile(text, values);
  } catch (const ConnectionFileError&) {
    return std::nullopt;
  }
  return values;
}

bool Same(const std::optional<ConnectionValues>& a, const std::optional<ConnectionValues>& b) {
  if (!a || !b) return a.has_value() == b.has_value();
  return a->connection_string == b->connection_string &&
         a->connection_timeout == b->connection_timeout && a->command_timeout == b->command_timeout;
}

void Check(const std::string& text) {
  const auto values = Read(text);
  if (values) {
    const std::string& connection = values->connection_string;
    fuzz::Expect(connection.find_first_of("\r\n") == std::string::npos, "a value is one line");
    fuzz::ExpectSame(connection, text::TrimSpaces(connection), "a value has no blanks around it");
  }
  fuzz::Expect(Same(values, Read(text::ReplaceAll(text, "\r", "\r\n"))), "CR LF is like CR");
  fuzz::Expect(Same(values, Read("# note\r\n'=\r/x=1\r\\CONNECTION=c\rOTHER=1\r\n\r\n" + text)),
               "comments, other keys and empty lines do not count");
  fuzz::Expect(Same(values, Read(text + "\r\n" + text)), "the first line of a key counts");
  const auto prefixed = Read("Connection = Provider=x \rTIMEOUT=7\r\ncommandtimeout=8\r" + text);
  fuzz::Expect(prefixed && prefixed->connection_string == "Provider=x" &&
                   prefixed->connection_timeout == 7 && prefixed->command_timeout == 8,
               "later lines change nothing");
}

}  // namespace
}  // namespace quillan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillan::Check(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
