#include "registry/registry_store.h"

#include <chrono>
#include <system_error>

#include "platform/files.h"
#include "platform/text/ascii.h"
#include "platform/text/encoding.h"
#include "registry/atomic_file.h"

namespace quillan {
namespace {

// Longer than any program needs for a change, shorter than a user's patience.
constexpr std::chrono::milliseconds kLockPatience{1800};

constexpr std::string_view kUtf16Marks[] = {"\xFF\xFE", "\xFE\xFF"};

// The bytes with a mark before them where they are UTF-16 without one: then every second byte of
// the first line, which is ASCII in every file of this format, is 0.
std::string WithUtf16Mark(const std::string& bytes) {
  if (bytes.size() < 2 || bytes.size() % 2 != 0) return bytes;
  if (bytes[0] != '\0' && bytes[1] == '\0') return std::string(kUtf16Marks[0]) + bytes;
  if (bytes[0] == '\0' && bytes[1] != '\0') return std::string(kUtf16Marks[1]) + bytes;
  return bytes;
}

// The text of the file's bytes. A UTF-8 text that was cut inside a character must not pass for
// Windows-1252 as a whole: the rest of that character becomes U+FFFD.
std::string Decode(const std::string& bytes) {
  constexpr size_t kLongestRest = 3;
  if (!text::IsUtf8(bytes)) {
    for (size_t rest = 1; rest <= kLongestRest && rest < bytes.size(); ++rest) {
      const std::string_view whole = std::string_view{bytes}.substr(0, bytes.size() - rest);
      if (text::IsUtf8(whole) && !text::IsAscii(whole)) {
        return text::DecodeText(whole) + "\xEF\xBF\xBD";
      }
    }
  }
  return text::DecodeText(WithUtf16Mark(bytes));
}

}  // namespace

// Reads the whole file; on failure sets `read_error_`.
std::optional<RegistryFile> RegistryStore::Read() const {
  read_error_.clear();
  std::string reason = "it is not a text file";
  try {
    std::string text = Decode(ReadFile(file_).value_or(""));
    if (text.find('\0') == std::string::npos) return RegistryFile(std::move(text));
  } catch (const FileError& error) {
    reason = error.what();
  }
  read_error_ = "Cannot read " + file_.string() + ": " + reason;
  return std::nullopt;
}

bool RegistryStore::HasKey(std::string_view key) const {
  const auto registry = Read();
  return registry && registry->HasKey(key);
}

std::optional<std::string> RegistryStore::ReadString(std::string_view key,
                                                     std::string_view name) const {
  const auto registry = Read();
  return registry ? registry->StringValue(key, name) : std::nullopt;
}

// Runs `edit` on a fresh reading of the file, under its lock; writes what changed.
template <typename Edit>
bool RegistryStore::Change(Edit edit) {
  if (access_ == RegistryAccess::kReadOnly || !read_error_.empty()) return false;
  const std::filesystem::path file = FollowLinks(file_);
  std::error_code ignored;  // A folder that could not be made shows at the lock.
  std::filesystem::create_directories(file.parent_path(), ignored);
  // After one wait in vain the program that holds the lock is stuck; the next write only tries.
  const FileLock lock(file, lock_refused_ ? std::chrono::milliseconds{0} : kLockPatience);
  lock_refused_ = !lock.held();
  if (!lock.held()) return false;
  auto registry = Read();
  if (!registry) return false;
  const std::string before = registry->text();
  if (!edit(*registry)) return false;
  return registry->text() == before || ReplaceBytes(file, registry->text());
}

bool RegistryStore::CreateKey(std::string_view key) {
  return HasKey(key) || Change([&](RegistryFile& file) { return file.AddKey(key); });
}

bool RegistryStore::WriteString(std::string_view key, std::string_view name,
                                std::string_view value) {
  return Change([&](RegistryFile& file) { return file.SetStringValue(key, name, value); });
}

}  // namespace quillan
