#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace quillan {

/// Ranges of addresses, among which one can be found that is nested with another range: lies within
/// it, or holds it, equal ends included. Adding and asking take logarithmic time.
class NestingIndex {
 public:
  /// `starts` holds the start of every range that will be added, in any order.
  explicit NestingIndex(std::vector<double> starts);

  /// Adds a range; `tag` is what `FindNested` names it by.
  void Add(double start, double end, int tag);
  /// The tag of a range that is nested with `start`..`end`.
  std::optional<int> FindNested(double start, double end) const;

 private:
  struct Entry {
    double end;
    int tag;
  };
  // How many of the starts are below `start`, or up to it.
  size_t CountBelow(double start) const;
  size_t CountUpTo(double start) const;

  std::vector<double> starts_;  // Ascending, each once.
  // Two binary indexed trees over the starts: the largest end of the ranges that start at or before
  // a place, and the smallest end of those that start at or after it.
  std::vector<Entry> largest_end_;
  std::vector<Entry> smallest_end_;
};

}  // namespace quillan
