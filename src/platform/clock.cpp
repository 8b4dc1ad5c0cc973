#include "platform/clock.h"

#include <time.h>

#include <chrono>

namespace quillan {

text::DateTime SystemClock::Now() const {
  const time_t now = time(nullptr);
  tm parts{};
  localtime_r(&now, &parts);
  // timegm reads the local parts as if they were UTC, which is what a date-time without a zone is.
  return text::DateTime{std::chrono::seconds{timegm(&parts)}};
}

}  // namespace quillan
