#pragma once

#include <string>
#include <string_view>

namespace quillan {

/// `text` as a literal for a statement: between single quotes, quotes inside doubled, with the
/// national prefix N where it holds characters outside ASCII, so that it arrives whole.
std::string SqlText(std::string_view text);

/// The whole number that `text` holds or begins with, as digits for a statement: nothing else of
/// `text` gets there. 64-bit integers keep their value.
std::string SqlKey(std::string_view text);

}  // namespace quillan
