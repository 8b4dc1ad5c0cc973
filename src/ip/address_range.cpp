#include "ip/address_range.h"

#include <charconv>
#include <cstdint>

#include "ip/ip_functions.h"

namespace quillan {
namespace {

constexpr int kAddressBits = 32;
constexpr std::string_view kRangeMarks = "/-";

std::string_view TrimBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

AddressRange MakeRange(double start, double end) {
  return {SortValueToIPAddress(start), SortValueToIPAddress(end), start, end, {}};
}

std::variant<AddressRange, std::string> ParsePrefix(std::string_view address,
                                                    std::string_view length_text) {
  int length = -1;
  const char* end = length_text.data() + length_text.size();
  const auto read = std::from_chars(length_text.data(), end, length);
  if (read.ec != std::errc{} || read.ptr != end || length < 0 || length > kAddressBits) {
    return "The prefix length " + Quoted(length_text) + " is not a number from 0 to 32.";
  }
  const auto number =
      static_cast<std::uint32_t>(SortValueToAddressNumber(IPAddressToSortValue(address)));
  const std::uint32_t host_bits =
      length == 0 ? ~std::uint32_t{0} : (std::uint32_t{1} << (kAddressBits - length)) - 1;
  AddressRange range = MakeRange(AddressNumberToSortValue(number & ~host_bits),
                                 AddressNumberToSortValue(number | host_bits));
  if ((number & host_bits) != 0) {
    range.note = SortValueToIPAddress(AddressNumberToSortValue(number)) +
                 " is not the first address of a /" + std::to_string(length) +
                 " network: the range is that of the network, " +
                 FormatAddressRange(range.start, range.end) + ".";
  }
  return range;
}

}  // namespace

std::variant<AddressRange, std::string> ParseAddressRange(std::string_view text) {
  text = TrimBlanks(text);
  if (IsValidIPAddress(text)) {
    const double address = IPAddressToSortValue(text);
    return MakeRange(address, address);
  }
  const size_t mark = text.find_first_of(kRangeMarks);
  if (mark == std::string_view::npos) {
    return Quoted(text) + " is neither an IP address nor a range of addresses.";
  }
  const std::string_view first = TrimBlanks(text.substr(0, mark));
  const std::string_view second = TrimBlanks(text.substr(mark + 1));
  if (!IsValidIPAddress(first)) return Quoted(first) + " is not a valid IP address.";
  if (text[mark] == '/') return ParsePrefix(first, second);
  if (!IsValidIPAddress(second)) return Quoted(second) + " is not a valid IP address.";
  AddressRange range = MakeRange(IPAddressToSortValue(first), IPAddressToSortValue(second));
  if (range.start_value > range.end_value) {
    return "The range ends at " + range.end + ", before its start " + range.start + ".";
  }
  return range;
}

bool IsWrittenAsRange(std::string_view text) {
  // A part of an address may have a sign.
  return text.find_first_of(kRangeMarks) != std::string_view::npos &&
         !IsValidIPAddress(TrimBlanks(text));
}

std::string FormatAddressRange(std::string_view start, std::string_view end) {
  return std::string(start).append("-").append(end);
}

}  // namespace quillan
