#pragma once

#include <string>
#include <string_view>

namespace quillan::text {

/// `text` with every character in its simple lower-case form, so that texts which differ only in
/// case compare equal; beyond ASCII too, whatever the process locale.
std::string FoldCase(std::string_view text);

}  // namespace quillan::text
