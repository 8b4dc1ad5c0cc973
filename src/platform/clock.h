#pragma once

#include "platform/text/date_time.h"

namespace quillan {

/// Tells the time; a test scripts it.
class Clock {
 public:
  virtual ~Clock() = default;
  /// The current local date-time.
  virtual text::DateTime Now() const = 0;
};

/// The computer's own clock, in the time zone of the process.
class SystemClock final : public Clock {
 public:
  text::DateTime Now() const override;
};

}  // namespace quillan
