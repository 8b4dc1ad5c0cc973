#pragma once

#include <cstddef>

namespace quillan {

/// What IsValidIPAddress and IPAddressToSortValue say of a text, in one number: the sort value,
/// with a negative sign (also on a zero) when the text is no valid address. One pure function, so
/// that the compiler takes a text that is validated and then converted apart only once.
[[gnu::pure]] double ReadDottedQuad(const char* text, size_t size);

}  // namespace quillan
