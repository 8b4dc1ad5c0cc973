#pragma once

#include <filesystem>
#include <string_view>

namespace quillan::test {

/// A folder of its own for one test, removed with everything in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
  /// Writes `content` into the file `name`, making its folders; returns its path.
  std::filesystem::path Write(std::string_view name, std::string_view content) const;
  /// The content of the file `name`, byte for byte.
  std::string Read(std::string_view name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace quillan::test
