#include "ip/ip_functions.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace quillan {
namespace {

TEST(IPFunctionsTest, EveryAddressGoesThroughAllFormsAndBack) {
  // A stride without a small factor in common with 256 meets every value and length of each part.
  constexpr std::uint64_t kStride = 10007;
  for (std::uint64_t address = 0; address <= 0xFFFFFFFF; address += kStride) {
    const std::string text = inet_ntoa({htonl(static_cast<std::uint32_t>(address))});
    const double value = IPAddressToSortValue(text);
    ASSERT_TRUE(IsValidIPAddress(text)) << text;
    ASSERT_EQ(value,
              static_cast<double>((address >> 24) * 1000000000 + (address >> 16 & 255) * 1000000 +
                                  (address >> 8 & 255) * 1000 + (address & 255)));
    ASSERT_EQ(SortValueToIPAddress(value), text);
    ASSERT_EQ(SortValueToAddressNumber(value), static_cast<double>(address));
  }
}

// Among the characters and lengths of addresses, what the system's own reader accepts is accepted;
// what only this one accepts has leading zeros.
TEST(IPFunctionsTest, RandomTextsAreReadAsByTheSystem) {
  std::mt19937 random(1);
  const std::string characters = "0125689...";
  for (int i = 0; i < 300000; ++i) {
    std::string text(random() % 12 + 5, '0');
    for (char& c : text) c = characters[random() % characters.size()];
    in_addr address{};
    const bool accepted = inet_pton(AF_INET, text.c_str(), &address) == 1;
    bool leading_zero = false;
    for (size_t at = 0; at + 1 < text.size(); ++at) {
      const bool starts_part = at == 0 || text[at - 1] == '.';
      leading_zero = leading_zero || (starts_part && text[at] == '0' && text[at + 1] != '.');
    }
    if (!leading_zero) {
      ASSERT_EQ(IsValidIPAddress(text), accepted) << text;
    }
    if (accepted) {
      ASSERT_EQ(SortValueToAddressNumber(IPAddressToSortValue(text)), ntohl(address.s_addr));
    }
  }
}

TEST(IPFunctionsTest, AddressesAreValidInTheFormsThatUsersWrite) {
  for (const char* text :
       {"0.0.0.0", "255.255.255.255", "001.002.003.004", "0000000001.2.3.4", "0255.0255.0255.0255",
        " 1 . 2\t.+3.4 ", "-0.1.2.3", "000000000000000000000000255.0.0.0"}) {
    EXPECT_TRUE(IsValidIPAddress(text)) << text;
  }
  // The rest of what is refused is compared with the system's reader above.
  for (const char* text : {"", "a.b.c.d", "1.2.3.-1", "1.2.3.1e1", "1.2.3.&H10", "1.2.3.+",
                           "1.2.3. ", "1.2.3.4 5", "4294967297.1.1.1", "\xB1.\xB2.3.4.5"}) {
    EXPECT_FALSE(IsValidIPAddress(text)) << text;
  }
  EXPECT_FALSE(IsValidIPAddress(std::string("1.2.3.4\0", 8)));
}

TEST(IPFunctionsTest, SortValuesAreTakenFromWhateverTheTextHolds) {
  struct {
    std::string text;
    double value;
  } const rows[] = {
      {"", 0},
      {"1.2.3.4/24", 1002003424},
      {"host 10.1.2.3", 10001002003},
      {"1..2.3", 1002003},
      {"999.999.999.999", 999999999999},
      {"1.2.3.1000", 1002004000},
      {"1.2.3." + std::string(400, '9'), 1002003},
      {std::string("1.2.\0003.4", 8), 1002003004},
  };
  for (const auto& row : rows) EXPECT_EQ(IPAddressToSortValue(row.text), row.value) << row.text;
}

TEST(IPFunctionsTest, NumbersThatAreNoSortValuesGiveTextsAllTheSame) {
  EXPECT_EQ(SortValueToIPAddress(999999999999), "999.999.999.999");
  EXPECT_EQ(SortValueToIPAddress(10000000001.75), "10.0.0.1");
  EXPECT_EQ(SortValueToIPAddress(-1), "-1.999.999.999");
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value : {kInfinity, -kInfinity, std::nan("")}) {
    EXPECT_EQ(SortValueToIPAddress(value), "0.0.0.0");
  }
  for (const double value : {kInfinity, std::nan(""), 1e15, -1e300, 1e-300}) {
    EXPECT_LE(SortValueToIPAddress(value).size(), 16U) << value;
    SortValueToAddressNumber(value);
  }
}

}  // namespace
}  // namespace quillan
