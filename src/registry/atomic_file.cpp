#include "registry/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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

// Gives the open file the permissions, the owner and the group in `status`. Only root may give a
// file away; others keep the group where they belong to it. Where not even that is possible, the
// group that the file gets instead may do no more than everybody.
bool TakeOver(int descriptor, const struct stat& status) {
  mode_t mode = status.st_mode & 07777U;
  if (fchown(descriptor, status.st_uid, status.st_gid) != 0) {
    if (errno != EPERM) return false;
    mode &= 0777U;
    if (fchown(descriptor, static_cast<uid_t>(-1), status.st_gid) != 0) {
      if (errno != EPERM) return false;
      mode = (mode & 0707U) | ((mode & 0007U) << 3U);
    }
  }
  return fchmod(descriptor, mode) == 0;
}

}  // namespace

FileLock::FileLock(const std::filesystem::path& file, std::chrono::milliseconds patience) {
  std::filesystem::path lock_file = file;
  lock_file += ".lock";
  // Without waiting for the other end of a FIFO that stands in its place.
  const int descriptor =
      open(lock_file.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
  if (descriptor < 0) return;
  struct stat status {};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    close(descriptor);
    return;
  }
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

bool ReplaceBytes(const std::filesystem::path& file, std::string_view bytes) {
  struct stat status {};
  const bool exists = stat(file.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) return false;
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
