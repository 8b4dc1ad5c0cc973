#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <random>

#include "bench/rows.h"
#include "bench/suite_data.h"
#include "bench/timing.h"
#include "ip/ip_functions.h"

namespace quillan::bench {
namespace {

constexpr double kNoAddress = -1;
// Each run takes about as many addresses, however small the set.
constexpr std::size_t kAddressesOfRun = 65536;

std::vector<std::uint32_t> RandomAddresses(std::size_t count) {
  std::mt19937 random(20070601);
  std::vector<std::uint32_t> addresses(count);
  for (std::uint32_t& address : addresses) address = static_cast<std::uint32_t>(random());
  return addresses;
}

std::vector<std::string> AddressTexts(std::size_t count) {
  std::vector<std::string> texts;
  for (const std::uint32_t address : RandomAddresses(count)) texts.push_back(DottedQuad(address));
  return texts;
}

// Takes every address of a set in turn, as often as makes a run.
template <typename Input, typename Output>
class Conversion : public Side {
 public:
  explicit Conversion(std::vector<Input> inputs)
      : inputs_(std::move(inputs)),
        outputs_(inputs_.size()),
        passes_(std::max<std::size_t>(kAddressesOfRun / inputs_.size(), 1)) {}

 protected:
  template <typename Convert>
  void ForEach(Convert convert) {
    for (std::size_t pass = 0; pass < passes_; ++pass) {
      for (std::size_t i = 0; i < inputs_.size(); ++i) outputs_[i] = convert(inputs_[i]);
    }
  }

  std::vector<Input> inputs_;
  std::vector<Output> outputs_;

 private:
  std::size_t passes_;
};

enum class Calls { kApart, kTogether };

// Validates and converts. Apart: what lies between the two calls may have changed the text.
template <Calls calls>
class OurRead final : public Conversion<std::string, double> {
 public:
  using Conversion::Conversion;

  void Run() override {
    ForEach([](const std::string& text) {
      if (!IsValidIPAddress(text)) return kNoAddress;
      if constexpr (calls == Calls::kApart) asm volatile("" ::: "memory");
      return IPAddressToSortValue(text);
    });
  }
  std::string Result() override {
    Checksum sum;
    for (const double value : outputs_) {
      sum.Add(static_cast<std::uint64_t>(SortValueToAddressNumber(value)));
    }
    return sum.Text();
  }
};

class PlainRead final : public Conversion<std::string, std::uint32_t> {
 public:
  using Conversion::Conversion;

  void Run() override {
    ForEach([](const std::string& text) {
      in_addr address{};
      return inet_pton(AF_INET, text.c_str(), &address) == 1 ? ntohl(address.s_addr) : 0;
    });
  }
  std::string Result() override {
    Checksum sum;
    for (const std::uint32_t address : outputs_) sum.Add(address);
    return sum.Text();
  }
};

std::vector<double> PackedAddresses(std::size_t count) {
  std::vector<double> packed;
  for (const std::uint32_t address : RandomAddresses(count)) {
    packed.push_back(std::stod(PackedDigits(address)));
  }
  return packed;
}

class Writing : public Conversion<double, std::string> {
 public:
  using Conversion::Conversion;

  std::string Result() override {
    Checksum sum;
    for (const std::string& text : outputs_) sum.Add(text);
    return sum.Text();
  }
};

class OurWrite final : public Writing {
 public:
  using Writing::Writing;

  void Run() override { ForEach(&SortValueToIPAddress); }
};

// Out of line, as the program's is.
[[gnu::noinline]] std::string WithToChars(double value) {
  const auto whole = static_cast<std::uint64_t>(value);
  std::array<char, 44> text;  // NOLINT(cppcoreguidelines-init-variables): its use is counted.
  char* end = text.data();
  const auto append = [&](std::uint64_t part) {
    end = std::to_chars(end, end + 10, static_cast<unsigned>(part)).ptr;
  };
  append(whole / 1000000000);
  *end++ = '.';
  append(whole / 1000000 % 1000);
  *end++ = '.';
  append(whole / 1000 % 1000);
  *end++ = '.';
  append(whole % 1000);
  return {text.data(), end};
}

class PlainWrite final : public Writing {
 public:
  using Writing::Writing;

  void Run() override { ForEach(&WithToChars); }
};

template <typename Ours, typename Plain, typename Inputs>
Row AddressRow(std::string work, std::string yardstick, double goal, std::size_t size,
               Inputs inputs) {
  Row row{.work = std::move(work),
          .yardstick = std::move(yardstick),
          .goal = goal,
          .sizes = {{size, 301}},
          .short_size = 64};
  return Timed(std::move(row), [inputs](std::size_t count) {
    return Comparison{std::make_unique<Ours>(inputs(count)),
                      std::make_unique<Plain>(inputs(count))};
  });
}

}  // namespace

std::vector<Row> AddressRows() {
  constexpr std::size_t kMany = 65536;
  constexpr std::size_t kFew = 64;
  const std::string reading = "inet_pton once";
  const std::string writing = "four std::to_chars";
  return {
      AddressRow<OurRead<Calls::kApart>, PlainRead>("validate and convert, apart", reading, 1,
                                                    kMany, &AddressTexts),
      AddressRow<OurRead<Calls::kApart>, PlainRead>("the same, a few again and again", reading, 1,
                                                    kFew, &AddressTexts),
      AddressRow<OurRead<Calls::kTogether>, PlainRead>("validate and convert, at once", reading, 1,
                                                       kMany, &AddressTexts),
      AddressRow<OurRead<Calls::kTogether>, PlainRead>("the same at once, a few", reading, 1, kFew,
                                                       &AddressTexts),
      AddressRow<OurWrite, PlainWrite>("SortValueToIPAddress", writing, 1.2, kMany,
                                       &PackedAddresses),
      AddressRow<OurWrite, PlainWrite>("SortValueToIPAddress, a few", writing, 1.2, kFew,
                                       &PackedAddresses),
  };
}

}  // namespace quillan::bench
