#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillan::text {

/// The decimal number at the start of `text`: sign, digits, decimal point, exponent. Blanks and
/// line ends are skipped everywhere, so "20 55" is 2055; reading stops at the first character that
/// cannot continue the number. A text without a leading number gives 0, a number beyond the range
/// of a double infinity.
double ReadLeadingNumber(std::string_view text);

/// Whether `text` has a number that `ReadLeadingNumber` reads.
bool StartsWithNumber(std::string_view text);

/// The decimal number without a sign that the whole of `text` is: digits, decimal point, exponent.
/// Infinity beyond the range of a double. Nothing for any other text.
std::optional<double> ParseDecimal(const std::string& text);

/// `ReadLeadingNumber` rounded to an integer, halves to the even neighbour; nothing if the result
/// does not fit a signed 32-bit integer.
std::optional<std::int32_t> ReadLeadingWhole(std::string_view text);

/// `value` rounded to an integer, halves to the even neighbour, whatever the rounding mode.
double RoundHalfToEven(double value);

/// `value` in the shortest general decimal form of at most 15 significant digits, with a point as
/// the decimal separator ("39232.5", "1E+20").
std::string FormatGeneral(double value);

/// `value`, an integer, as plain decimal digits, without exponent, fraction or leading zeros.
std::string FormatDigits(double value);

}  // namespace quillan::text
