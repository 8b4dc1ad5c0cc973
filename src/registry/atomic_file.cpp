#include "registry/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <thread>

namespace quillan {
namespace {

constexpr std::chrono::milliseconds kLockPoll{10};
constexpr int kMostLinks = 40;  // As many as the kernel follows (path_resolution(7)).

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

// Makes a rename in `folder` outlast a crash of the machine.
void FlushFolder(const std::filesystem::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

// Gives the open file the permissions and the owner that `status` tells of. Another user's file
// that may be written but not given away passes to this user; its permissions stay.
bool TakeOver(int descriptor, const struct stat& status) {
  if (fchown(descriptor, status.st_uid, status.st_gid) != 0 && errno != EPERM) return false;
  return fchmod(descriptor, status.st_mode & 07777U) == 0;
}

}  // namespace

FileLock::FileLock(const std::filesystem::path& file, std::chrono::milliseconds patience) {
  std::filesystem::path lock_file = file;
  lock_file += ".lock";
  const int descriptor = open(lock_file.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor < 0) return;
  const auto last_try = std::chrono::steady_clock::now() + patience;
  while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    const bool taken = errno == EWOULDBLOCK || errno == EINTR;
    if (!taken || std::chrono::steady_clock::now() >= last_try) {
      close(descriptor);
      return;
    }
    std::this_thread::sleep_for(kLockPoll);
  }
  descriptor_ = descriptor;
}

FileLock::~FileLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::filesystem::path FollowLinks(const std::filesystem::path& path) {
  std::filesystem::path file = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(file, error);
    if (error) break;
    file = file.parent_path() / target;
  }
  return file;
}

std::optional<std::string> ReadBytes(const std::filesystem::path& file) {
  // Without waiting for the other end of a pipe that somebody put there.
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    if (errno == ENOENT) return std::string();
    return std::nullopt;
  }
  std::optional<std::string> bytes = std::string();
  struct stat status {};
  bool reading = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  if (!reading) bytes.reset();
  while (reading) {
    std::array<char, 16384> block;  // NOLINT(cppcoreguidelines-init-variables): read() fills it.
    const ssize_t count = read(descriptor, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) bytes.reset();
    reading = count > 0;
    if (reading) bytes->append(block.data(), static_cast<size_t>(count));
  }
  close(descriptor);
  return bytes;
}

bool ReplaceBytes(const std::filesystem::path& file, std::string_view bytes) {
  struct stat status {};
  const bool exists = stat(file.c_str(), &status) == 0;
  if (exists && (!S_ISREG(status.st_mode) || access(file.c_str(), W_OK) != 0)) return false;

  std::filesystem::path temporary = file;
  temporary += ".tmp";
  unlink(temporary.c_str());  // What a crash left: under the lock it is nobody's.
  const int descriptor =
      open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, exists ? 0600 : 0666);
  if (descriptor < 0) return false;
  bool written = !exists || TakeOver(descriptor, status);
  written = written && WriteAll(descriptor, bytes) && fsync(descriptor) == 0;
  written = close(descriptor) == 0 && written;
  written = written && rename(temporary.c_str(), file.c_str()) == 0;
  if (!written) {
    unlink(temporary.c_str());
    return false;
  }
  FlushFolder(file.parent_path());
  return true;
}

}  // namespace quillan
