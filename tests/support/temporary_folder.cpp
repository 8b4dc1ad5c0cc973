#include "support/temporary_folder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace quillan::test {

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "quillan-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TemporaryFolder::Write(std::string_view name,
                                             std::string_view content) const {
  std::filesystem::path file = path_ / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

std::string TemporaryFolder::Read(std::string_view name) const {
  std::ostringstream content;
  content << std::ifstream(path_ / name, std::ios::binary).rdbuf();
  return content.str();
}

}  // namespace quillan::test
