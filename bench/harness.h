#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillan::bench {

/// One side of a comparison: a piece of work that can be repeated.
struct Side {
  std::function<void()> prepare;  ///< Restores the state that the work starts from; not timed.
  std::function<void()> run;      ///< The work.
  std::function<std::string()> result;  ///< What the last run visibly did; not timed.
};

/// The program's side, and the yardstick, which does the same visible work.
struct Comparison {
  Side ours;
  Side yardstick;
};

/// A size of the work, and how often each side runs at it.
struct Size {
  std::size_t work;
  int runs;
};

struct Row {
  std::string work;
  double goal;              ///< The highest figure at the first size that is good enough.
  std::vector<Size> sizes;  ///< The goal is for the first one; the others show how the cost grows.
  std::size_t short_size;   ///< The size for comparing results only.
};

/// The clock of a row. The processor time of this process leaves out other processes; work that is
/// done by other processes or consists of waiting needs the wall clock.
enum class TimedBy { kProcessor, kWall };

/// Registers a row whose figure is the median time of ours by that of the yardstick. Both sides run
/// in turn, after one run each that is not timed and whose results must be the same.
void AddTimedRow(const Row& row, std::function<Comparison(std::size_t size)> make,
                 TimedBy timed_by = TimedBy::kProcessor);

/// Registers a row whose figure is `measure(size)`, in `unit`. It throws std::runtime_error if the
/// work was not done.
void AddMeasuredRow(const Row& row, std::string_view unit,
                    std::function<double(std::size_t size)> measure);

/// Throws std::runtime_error if the strings are not the same.
void ExpectSame(const std::string& ours, const std::string& yardstick);

/// A checksum of strings and numbers in their order.
class Checksum {
 public:
  void Add(std::string_view text) {
    for (const char c : text) Mix(static_cast<unsigned char>(c));
    Mix(0xFF);
  }
  void Add(std::uint64_t number) {
    for (int shift = 0; shift < 64; shift += 8) Mix(number >> shift & 0xFF);
  }
  std::string Text() const { return std::to_string(sum_); }

 private:
  // FNV-1a with 64 bits.
  void Mix(std::uint64_t byte) { sum_ = (sum_ ^ byte) * 0x100000001B3U; }

  std::uint64_t sum_ = 0xCBF29CE484222325U;
};

// Each registers the rows of its file.
void AddLoadRows();
void AddSaveRows();
void AddServerRows();
void AddListRows();
void AddCoverageRows();
void AddAddressRows();
void AddProcessRows();
void AddScrollRows();
void AddWindowRows();
/// Rows of ten times the usual size, which are run only when they are asked for.
void AddLargeRows();

}  // namespace quillan::bench
