#include "ip/ip_functions.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr std::uint32_t kThousand = 1000;
constexpr std::uint32_t kMillion = 1000000;
constexpr std::uint32_t kBillion = 1000000000;

struct PartText {
  std::array<char, 4> text;  // The digits, then a dot, then whatever fills the four characters.
  std::uint8_t digits;
};

// The texts of 0..999: writing one is a single copy.
constexpr std::array<PartText, kThousand> MakePartTexts() {
  std::array<PartText, kThousand> texts{};
  for (std::uint32_t number = 0; number < kThousand; ++number) {
    PartText& part = texts[number];
    for (std::uint32_t power = 100; power > 0; power /= 10) {
      if (number < power && power > 1) continue;
      part.text[part.digits++] = static_cast<char>('0' + number / power % 10);
    }
    part.text[part.digits] = '.';
  }
  return texts;
}

constexpr std::array<PartText, kThousand> kPartTexts = MakePartTexts();

[[gnu::noinline]] std::string IPAddressOfAnyValue(double value) {
  if (!std::isfinite(value)) return "0.0.0.0";
  value = std::floor(value);
  std::string text;
  for (int part = 0; part < 3; ++part) {
    double rest = std::fmod(value, kThousand);
    if (rest < 0) rest += kThousand;
    text.insert(0, text::FormatDigits(rest)).insert(0, 1, '.');
    value = std::floor(value / kThousand);
  }
  return text::FormatDigits(std::fmod(value, kThousand)) + text;
}

}  // namespace

std::string SortValueToIPAddress(double value) {
  if (!(value >= 0 && value < kBillion * 1000.0)) return IPAddressOfAnyValue(value);
  const auto whole = static_cast<std::uint64_t>(value);
  const auto high = static_cast<std::uint32_t>(whole / kMillion);
  const auto low = static_cast<std::uint32_t>(whole % kMillion);
  std::array<char, 16> buffer;  // NOLINT(cppcoreguidelines-init-variables): its use is counted.
  char* end = buffer.data();
  const auto append = [&](std::uint32_t number) {
    const PartText& part = kPartTexts[number];
    std::memcpy(end, part.text.data(), part.text.size());
    end += part.digits + 1;
  };
  append(high / kThousand);
  append(high % kThousand);
  append(low / kThousand);
  append(low % kThousand);
  return {buffer.data(), static_cast<size_t>(end - buffer.data()) - 1};
}

double SortValueToAddressNumber(double value) {
  constexpr double kBound = 1e15;  // Below it the quotients of doubles are exact enough to floor.
  if (value >= 0 && value < kBound) {
    const auto whole = static_cast<std::int64_t>(value);
    const std::int64_t number = whole / kBillion * 16777216 + whole % kBillion / kMillion * 65536 +
                                whole % kMillion / kThousand * 256 + whole % kThousand;
    return static_cast<double>(number);
  }
  const auto part = [value](double divisor, double above) {
    const double rest = value - std::floor(value / above) * above;
    return std::floor(std::floor(rest) / divisor);
  };
  return std::floor(value / 1e9) * 16777216 + part(1e6, 1e9) * 65536 + part(1e3, 1e6) * 256 +
         part(1, 1e3);
}

}  // namespace quillan
