#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "registry/registry_store.h"

namespace quillan {

/// The computer's values or the current user's.
enum class RegistryRoot { kLocalMachine, kCurrentUser };

/// An open key of a Registry; 0 is none.
using RegistryKey = std::uint32_t;

/// The folder of the user's own configuration: $XDG_CONFIG_HOME where it is an absolute path, else
/// ".config" in the home folder (the XDG base directories).
std::filesystem::path UserConfigurationFolder();

/// The registry: text options under keys of the form "Software\Tarrowby.Net\<product>\<section>".
/// Only string values are read and written. Texts are UTF-8 and end at their first NUL, if they
/// have one. Nothing here throws. Nothing is written to a root whose last reading failed.
class Registry {
 public:
  /// The computer's values are in "registry.reg" of `program_folder`, the current user's in
  /// "tarrowby.net/registry.reg" of `user_folder` (see UserConfigurationFolder).
  /// With kReadOnly everything that would write fails.
  Registry(const std::filesystem::path& program_folder, const std::filesystem::path& user_folder,
           RegistryAccess access = RegistryAccess::kReadWrite);

  /// The text of an option, read from the file at every call; nothing when there is no such string
  /// value, so that the caller can use its default with `value_or`.
  std::optional<std::string> ReadRegistryString(
      std::string_view product, std::string_view section, std::string_view name,
      RegistryRoot root = RegistryRoot::kLocalMachine) const;
  /// Why the last reading of the root failed: "Cannot read <file>: <reason>"; empty when it
  /// succeeded, also when the root is empty because there is no file.
  const std::string& ReadError(RegistryRoot root) const { return Store(root).read_error(); }
  /// Writes an option, creating its key where it is missing. False when it was not written, which
  /// matters to a caller that writes on the user's behalf.
  bool SaveRegistryString(std::string_view product, std::string_view section, std::string_view name,
                          std::string_view value, RegistryRoot root = RegistryRoot::kLocalMachine);

  /// Opens the key `path` ("Software\Tarrowby.Net"; empty for the root itself). On success `key` is
  /// its handle, to be closed with RegistryCloseKey; else it is 0.
  bool RegistryOpenKey(RegistryRoot root, std::string_view path, RegistryKey& key);
  /// Opens the key `path`, creating it where it is missing; fails at once for an empty path.
  bool RegistryCreateKey(RegistryRoot root, std::string_view path, RegistryKey& key);
  /// Reads a string value of an open key; `text` is unchanged when there is none.
  bool RegistryQueryString(RegistryKey key, std::string_view name, std::string& text) const;
  /// Writes a string value of an open key.
  bool RegistrySetString(RegistryKey key, std::string_view name, std::string_view text);
  /// Closes an open key; false when `key` is none.
  bool RegistryCloseKey(RegistryKey key);

 private:
  struct OpenKey {
    RegistryRoot root;
    std::string path;  // With the root's name.
  };

  RegistryStore& Store(RegistryRoot root);
  const RegistryStore& Store(RegistryRoot root) const;
  RegistryKey NewHandle(RegistryRoot root, std::string path);

  RegistryStore local_machine_;
  RegistryStore current_user_;
  std::map<RegistryKey, OpenKey> open_keys_;
  RegistryKey last_handle_ = 0;
};

}  // namespace quillan
