#pragma once

#include <cstddef>

namespace quillan::bench {

/// Counts what the process allocates during its life: by `new`, with what the allocator adds to
/// each block, and inside SQLite. There may be one at a time.
class HeapCount {
 public:
  HeapCount();
  ~HeapCount();
  HeapCount(const HeapCount&) = delete;
  HeapCount& operator=(const HeapCount&) = delete;

  /// Bytes more than at the start: now, and at most since then.
  double Held() const;
  double Peak() const;

 private:
  std::ptrdiff_t engine_at_start_;
};

}  // namespace quillan::bench
