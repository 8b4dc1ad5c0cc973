#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillan::text {

/// `text` with every character in its simple lower-case form, so that strings which differ only in
/// case compare equal; beyond ASCII too, whatever the process locale. Bytes that are not valid
/// UTF-8 stay as they are.
std::string FoldCase(std::string_view text);

/// Whether `text` contains a string without regard to case. `folded` is that string as `FoldCase`
/// returns it, not empty.
bool ContainsIgnoringCase(std::string_view text, std::string_view folded);

/// `text` with every occurrence of a string replaced by `to`, without regard to case; nothing if it
/// does not occur. `folded` is that string as `FoldCase` returns it, not empty.
std::optional<std::string> ReplaceIgnoringCase(std::string_view text, std::string_view folded,
                                               std::string_view to);

}  // namespace quillan::text
