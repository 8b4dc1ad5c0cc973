#include "platform/text/string_arena.h"

#include <algorithm>
#include <cstring>

namespace quillan::text {

const char* StringArena::Add(std::string_view text) {
  if (text.empty()) return nullptr;
  const auto length = static_cast<std::uint32_t>(text.size());
  const size_t bytes = sizeof length + text.size();
  if (bytes > free_bytes_) {
    free_bytes_ = std::max(bytes, kBlockBytes);
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(free_bytes_));
    free_ = blocks_.back().get();
  }
  std::memcpy(free_, &length, sizeof length);
  std::memcpy(free_ + sizeof length, text.data(), text.size());
  const char* const added = free_;
  free_ += bytes;
  free_bytes_ -= bytes;
  return added;
}

std::string_view StringArena::View(const char* text) {
  if (text == nullptr) return {};
  std::uint32_t length = 0;
  std::memcpy(&length, text, sizeof length);
  return {text + sizeof length, length};
}

void StringArena::Clear() {
  blocks_.clear();
  free_ = nullptr;
  free_bytes_ = 0;
}

}  // namespace quillan::text
