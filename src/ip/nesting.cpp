#include "ip/nesting.h"

#include <algorithm>
#include <limits>

namespace quillan {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The lowest bit that is set: how many places the entry of a binary indexed tree covers.
size_t Span(size_t place) { return place & (~place + 1); }

}  // namespace

NestingIndex::NestingIndex(std::vector<double> starts) : starts_(std::move(starts)) {
  std::sort(starts_.begin(), starts_.end());
  starts_.erase(std::unique(starts_.begin(), starts_.end()), starts_.end());
  largest_end_.assign(starts_.size() + 1, {-kInfinity, 0});
  smallest_end_.assign(starts_.size() + 1, {kInfinity, 0});
}

size_t NestingIndex::CountBelow(double start) const {
  return static_cast<size_t>(std::lower_bound(starts_.begin(), starts_.end(), start) -
                             starts_.begin());
}

size_t NestingIndex::CountUpTo(double start) const {
  return static_cast<size_t>(std::upper_bound(starts_.begin(), starts_.end(), start) -
                             starts_.begin());
}

void NestingIndex::Add(double start, double end, int tag) {
  const size_t from_front = CountBelow(start) + 1;
  for (size_t place = from_front; place < largest_end_.size(); place += Span(place)) {
    if (end > largest_end_[place].end) largest_end_[place] = {end, tag};
  }
  const size_t from_back = smallest_end_.size() - from_front;
  for (size_t place = from_back; place < smallest_end_.size(); place += Span(place)) {
    if (end < smallest_end_[place].end) smallest_end_[place] = {end, tag};
  }
}

std::optional<int> NestingIndex::FindNested(double start, double end) const {
  for (size_t place = CountUpTo(start); place > 0; place -= Span(place)) {
    if (largest_end_[place].end >= end) return largest_end_[place].tag;
  }
  for (size_t place = starts_.size() - CountBelow(start); place > 0; place -= Span(place)) {
    if (smallest_end_[place].end <= end) return smallest_end_[place].tag;
  }
  return std::nullopt;
}

}  // namespace quillan
