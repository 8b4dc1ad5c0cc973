#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace quillan {

/// Keeps texts one behind the other, four bytes besides each, until all are dropped together.
class TextArena {
 public:
  /// A copy of `text`, valid until `Clear`; the empty text is nullptr.
  const char* Add(std::string_view text);
  /// The text behind what `Add` returned.
  static std::string_view View(const char* text);
  void Clear();

 private:
  static constexpr size_t kBlockBytes = size_t{1} << 18;

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  size_t free_bytes_ = 0;
};

}  // namespace quillan
