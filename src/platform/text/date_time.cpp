#include "platform/text/date_time.h"

#include <cmath>
#include <string_view>

#include "platform/text/number.h"

namespace quillan::text {

std::string DurationText(std::int32_t days, std::int32_t hours, std::int32_t minutes,
                         std::int32_t seconds) {
  constexpr double kDay = 86400;
  constexpr double kHour = 3600;
  constexpr double kMinute = 60;
  // As double, in which no product of 32-bit numbers overflows or rounds.
  double total = days * kDay + hours * kHour + minutes * kMinute + seconds;
  std::string result;
  const auto append = [&](double count, std::string_view unit) {
    if (!result.empty()) result += ", ";
    result.append(FormatDigits(count)).append(unit);
  };
  const auto take = [&](double unit_seconds, std::string_view unit) {
    if (total <= unit_seconds) return;
    append(std::floor(total / unit_seconds), unit);
    total = std::fmod(total, unit_seconds);
  };
  take(kDay, " days");
  take(kHour, " hours");
  take(kMinute, " minutes");
  if (total > 0) append(total, " seconds");
  return result;
}

}  // namespace quillan::text
