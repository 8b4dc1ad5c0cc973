#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace quillan::fuzz {

/// Ends the program, which makes the fuzzer keep the input.
inline void Expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %s\n", what);
  std::abort();
}

/// Fails unless both are the same.
template <typename A, typename B>
void ExpectSame(const A& a, const B& b, const char* what) {
  if constexpr (requires { std::string(a); }) {
    if (!(a == b)) {
      std::fprintf(stderr, "\"%s\" is not \"%s\"\n", std::string(a).c_str(),
                   std::string(b).c_str());
    }
  }
  Expect(a == b, what);
}

/// The bytes of an input, taken piece by piece. Pieces of text are separated by an unlikely
/// character, so that seeds can be written by hand.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  /// The bytes up to the next '\x01', or all of them.
  std::string_view Piece() {
    const std::size_t end = rest_.find('\x01');
    const std::string_view piece = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    return piece;
  }
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

}  // namespace quillan::fuzz
