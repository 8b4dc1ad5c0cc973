#pragma once

#include <cstddef>

namespace quillan::bench {

/// Counts what the process holds on the heap, from its making on: everything allocated by `new`,
/// with what the allocator adds to each block, and everything that the embedded database engine
/// holds. One at a time.
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
