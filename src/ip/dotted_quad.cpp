#include "ip/dotted_quad.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quillan {
namespace {

// Lengths of the texts of which two words of eight bytes hold every character.
constexpr size_t kShortest = 7;  // "1.1.1.1"
constexpr size_t kLongest = 16;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// `byte` in each of the eight bytes.
constexpr std::uint64_t Repeat(std::uint64_t byte) { return byte * 0x0101010101010101U; }

// The bytes at `text` as a number whose lowest byte is the first character.
template <typename Number>
Number Load(const char* text) {
  Number bytes = 0;
  std::memcpy(&bytes, text, sizeof bytes);
  if constexpr (std::endian::native == std::endian::big) {
    bytes = sizeof bytes == 8
                ? static_cast<Number>(__builtin_bswap64(bytes))
                : static_cast<Number>(__builtin_bswap32(static_cast<std::uint32_t>(bytes)));
  }
  return bytes;
}

// One bit for each of eight ASCII characters, the first one lowest, from bits that stand on top of
// their bytes. The multiplication moves the bit of byte i to place 56 + i.
unsigned Gather(std::uint64_t tops) {
  return static_cast<unsigned>(((tops >> 7 & Repeat(1)) * 0x0102040810204080U) >> 56);
}

// Bits on top of the bytes of `text` that are no ASCII digits, one bit each. A byte from 0x80 on
// may carry into its neighbour's bit, but always has its own.
unsigned NoDigits(std::uint64_t text) {
  const std::uint64_t from_zero = text ^ Repeat('0');
  return Gather((from_zero + Repeat(0x80 - 10)) | from_zero);
}

// The numbers of the digits in both halves of `digits`, up to four in each, the last one highest;
// unused bytes are 0. Adjoining digits, then adjoining pairs of them, are joined in all places at
// once.
std::uint64_t ReadHalves(std::uint64_t digits) {
  const std::uint64_t ones = digits & Repeat(0x0F);
  const std::uint64_t pairs = (ones * 10 + (ones >> 8)) & 0x00FF00FF00FF00FFU;
  return (pairs * 100 + (pairs >> 16)) & 0x0000FFFF0000FFFFU;
}

// Four parts of an address, two numbers of 32 bits in each member; the first one is the lower.
struct Quad {
  std::uint64_t front;
  std::uint64_t back;
};

// Reads an address in its usual form, four parts of one to four digits and nothing else; false for
// any other form, which is left to slower code.
bool ReadUsualForm(std::string_view text, Quad& quad) {
  const size_t size = text.size();
  if (size < kShortest || size > kLongest) return false;
  const char* first = text.data();
  const char* end = first + size;
  unsigned marks = 0;
  if (size >= 8) {
    // Two words that overlap in the middle.
    marks = NoDigits(Load<std::uint64_t>(first)) | NoDigits(Load<std::uint64_t>(end - 8))
                                                       << (size - 8);
  } else {
    // One word, in which the fourth of seven characters stands twice.
    const std::uint64_t head = Load<std::uint32_t>(first);
    const std::uint64_t tail = Load<std::uint32_t>(end - 4);
    marks = NoDigits(head | tail << 32);
    marks = (marks & 0xF) | (marks >> 4 << 3);
  }
  const unsigned after_first = marks & (marks - 1);
  const unsigned after_second = after_first & (after_first - 1);
  const auto dot1 = static_cast<unsigned>(std::countr_zero(marks));
  const auto dot2 = static_cast<unsigned>(std::countr_zero(after_first));
  const auto dot3 = static_cast<unsigned>(std::countr_zero(after_second));
  // One less than the length of each part, so that 0 is beyond all others.
  const unsigned spare1 = dot1 - 1;
  const unsigned spare2 = dot2 - dot1 - 2;
  const unsigned spare3 = dot3 - dot2 - 2;
  const unsigned spare4 = static_cast<unsigned>(size) - dot3 - 2;
  if ((spare1 | spare2 | spare3 | spare4) > 3 || (after_second & (after_second - 1)) != 0 ||
      first[dot1] != '.' || first[dot2] != '.' || first[dot3] != '.') {
    return false;
  }
  // The four bytes around each part that lie inside the text: from its start, or up to its end.
  const unsigned unused3 = 24 - 8 * spare3;
  const unsigned unused4 = 24 - 8 * spare4;
  const std::uint32_t part1 = Load<std::uint32_t>(first) << (24 - 8 * spare1);
  const std::uint32_t part2 = Load<std::uint32_t>(first + dot1 + 1) << (24 - 8 * spare2);
  const std::uint32_t part3 = Load<std::uint32_t>(first + dot3 - 4) >> unused3 << unused3;
  const std::uint32_t part4 = Load<std::uint32_t>(end - 4) >> unused4 << unused4;
  quad.front = ReadHalves(part1 | std::uint64_t{part2} << 32);
  quad.back = ReadHalves(part3 | std::uint64_t{part4} << 32);
  return true;
}

// Whether `part` is a whole number 0..255 in one of the forms that users may write.
bool IsValidPart(std::string_view part) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!part.empty() && is_blank(part.front())) part.remove_prefix(1);
  while (!part.empty() && is_blank(part.back())) part.remove_suffix(1);
  const bool negative = part.starts_with('-');
  if (negative || part.starts_with('+')) part.remove_prefix(1);
  if (part.empty()) return false;
  unsigned value = 0;
  for (const char c : part) {
    if (!IsDigit(c)) return false;
    value = value * 10 + static_cast<unsigned>(c - '0');
    if (value > 255) return false;
  }
  return !negative || value == 0;
}

bool IsValidInAnyForm(std::string_view text) {
  for (int part = 1; part < 4; ++part) {
    const size_t dot = text.find('.');
    if (dot == std::string_view::npos || !IsValidPart(text.substr(0, dot))) return false;
    text.remove_prefix(dot + 1);
  }
  return IsValidPart(text);  // A further dot is no digit.
}

double SortValueOfAnyForm(std::string_view text) {
  double value = 0;
  double part = 0;
  bool has_digits = false;
  int parts = 1;
  const auto take_part = [&] {
    // What cannot be held, a part of hundreds of digits, is skipped like an empty part.
    const double next = value * 1000 + part;
    if (has_digits && std::isfinite(next)) value = next;
    part = 0;
    has_digits = false;
  };
  for (const char c : text) {
    if (IsDigit(c)) {
      part = part * 10 + (c - '0');
      has_digits = true;
    } else if (c == '.') {
      take_part();
      if (++parts > 4) return value;
    }
  }
  take_part();
  return parts == 4 ? value : 0;
}

// Out of line, so that the usual form saves no registers for it.
[[gnu::noinline]] double ReadAnyForm(std::string_view text) {
  const double value = SortValueOfAnyForm(text);
  return IsValidInAnyForm(text) ? value : -value;
}

}  // namespace

double ReadDottedQuad(const char* text, size_t size) {
  Quad quad{};
  if (!ReadUsualForm({text, size}, quad)) return ReadAnyForm({text, size});
  // Each product holds lower * 1000 + upper in its upper half.
  constexpr std::uint64_t kJoin = std::uint64_t{1000} << 32 | 1;
  const auto front = static_cast<std::int64_t>(quad.front * kJoin >> 32);
  const auto back = static_cast<std::int64_t>(quad.back * kJoin >> 32);
  const auto value = static_cast<double>(front * 1000000 + back);
  constexpr std::uint64_t kBeyondOneByte = 0xFFFFFF00FFFFFF00U;
  return ((quad.front | quad.back) & kBeyondOneByte) == 0 ? value : -value;
}

}  // namespace quillan
