#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillan::text {

/// The decimal number at the start of `text`: sign, digits, decimal point, exponent. Blanks and
/// line ends are skipped wherever they stand, so "20 55" is 2055; reading stops at the first
/// character that cannot continue the number; a text without a leading number gives 0.
double ReadLeadingNumber(std::string_view text);

/// `ReadLeadingNumber` rounded to a whole number, halves to the even neighbour; nothing when the
/// result does not fit a signed 32-bit integer.
std::optional<std::int32_t> ReadLeadingWhole(std::string_view text);

/// `value` rounded to a whole number, halves to the even neighbour, whatever the rounding mode.
double RoundHalfToEven(double value);

/// `value` in the shortest general decimal form of at most 15 significant digits, with a point as
/// the decimal separator ("39232.5", "1E+20").
std::string FormatGeneral(double value);

/// A whole-numbered `value` as plain decimal digits, without exponent, fraction or leading zeros.
std::string FormatDigits(double value);

}  // namespace quillan::text
