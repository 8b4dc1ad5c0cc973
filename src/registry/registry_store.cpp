#include "registry/registry_store.h"

#include <chrono>
#include <system_error>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"
#include "registry/atomic_file.h"
#include "registry/registry_file.h"

namespace quillan {
namespace {

// Longer than any program needs for a change, shorter than a user's patience.
constexpr std::chrono::seconds kLockPatience{5};

// The text of the file's bytes. A UTF-8 text that was cut inside a character must not pass for
// Windows-1252 as a whole: the rest of that character becomes U+FFFD.
std::string Decode(std::string_view bytes) {
  constexpr size_t kLongestRest = 3;
  if (!text::IsUtf8(bytes)) {
    for (size_t rest = 1; rest <= kLongestRest && rest < bytes.size(); ++rest) {
      const std::string_view whole = bytes.substr(0, bytes.size() - rest);
      if (text::IsUtf8(whole) && !text::IsAscii(whole)) {
        return text::DecodeText(whole) + "\xEF\xBF\xBD";
      }
    }
  }
  return text::DecodeText(bytes);
}

}  // namespace

bool RegistryStore::HasKey(std::string_view key) const {
  const auto bytes = ReadBytes(file_);
  return bytes && RegistryFile(Decode(*bytes)).HasKey(key);
}

std::optional<std::string> RegistryStore::ReadString(std::string_view key,
                                                     std::string_view name) const {
  const auto bytes = ReadBytes(file_);
  if (!bytes) return std::nullopt;
  return RegistryFile(Decode(*bytes)).StringValue(key, name);
}

// Runs `edit` on a fresh reading of the file, under its lock; writes what changed.
template <typename Edit>
bool RegistryStore::Change(Edit edit) {
  const std::filesystem::path file = FollowLinks(file_);
  std::error_code ignored;  // A folder that could not be made shows at the lock.
  std::filesystem::create_directories(file.parent_path(), ignored);
  const FileLock lock(file, kLockPatience);
  if (!lock.held()) return false;
  const auto bytes = ReadBytes(file);
  if (!bytes) return false;
  RegistryFile registry(Decode(*bytes));
  const std::string before = registry.text();
  if (!edit(registry)) return false;
  return registry.text() == before || ReplaceBytes(file, registry.text());
}

bool RegistryStore::CreateKey(std::string_view key) {
  return HasKey(key) || Change([&](RegistryFile& file) { return file.AddKey(key); });
}

bool RegistryStore::WriteString(std::string_view key, std::string_view name,
                                std::string_view value) {
  return Change([&](RegistryFile& file) { return file.SetStringValue(key, name, value); });
}

}  // namespace quillan
