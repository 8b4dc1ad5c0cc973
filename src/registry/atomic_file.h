#pragma once

#include <chrono>
#include <filesystem>
#include <string_view>

namespace quillan {

/// Holds the advisory lock of a file, so that programs which read, change and replace it do so one
/// after the other. The lock is held on a file beside it ("registry.reg.lock"), which is never
/// removed, because the file itself is replaced while it is locked.
class FileLock {
 public:
  /// Waits at most `patience` for the lock of `file`. A lock file that is not a regular file cannot
  /// be locked.
  FileLock(const std::filesystem::path& file, std::chrono::milliseconds patience);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  /// Whether the lock was obtained.
  bool held() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

/// The file that `path` names once symbolic links are followed, whether or not it exists.
std::filesystem::path FollowLinks(const std::filesystem::path& path);

/// Gives `file` (no symbolic link) the content `bytes` in one step: whoever opens it, even after a
/// crash, finds the old content or the new one. An existing file keeps its permissions, owner and
/// group; where this user may not give a file away, it keeps the group alone if it can. The caller
/// holds the file's lock. False, with the file as it was, when it is write-protected or its folder
/// cannot be written.
bool ReplaceBytes(const std::filesystem::path& file, std::string_view bytes);

}  // namespace quillan
