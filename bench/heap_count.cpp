#include "bench/heap_count.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include <sqlite3.h>

namespace {

// glibc keeps the size of a block in front of it.
constexpr std::ptrdiff_t kBlockHeader = sizeof(std::size_t);

// Only one thread allocates while a count is on.
bool counting = false;
std::ptrdiff_t held = 0;
std::ptrdiff_t peak = 0;

std::ptrdiff_t BytesOf(void* block) {
  return static_cast<std::ptrdiff_t>(malloc_usable_size(block)) + kBlockHeader;
}

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  if (counting) {
    held += BytesOf(block);
    peak = std::max(peak, held);
  }
  return block;
}

void operator delete(void* block) noexcept {
  if (counting && block != nullptr) held -= BytesOf(block);
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }

namespace quillan::bench {

HeapCount::HeapCount() : engine_at_start_(sqlite3_memory_used()) {
  sqlite3_memory_highwater(1);
  held = 0;
  peak = 0;
  counting = true;
}

HeapCount::~HeapCount() { counting = false; }

double HeapCount::Held() const {
  return static_cast<double>(held + sqlite3_memory_used() - engine_at_start_);
}

// The two peaks may lie at different times, so this is never too little.
double HeapCount::Peak() const {
  return static_cast<double>(peak + sqlite3_memory_highwater(0) - engine_at_start_);
}

}  // namespace quillan::bench
