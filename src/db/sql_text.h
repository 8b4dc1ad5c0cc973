#pragma once

#include <string>
#include <string_view>

namespace quillan {

/// `text` as a literal for a statement: between single quotes, quotes inside doubled, with the
/// national prefix N where it holds characters outside ASCII, so that it arrives whole.
std::string SqlText(std::string_view text);

}  // namespace quillan
