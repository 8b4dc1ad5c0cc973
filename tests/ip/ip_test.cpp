#include <arpa/inet.h>
#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ip/address_range.h"
#include "ip/ip_functions.h"
#include "ip/ip_groups.h"

namespace quillan {
namespace {

using testing::ElementsAre;

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

TEST(IPFunctionsTest, WhatIsNoAddressIsConvertedAllTheSame) {
  const std::pair<std::string, double> rows[] = {
      {"", 0},
      {"1.2.3.4/24", 1002003424},
      {"host 10.1.2.3", 10001002003},
      {"999.999.999.999", 999999999999},
      {"1.2.3.1000", 1002004000},
      {"1.2.3." + std::string(400, '9'), 1002003},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(IPAddressToSortValue(text), value) << text;
  EXPECT_EQ(SortValueToIPAddress(999999999999), "999.999.999.999");
  EXPECT_EQ(SortValueToIPAddress(10000000001.75), "10.0.0.1");
  EXPECT_EQ(SortValueToIPAddress(-1), "-1.999.999.999");
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value : {kInfinity, -kInfinity, std::nan("")}) {
    EXPECT_EQ(SortValueToIPAddress(value), "0.0.0.0");
  }
  EXPECT_LE(SortValueToIPAddress(-1e300).size(), 16U);
}

// "start-end", "*" behind it when there is a note; or the reason why the text is no range.
std::string Parsed(std::string_view text) {
  const auto result = ParseAddressRange(text);
  if (const auto* reason = std::get_if<std::string>(&result)) return *reason;
  const auto& range = std::get<AddressRange>(result);
  return FormatAddressRange(range.start, range.end) + (range.note.empty() ? "" : "*");
}

TEST(AddressRangeTest, RangesAreReadAsPeopleWriteThem) {
  const std::string_view ranges[][2] = {
      {"10.0.0.0/8", "10.0.0.0-10.255.255.255"},
      {" 10.0.4.0 / 22 ", "10.0.4.0-10.0.7.255"},
      {"1.2.3.4/0", "0.0.0.0-255.255.255.255*"},
      {"10.1.2.3/32", "10.1.2.3-10.1.2.3"},
      {"\t10.0.0.0 - 010.0.3.255", "10.0.0.0-10.0.3.255"},
      {"10.0.0.7", "10.0.0.7-10.0.0.7"},
      {"", "\"\" is neither an IP address nor a range of addresses."},
      {"10.0.0.256/8", "\"10.0.0.256\" is not a valid IP address."},
      {"10.0.0.0/33", "The prefix length \"33\" is not a number from 0 to 32."},
      {"10.0.0.0/8x", "The prefix length \"8x\" is not a number from 0 to 32."},
      {"10.0.0.5-10.0.0.4", "The range ends at 10.0.0.4, before its start 10.0.0.5."},
  };
  for (const auto& [text, expected] : ranges) EXPECT_EQ(Parsed(text), expected) << text;
  EXPECT_TRUE(IsWrittenAsRange("10.0.0.0 /x") && IsWrittenAsRange("-"));
  EXPECT_FALSE(IsWrittenAsRange("10.0.0.-0 ")) << "a part with a sign";
  EXPECT_EQ(std::get<AddressRange>(ParseAddressRange("10.1.2.3/16")).end_value, 10001255255.0);
}

TEST(IPGroupsTest, LargerGroupsComeFirstInTheOrderTheyCameAndAKeyIsTakenOnce) {
  const auto make = [](std::int32_t id, double size) {
    return std::make_shared<IPGroup>(IPGroup{id, 0, 0, size});
  };
  IPGroups groups;
  const auto ids = [&] {
    std::vector<std::int32_t> found;
    for (const auto& group : groups) found.push_back(group->GroupID);
    return found;
  };
  for (const auto& [id, size] : {std::pair{1, 256}, {2, 65536}, {3, 256}, {40000, 16777216}}) {
    groups.Add(make(id, size));
  }
  EXPECT_THAT(ids(), ElementsAre(40000, 2, 1, 3));
  EXPECT_THROW(groups.Add(make(1, 512)), std::invalid_argument);
  EXPECT_THROW(groups.Add(nullptr), std::invalid_argument);
  EXPECT_EQ(groups.Item("40000"), groups.Item(1));
  for (const int position : {0, 5}) EXPECT_EQ(groups.Item(position), nullptr);
  groups.Remove(4);
  groups.Remove("1");
  EXPECT_THAT(ids(), ElementsAre(40000, 2));
}

}  // namespace
}  // namespace quillan
