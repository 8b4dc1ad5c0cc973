#include "platform/files.h"

#include <cerrno>
#include <fstream>
#include <sstream>
#include <system_error>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan {

bool DiskFiles::FileExists(const std::filesystem::path& path) const {
  std::error_code error;
  return std::filesystem::exists(path, error) && !std::filesystem::is_directory(path, error);
}

std::string DiskFiles::ReadTextFile(const std::filesystem::path& path) const {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  if (file) bytes << file.rdbuf();
  // An empty file leaves the stream in the failed state without being an error.
  if (!file.is_open() || file.bad() || (bytes.fail() && errno != 0)) {
    throw FileError(std::generic_category().message(errno != 0 ? errno : EIO));
  }
  return text::DecodeText(bytes.str());
}

std::filesystem::path JoinPath(const std::filesystem::path& folder, std::string_view relative) {
  std::string with_slashes = text::ReplaceAll(relative, "\\", "/");
  const size_t start = with_slashes.find_first_not_of('/');
  with_slashes.erase(0, start == std::string::npos ? with_slashes.size() : start);
  return folder / with_slashes;
}

std::string FileNameFromPath(std::string_view path, FileExtension extension) {
  const size_t separator = path.find_last_of("/\\");
  if (separator != std::string_view::npos) path.remove_prefix(separator + 1);
  const size_t colon = path.rfind(':');
  if (colon != std::string_view::npos) path.remove_prefix(colon + 1);
  if (extension == FileExtension::kDrop) path = path.substr(0, path.rfind('.'));
  return std::string(path);
}

}  // namespace quillan
