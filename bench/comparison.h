#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace benchmark {
class State;
}

namespace quillan::bench {

/// One side of a comparison: a piece of work that can be repeated.
class Side {
 public:
  virtual ~Side() = default;
  /// Puts everything where the work starts; not timed.
  virtual void Prepare() {}
  /// The work.
  virtual void Run() = 0;
  /// What the last run visibly did, to be the same on both sides; not timed.
  virtual std::string Result() = 0;
};

/// The program's side, and the yardstick's, which does the same visible work.
struct Comparison {
  std::unique_ptr<Side> ours;
  std::unique_ptr<Side> yardstick;
};

/// What was measured: seconds, bytes a row, or a number of statements.
struct Figures {
  double ours = 0;
  double yardstick = 0;
};

enum class Unit { kSeconds, kBytesPerRow, kStatements };
/// What is held against the goal: ours / yardstick, or ours - yardstick.
enum class Measure { kRatio, kDifference };
/// How the work grows with its size n.
enum class Growth { kConstant, kLinear, kLinearithmic };

/// A size of the work, and how often each side runs at it.
struct Size {
  std::size_t work;
  int runs;
};

/// One row of the table: a piece of work at several sizes, and what it is held against.
struct Row {
  std::string work;
  std::string yardstick;
  double goal = 1;
  std::vector<Size> sizes;     ///< The first one counts; the others show how the cost grows.
  std::size_t short_size = 1;  ///< For the proof that both sides do the same.
  Unit unit = Unit::kSeconds;
  Measure measure = Measure::kRatio;
  Growth growth = Growth::kLinear;
  /// Measures at a size, once for each iteration of `state`.
  std::function<Figures(std::size_t size, benchmark::State& state)> run = {};
  /// Throws std::runtime_error when the two sides do not do the same.
  std::function<void(std::size_t size)> verify = {};
};

/// A sum over texts and numbers in their order.
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

}  // namespace quillan::bench
