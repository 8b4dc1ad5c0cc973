#include "registry/registry.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "platform/text/ascii.h"

namespace quillan {

using text::TrimAtNull;

namespace {

std::string FullPath(RegistryRoot root, std::string_view path) {
  std::string full =
      root == RegistryRoot::kLocalMachine ? "HKEY_LOCAL_MACHINE" : "HKEY_CURRENT_USER";
  path = TrimAtNull(path);
  while (path.ends_with('\\')) path.remove_suffix(1);
  if (!path.empty()) full.append("\\").append(path);
  return full;
}

std::string OptionPath(std::string_view product, std::string_view section) {
  return std::string("Software\\Tarrowby.Net\\").append(product).append("\\").append(section);
}

std::filesystem::path HomeFolder() {
  const char* home = getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  const passwd* user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

}  // namespace

std::filesystem::path UserConfigurationFolder() {
  const char* folder = getenv("XDG_CONFIG_HOME");
  if (folder != nullptr && *folder == '/') return folder;
  return HomeFolder() / ".config";
}

Registry::Registry(const std::filesystem::path& program_folder,
                   const std::filesystem::path& user_folder, RegistryAccess access)
    : local_machine_(program_folder / "registry.reg", access),
      current_user_(user_folder / "tarrowby.net" / "registry.reg", access) {}

RegistryStore& Registry::Store(RegistryRoot root) {
  return root == RegistryRoot::kLocalMachine ? local_machine_ : current_user_;
}

const RegistryStore& Registry::Store(RegistryRoot root) const {
  return root == RegistryRoot::kLocalMachine ? local_machine_ : current_user_;
}

std::optional<std::string> Registry::ReadRegistryString(std::string_view product,
                                                        std::string_view section,
                                                        std::string_view name,
                                                        RegistryRoot root) const {
  auto text =
      Store(root).ReadString(FullPath(root, OptionPath(product, section)), TrimAtNull(name));
  if (text) text->resize(TrimAtNull(*text).size());
  return text;
}

bool Registry::SaveRegistryString(std::string_view product, std::string_view section,
                                  std::string_view name, std::string_view value,
                                  RegistryRoot root) {
  return Store(root).WriteString(FullPath(root, OptionPath(product, section)), TrimAtNull(name),
                                 TrimAtNull(value));
}

RegistryKey Registry::NewHandle(RegistryRoot root, std::string path) {
  open_keys_.emplace(++last_handle_, OpenKey{root, std::move(path)});
  return last_handle_;
}

bool Registry::RegistryOpenKey(RegistryRoot root, std::string_view path, RegistryKey& key) {
  key = 0;
  std::string full = FullPath(root, path);
  const bool is_root = full.find('\\') == std::string::npos;  // The roots are always there.
  if (!is_root && !Store(root).HasKey(full)) return false;
  key = NewHandle(root, std::move(full));
  return true;
}

bool Registry::RegistryCreateKey(RegistryRoot root, std::string_view path, RegistryKey& key) {
  key = 0;
  if (TrimAtNull(path).empty()) return false;
  std::string full = FullPath(root, path);
  if (!Store(root).CreateKey(full)) return false;
  key = NewHandle(root, std::move(full));
  return true;
}

bool Registry::RegistryQueryString(RegistryKey key, std::string_view name,
                                   std::string& text) const {
  const auto open = open_keys_.find(key);
  if (open == open_keys_.end()) return false;
  const auto& [root, path] = open->second;
  auto value = Store(root).ReadString(path, TrimAtNull(name));
  if (!value) return false;
  text = TrimAtNull(*value);
  return true;
}

bool Registry::RegistrySetString(RegistryKey key, std::string_view name, std::string_view text) {
  const auto open = open_keys_.find(key);
  if (open == open_keys_.end()) return false;
  const auto& [root, path] = open->second;
  return Store(root).WriteString(path, TrimAtNull(name), TrimAtNull(text));
}

bool Registry::RegistryCloseKey(RegistryKey key) { return open_keys_.erase(key) == 1; }

}  // namespace quillan
