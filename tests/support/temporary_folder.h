#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillan::test {

/// A folder of its own for one test, removed with everything in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillan-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  /// Writes `content` into the file `name`, making its folders; returns its path.
  std::filesystem::path Write(std::string_view name, std::string_view content) const {
    std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }

  /// The content of the file `name`, byte for byte.
  std::string Read(std::string_view name) const {
    std::ostringstream content;
    content << std::ifstream(path_ / name, std::ios::binary).rdbuf();
    return content.str();
  }

 private:
  std::filesystem::path path_;
};

}  // namespace quillan::test
