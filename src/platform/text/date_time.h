#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace quillan::text {

/// A calendar date-time in local time, to the second; without a zone.
using DateTime = std::chrono::local_seconds;

/// 30 December 1899 00:00:00: day 0 of the serial day numbers, and the value for a date-time
/// that could not be read.
inline constexpr DateTime kZeroDate{
    std::chrono::local_days{std::chrono::year{1899} / std::chrono::December / 30}};

/// The days from `kZeroDate` to `value`, with the time of day as the fraction (Microsoft's
/// automation date; before `kZeroDate` simply negative).
constexpr double SerialDayNumber(DateTime value) {
  return static_cast<double>((value - kZeroDate).count()) / 86400.0;
}

/// A duration in words ("1 days, 2 hours"). A unit appears only if more than one of it is left,
/// and always in the plural: one day reads "24 hours", 90 seconds "1 minutes, 30 seconds". Empty
/// for a duration of 0 or less.
std::string DurationText(std::int32_t days, std::int32_t hours, std::int32_t minutes,
                         std::int32_t seconds);

}  // namespace quillan::text
