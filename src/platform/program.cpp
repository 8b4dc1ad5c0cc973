#include "platform/program.h"

namespace quillan {

std::filesystem::path ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

}  // namespace quillan
