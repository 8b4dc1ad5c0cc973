#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "registry/registry_file.h"

namespace quillan {

/// Whether a registry may write its files; one that may not refuses everything that would.
enum class RegistryAccess { kReadWrite, kReadOnly };

/// One root of the registry, kept in a text file (see RegistryFile) that other programs and people
/// change too. Every call reads the file anew; a file that does not exist is an empty root.
/// Nothing here throws.
class RegistryStore {
 public:
  /// `file` may be a symbolic link, which is followed and stays.
  explicit RegistryStore(std::filesystem::path file,
                         RegistryAccess access = RegistryAccess::kReadWrite)
      : file_(std::move(file)), access_(access) {}

  /// Whether `key` (with its root: "HKEY_LOCAL_MACHINE\Software") exists.
  bool HasKey(std::string_view key) const;
  /// The text of a string value; nothing when there is none or the file cannot be read.
  std::optional<std::string> ReadString(std::string_view key, std::string_view name) const;
  /// Why the last reading failed: "Cannot read <file>: <reason>". Empty when it succeeded. While it
  /// is not empty nothing is written: what the caller took for an absent value may exist.
  const std::string& read_error() const { return read_error_; }

  /// Makes sure that `key` exists. False when the file could not be changed.
  bool CreateKey(std::string_view key);
  /// Gives a value its text, creating key and file (and its folder) where they are missing. The
  /// file is replaced in one step, under a lock and from a fresh reading, so that programs writing
  /// at the same time keep each other's values. False when nothing was written: the file cannot be
  /// read or written, the value cannot be represented, or another program holds the lock. All
  /// writes together wait less than two seconds for a lock that is never released.
  bool WriteString(std::string_view key, std::string_view name, std::string_view value);

 private:
  std::optional<RegistryFile> Read() const;
  template <typename Edit>
  bool Change(Edit edit);

  std::filesystem::path file_;
  RegistryAccess access_;
  mutable std::string read_error_;
  bool lock_refused_ = false;  // The last write did not get the lock.
};

}  // namespace quillan
