#pragma once

#include <cmath>
#include <string>
#include <string_view>

#include "ip/dotted_quad.h"

namespace quillan {

// An IPSortValue is the address a.b.c.d as the whole number a*1000^3 + b*1000^2 + c*1000 + d, the
// form in which the database keeps and compares addresses: 10.0.0.1 is 10000000001.

/// Whether `text` is a dotted quad of whole numbers 0..255. A part is digits, leading zeros
/// allowed, with an optional sign and with blanks (spaces, tabs) around it.
inline bool IsValidIPAddress(std::string_view text) {
  return !std::signbit(ReadDottedQuad(text.data(), text.size()));
}

/// The IPSortValue of the address in `text`, whose characters other than digits and dots are left
/// out first. Of more than four parts the first four count; an empty part is skipped, not counted
/// as 0; no part is checked against 255. 0 when there are fewer than four parts.
inline double IPAddressToSortValue(std::string_view text) {
  return std::abs(ReadDottedQuad(text.data(), text.size()));
}

/// The dotted quad of an IPSortValue, without leading zeros. A value that is no whole number loses
/// its fraction; for values below 0 or from 1000^4 on the first part is what the division leaves
/// over, with its sign; a value that is not finite gives "0.0.0.0".
std::string SortValueToIPAddress(double value);

/// The ordinary 32-bit number of an IPSortValue's address, a*256^3 + b*256^2 + c*256 + d. Any
/// fraction is dropped; values that stand for no address give a number of no meaning.
double SortValueToAddressNumber(double value);

}  // namespace quillan
