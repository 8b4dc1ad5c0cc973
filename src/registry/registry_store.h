#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quillan {

/// One root of the registry, kept in a text file (see RegistryFile) that other programs and people
/// change too. Every call reads the file anew; a file that does not exist is an empty root.
/// Nothing here throws.
class RegistryStore {
 public:
  /// `file` may be a symbolic link, which is followed and stays.
  explicit RegistryStore(std::filesystem::path file) : file_(std::move(file)) {}

  /// Whether `key` (with its root: "HKEY_LOCAL_MACHINE\Software") exists.
  bool HasKey(std::string_view key) const;
  /// The text of a string value; nothing when there is none.
  std::optional<std::string> ReadString(std::string_view key, std::string_view name) const;

  /// Makes sure that `key` exists. False when the file could not be changed.
  bool CreateKey(std::string_view key);
  /// Gives a value its text, creating key and file (and its folder) where they are missing. The
  /// file is replaced in one step, under a lock and from a fresh reading, so that programs writing
  /// at the same time keep each other's values. False when nothing was written.
  bool WriteString(std::string_view key, std::string_view name, std::string_view value);

 private:
  template <typename Edit>
  bool Change(Edit edit);

  std::filesystem::path file_;
};

}  // namespace quillan
