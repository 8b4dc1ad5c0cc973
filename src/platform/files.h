#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillan {

/// A file could not be read; `what()` is the system's reason.
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The bytes of the file `path`; nothing when it does not exist. Throws FileError when it cannot be
/// read: a folder, a FIFO or a device is not opened, so that reading never waits.
std::optional<std::string> ReadFile(const std::filesystem::path& path);

/// What the program asks of the file system.
class Files {
 public:
  virtual ~Files() = default;
  /// Whether `path` names an existing file (not a folder).
  virtual bool FileExists(const std::filesystem::path& path) const = 0;
  /// The whole text of the file as UTF-8 (see text::DecodeText); nothing when it does not exist.
  /// Throws FileError.
  virtual std::optional<std::string> ReadTextFile(const std::filesystem::path& path) const = 0;
};

/// The file system of this computer.
class DiskFiles final : public Files {
 public:
  bool FileExists(const std::filesystem::path& path) const override;
  std::optional<std::string> ReadTextFile(const std::filesystem::path& path) const override;
};

/// `folder` followed by `relative`, which may contain either separator: "\..\Help\x.chm" and
/// "/../Help/x.chm" name the same file. The result is not normalised.
std::filesystem::path JoinPath(const std::filesystem::path& folder, std::string_view relative);

enum class FileExtension { kKeep, kDrop };

/// The file name at the end of a path with either separator, without a drive letter; with kDrop
/// also without its last dot and what follows it.
std::string FileNameFromPath(std::string_view path, FileExtension extension);

}  // namespace quillan
