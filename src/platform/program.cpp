#include "platform/program.h"

#include <cstdlib>
#include <system_error>

namespace quillan {
namespace {

bool IsInstallation(const std::filesystem::path& folder) {
  const auto holds = [&](std::string_view name) {
    std::error_code error;
    return std::filesystem::exists(folder / name, error);
  };
  return holds(kConnectionFileNames[0]) || holds(kConnectionFileNames[1]) || holds("registry.reg");
}

}  // namespace

std::string_view Version() { return QUILLAN_VERSION; }

std::filesystem::path ProgramFolder(const std::filesystem::path& executable_folder,
                                    const std::filesystem::path& system_folder) {
  std::error_code error;
  if (const char* home = getenv("QUILLAN_HOME"); home != nullptr && *home != '\0') {
    const std::filesystem::path folder = std::filesystem::absolute(home, error).lexically_normal();
    return folder.has_filename() ? folder : folder.parent_path();
  }
  if (IsInstallation(executable_folder) || IsInstallation(executable_folder.parent_path())) {
    return executable_folder;
  }
  return std::filesystem::is_directory(system_folder, error) ? system_folder : executable_folder;
}

std::filesystem::path ProgramFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return ProgramFolder(executable.parent_path(), "/etc/quillan");
}

}  // namespace quillan
