#include "ip/address_range.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace quillan {
namespace {

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
  const auto range = std::get<AddressRange>(ParseAddressRange("10.1.2.3/16"));
  EXPECT_EQ(range.note,
            "10.1.2.3 is not the first address of a /16 network: the range is that of the "
            "network, 10.1.0.0-10.1.255.255.");
  EXPECT_EQ(range.start_value, 10001000000.0);
  EXPECT_EQ(range.end_value, 10001255255.0);
}

}  // namespace
}  // namespace quillan
