#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace quillan {

/// A range of addresses, both ends included.
struct AddressRange {
  std::string start;  ///< Dotted quads without leading zeros.
  std::string end;
  double start_value = 0;  ///< Their IPSortValues.
  double end_value = 0;
  std::string note;  ///< What the writer may not have meant; empty in most cases.
};

/// The range that `text` names: "10.0.0.0/8", "10.0.0.0-10.0.3.255" or a single address, blanks
/// allowed around every part; or why it names none, as a sentence. A prefix whose address is not
/// the first one of its network gives the whole network, with a note that says so.
std::variant<AddressRange, std::string> ParseAddressRange(std::string_view text);

/// Whether `text` is written as a range, with a prefix length or with two addresses, and not as a
/// single address; the range need not be a valid one.
bool IsWrittenAsRange(std::string_view text);

/// The range as `ParseAddressRange` reads it: "10.0.0.0-10.0.3.255".
std::string FormatAddressRange(std::string_view start, std::string_view end);

}  // namespace quillan
