#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace quillan::text {

/// Stores many short strings in few blocks of memory, four bytes besides each, until all are
/// dropped together.
class StringArena {
 public:
  /// A copy of `text`, valid until `Clear`; the empty string is nullptr.
  const char* Add(std::string_view text);
  /// The string behind what `Add` returned.
  static std::string_view View(const char* text);
  void Clear();

 private:
  static constexpr size_t kBlockBytes = size_t{1} << 18;

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  size_t free_bytes_ = 0;
};

}  // namespace quillan::text
