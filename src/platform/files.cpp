#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan {
namespace {

// Repeats a system call that a signal interrupted.
template <typename Call>
auto Repeat(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

[[noreturn]] void Fail(int error) { throw FileError(std::strerror(error)); }

}  // namespace

std::optional<std::string> ReadFile(const std::filesystem::path& path) {
  struct stat status {};
  const auto absent = [] { return errno == ENOENT || errno == ENOTDIR; };
  if (Repeat([&] { return stat(path.c_str(), &status); }) != 0) {
    if (absent()) return std::nullopt;
    Fail(errno);
  }
  if (S_ISDIR(status.st_mode)) Fail(EISDIR);
  if (!S_ISREG(status.st_mode)) throw FileError("Not a regular file");
  const int file = Repeat([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
  if (file < 0) {
    if (absent()) return std::nullopt;  // It has just been removed.
    Fail(errno);
  }
  std::string bytes;
  std::array<char, 16384> block;  // NOLINT(cppcoreguidelines-init-variables): read() fills it.
  ssize_t count = 0;
  do {
    count = Repeat([&] { return read(file, block.data(), block.size()); });
    if (count > 0) bytes.append(block.data(), static_cast<size_t>(count));
  } while (count > 0);
  const int error = errno;
  close(file);
  if (count < 0) Fail(error);
  return bytes;
}

bool DiskFiles::FileExists(const std::filesystem::path& path) const {
  std::error_code error;
  return std::filesystem::exists(path, error) && !std::filesystem::is_directory(path, error);
}

std::optional<std::string> DiskFiles::ReadTextFile(const std::filesystem::path& path) const {
  const auto bytes = ReadFile(path);
  if (!bytes) return std::nullopt;
  return text::DecodeText(*bytes);
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
