#include "ip/ip_functions.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
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

TEST(IPFunctionsTest, AddressesAreValidInTheFormsThatUsersWrite) {
  for (const char* text :
       {"001.002.003.004", " 1 . 2\t.+3.4 ", "-0.1.2.3", "000000000000000000000000255.0.0.0"}) {
    EXPECT_TRUE(IsValidIPAddress(text)) << text;
  }
  for (const char* text :
       {"", "1.2.3", "1.2.3.", "1..2.3", "1.2.3.4.5", "1.2.3.256", "a.b.c.d", "1.2.3.-1",
        "1.2.3.1e1", "1.2.3.+", "1.2.3. ", "1.2.3.4 5", "4294967297.1.1.1", "\xB1.\xB2.3.4.5"}) {
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
      {"999.999.999.999", 999999999999},
      {"1.2.3.1000", 1002004000},
      {"1.2.3." + std::string(400, '9'), 1002003},
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
  EXPECT_LE(SortValueToIPAddress(-1e300).size(), 16U);
}

}  // namespace
}  // namespace quillan
