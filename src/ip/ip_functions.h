#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillan {

// An IPSortValue is the address a.b.c.d as the integer a*1000^3 + b*1000^2 + c*1000 + d, the form
// in which the database keeps and compares addresses: 10.0.0.1 is 10000000001.

/// The IPSortValue of the text of `size` characters, or -1 if the text is not a valid address.
/// Pure, so that the compiler reads a text only once where a caller validates and then converts it.
[[gnu::pure]] double ReadIPAddress(const char* text, std::size_t size) noexcept;

/// Whether `text` is a dotted quad of integers 0..255. A part is digits, leading zeros allowed,
/// with an optional sign and with blanks (spaces, tabs) around it.
inline bool IsValidIPAddress(std::string_view text) {
  return ReadIPAddress(text.data(), text.size()) >= 0;
}

/// The IPSortValue of a text that is not a valid address: characters other than digits and dots are
/// left out. Of more than four parts the first four count; an empty part is skipped, not counted as
/// 0; no part is checked against 255. 0 if there are fewer than four parts.
double IPSortValueOfAnyText(const char* text, std::size_t size);

/// The IPSortValue of the address in `text`, or what `IPSortValueOfAnyText` makes of it.
inline double IPAddressToSortValue(std::string_view text) {
  const double value = ReadIPAddress(text.data(), text.size());
  return value >= 0 ? value : IPSortValueOfAnyText(text.data(), text.size());
}

/// The dotted quad of an IPSortValue, without leading zeros. Any fraction is dropped. For values
/// below 0 or from 1000^4 on the first part is the remainder of the division, with its sign; from
/// 10^18 on and for values that are not finite the text is "0.0.0.0".
std::string SortValueToIPAddress(double value);

/// The ordinary 32-bit number of an IPSortValue's address, a*256^3 + b*256^2 + c*256 + d. Any
/// fraction is dropped; a value that is not an address gives a meaningless number.
double SortValueToAddressNumber(double value);

/// The IPSortValue of an address that is given as an ordinary 32-bit number.
double AddressNumberToSortValue(std::uint32_t number);

}  // namespace quillan
