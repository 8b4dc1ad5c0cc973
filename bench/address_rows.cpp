#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <random>

#include "bench/harness.h"
#include "bench/suite_data.h"
#include "ip/ip_functions.h"

namespace quillan::bench {
namespace {

constexpr double kNoAddress = -1;
// Each run converts about as many addresses, however small the set.
constexpr std::size_t kAddressesOfRun = 65536;

std::vector<std::string> RandomAddresses(std::size_t count) {
  std::mt19937 random(20070601);
  std::vector<std::string> addresses(count);
  for (auto& text : addresses) text = DottedQuad(static_cast<std::uint32_t>(random()));
  return addresses;
}

std::vector<double> RandomSortValues(std::size_t count) {
  std::vector<double> values;
  for (const std::string& text : RandomAddresses(count)) {
    values.push_back(IPAddressToSortValue(text));
  }
  return values;
}

// A side that converts every input in turn, as often as makes a run; `describe` adds an output to
// the checksum.
template <typename Input, typename Convert, typename Describe>
Side Conversion(const std::vector<Input>& inputs, Convert convert, Describe describe) {
  const auto outputs = std::make_shared<std::vector<decltype(convert(inputs[0]))>>(inputs.size());
  const std::size_t passes = std::max<std::size_t>(kAddressesOfRun / inputs.size(), 1);
  return {nullptr,
          [=] {
            for (std::size_t pass = 0; pass < passes; ++pass) {
              for (std::size_t i = 0; i < inputs.size(); ++i) (*outputs)[i] = convert(inputs[i]);
            }
          },
          [=] {
            Checksum sum;
            for (const auto& output : *outputs) describe(sum, output);
            return sum.Text();
          }};
}

double OurRead(const std::string& text) {
  return IsValidIPAddress(text) ? IPAddressToSortValue(text) : kNoAddress;
}

std::uint32_t PlainRead(const std::string& text) {
  in_addr address{};
  return inet_pton(AF_INET, text.c_str(), &address) == 1 ? ntohl(address.s_addr) : 0;
}

// Out of line, as ours is.
[[gnu::noinline]] std::string PlainWrite(double value) {
  const auto whole = static_cast<std::uint64_t>(value);
  std::array<char, 44>
      text;  // NOLINT(cppcoreguidelines-init-variables): written before it is read.
  char* end = text.data();
  for (const std::uint64_t unit : {1000000000U, 1000000U, 1000U, 1U}) {
    if (end != text.data()) *end++ = '.';
    end = std::to_chars(end, end + 10, static_cast<unsigned>(whole / unit % 1000)).ptr;
  }
  return {text.data(), end};
}

}  // namespace

void AddAddressRows() {
  // A large set, and a small one that the processor's branch prediction learns by heart.
  for (const auto& [size, suffix] :
       {std::pair(kAddressesOfRun, ""), {std::size_t{64}, ", a few"}}) {
    // Yardstick: inet_pton once.
    AddTimedRow({std::string("validate and convert") + suffix, 0.9, {{size, 301}}, 64},
                [](std::size_t count) {
                  const auto texts = RandomAddresses(count);
                  return Comparison{
                      Conversion(
                          texts, [](const std::string& text) { return OurRead(text); },
                          [](Checksum& sum, double value) {
                            sum.Add(static_cast<std::uint64_t>(SortValueToAddressNumber(value)));
                          }),
                      Conversion(
                          texts, [](const std::string& text) { return PlainRead(text); },
                          [](Checksum& sum, std::uint64_t value) { sum.Add(value); })};
                });
    // Yardstick: four std::to_chars.
    AddTimedRow(
        {std::string("SortValueToIPAddress") + suffix, 1.2, {{size, 301}}, 64},
        [](std::size_t count) {
          const auto values = RandomSortValues(count);
          const auto describe = [](Checksum& sum, const std::string& text) { sum.Add(text); };
          return Comparison{Conversion(
                                values, [](double v) { return SortValueToIPAddress(v); }, describe),
                            Conversion(
                                values, [](double v) { return PlainWrite(v); }, describe)};
        });
  }
}

}  // namespace quillan::bench
