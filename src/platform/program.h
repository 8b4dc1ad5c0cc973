#pragma once

#include <filesystem>
#include <string_view>

namespace quillan {

/// The program's name as users see it: in window titles and message boxes, and as the product of
/// its own registry options.
inline constexpr std::string_view kDisplayName = "Quillan";

/// The folder that holds the running executable.
std::filesystem::path ProgramFolder();

}  // namespace quillan
