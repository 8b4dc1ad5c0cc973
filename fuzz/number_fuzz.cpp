// Numbers and addresses against the C library.

#include <arpa/inet.h>

#include <cctype>
#include <cmath>
#include <cstring>

#include "fuzz/fuzz.h"
#include "ip/ip_functions.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

// The longest prefix, blanks aside, that is a decimal number; "0" if there is none.
std::string LeadingDecimal(std::string_view text) {
  std::string all;
  for (const char c : text) {
    if (std::string_view(" \t\r\n").find(c) == std::string_view::npos) all += c;
  }
  std::size_t at = 0;
  const auto digits = [&] {
    const std::size_t start = at;
    while (at < all.size() && all[at] >= '0' && all[at] <= '9') ++at;
    return at - start;
  };
  const auto sign = [&] {
    if (at < all.size() && (all[at] == '+' || all[at] == '-')) ++at;
  };
  sign();
  std::size_t count = digits();
  if (at < all.size() && all[at] == '.') {
    ++at;
    count += digits();
  }
  if (count == 0) return "0";
  const std::size_t mantissa = at;
  if (at < all.size() && (all[at] == 'e' || all[at] == 'E')) {
    ++at;
    sign();
    if (digits() == 0) at = mantissa;
  }
  return all.substr(0, at);
}

void CheckNumber(std::string_view text) {
  const double value = text::ReadLeadingNumber(text);
  const double expected = std::strtod(LeadingDecimal(text).c_str(), nullptr);
  // A number too small for its format may come out as 0.
  fuzz::Expect(value == expected || (std::fabs(expected) < 1e-307 && value == 0),
               "the number at the start");
  const auto whole = text::ReadLeadingWhole(text);
  const double rounded = std::nearbyint(expected);
  fuzz::Expect(whole.has_value() == (std::fabs(rounded + 0.5) < 2147483648.0),
               "whole numbers have 32 bits");
  fuzz::Expect(!whole || *whole == rounded, "halves round to even");
  if (std::isfinite(value) && std::fabs(value) > 1e-300) {
    const double again = text::ReadLeadingNumber(text::FormatGeneral(value));
    fuzz::Expect(std::fabs(again - value) <= std::fabs(value) * 1e-14, "15 digits survive");
  }
}

void CheckAddress(const std::string& text) {
  const double value = IPAddressToSortValue(text);
  in_addr address{};
  if (inet_pton(AF_INET, text.c_str(), &address) == 1 && std::strlen(text.c_str()) == text.size()) {
    fuzz::Expect(IsValidIPAddress(text), "inet_pton takes the address");
    fuzz::Expect(SortValueToAddressNumber(value) == ntohl(address.s_addr), "the address");
  }
  if (!IsValidIPAddress(text)) return;
  const std::string canonical = SortValueToIPAddress(value);
  fuzz::Expect(inet_pton(AF_INET, canonical.c_str(), &address) == 1, "the usual form is valid");
  fuzz::Expect(IPAddressToSortValue(canonical) == value, "the usual form is the same address");
}

}  // namespace
}  // namespace quillan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  quillan::CheckNumber(text);
  quillan::CheckAddress(text);
  double value = 0;
  if (size >= sizeof value) {
    std::memcpy(&value, data, sizeof value);
    (void)quillan::SortValueToIPAddress(value);
    (void)quillan::text::FormatGeneral(value);
  }
  return 0;
}
