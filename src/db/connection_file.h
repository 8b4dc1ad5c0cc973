#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillan {

/// What the suite's connection file says; time-outs in seconds.
struct ConnectionValues {
  std::string connection_string;
  std::int32_t connection_timeout = 120;
  std::int32_t command_timeout = 120;
};

/// A time-out in the connection file does not fit a signed 32-bit integer.
class ConnectionFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Takes the entries of a connection file's `text` over into `values`; what the text does not name
/// stays. Lines end in CR or CR LF; one that is empty or begins with # ' \ or / is a comment; in
/// any other the key is what precedes the first "=", without regard to case, and the first line of
/// a key counts. Keys: CONNECTION (text), TIMEOUT and COMMANDTIMEOUT (the number at the start of
/// the value). Throws ConnectionFileError at a number beyond 32 bits; the lines before it have
/// counted.
void ReadConnectionFile(std::string_view text, ConnectionValues& values);

/// Whether a line of `text` ends in LF alone, so that it is joined with the next one.
bool HasJoinedLines(std::string_view text);

}  // namespace quillan
