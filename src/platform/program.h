#pragma once

#include <array>
#include <filesystem>
#include <string_view>

namespace quillan {

/// The program's name as users see it: in window titles and message boxes, and as the product of
/// its own registry options.
inline constexpr std::string_view kDisplayName = "Quillan";

/// The names of the connection file, in the order in which they are looked for.
inline constexpr std::array<std::string_view, 2> kConnectionFileNames = {"TBKelvora.DB",
                                                                         "QuillanGUI.DB"};

/// The version of this build, such as "1.0.0".
std::string_view Version();

/// The folder with the connection file, the registry, the help file and the wizard: $QUILLAN_HOME
/// if it is set; else the folder of the running executable if it or its parent holds a connection
/// file or a registry.reg; else /etc/quillan if that exists; else the folder of the executable.
std::filesystem::path ProgramFolder();

/// The same rules for an executable in `executable_folder` and another folder than /etc/quillan.
std::filesystem::path ProgramFolder(const std::filesystem::path& executable_folder,
                                    const std::filesystem::path& system_folder);

}  // namespace quillan
