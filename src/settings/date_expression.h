#pragma once

#include <string_view>

#include "platform/text/date_time.h"
#include "platform/text/user_locale.h"

namespace quillan {

/// The date-time that `text` expresses, blanks around it aside: "NOW"; an offset back from `now`,
/// in days ("-7") or in the unit whose letter follows the first blank ("-30 M": M or N minutes,
/// S seconds, H hours, D, W or Y days, Q quarters); or a date-time in the forms of `locale`.
/// text::kZeroDate for anything else, and for results outside the years 100 to 9999.
text::DateTime ReadDateExpression(std::string_view text, text::DateTime now,
                                  const text::UserLocale& locale);

/// `value` moved by whole calendar months; a day that the month lacks becomes its last one.
text::DateTime AddMonths(text::DateTime value, int months);

}  // namespace quillan
