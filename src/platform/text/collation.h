#pragma once

#include <string>
#include <string_view>

namespace quillan::text {

/// A key whose bytes compare as `text` (UTF-8) sorts in the locale that the program runs with (see
/// setlocale). A locale without an alphabetical order, such as "C", or with another character set
/// gives the order of the characters without regard to case.
std::string CollationKey(std::string_view text);

/// `text` with each run of decimal digits changed so that runs sort by value, whatever their
/// lengths. To be made into a key, not to be shown.
std::string DigitsByValue(std::string_view text);

}  // namespace quillan::text
