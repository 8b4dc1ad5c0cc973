#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/text/date_time.h"
#include "platform/text/user_locale.h"
#include "settings/period.h"

namespace quillan {

/// A stretch of time and the sample size that suits it.
struct PeriodRange {
  text::DateTime start;
  text::DateTime end;
  std::int16_t sample_minutes = 0;
  std::string_view sample_size;  // A number and "M" minutes, "H" hours or "D" days.
};

/// The reporting periods, in their order. Pointers to periods stay good until the collection
/// changes.
class Periods {
 public:
  /// Holds the built-in periods at once. `clock` and `locale` must outlive the collection.
  Periods(const Clock& clock, const text::UserLocale& locale);

  /// The period at a position, from 1, or with a name (without regard to case); null when there is
  /// none.
  const Period* Item(int position) const;
  const Period* Item(std::string_view name) const;
  void Clear() { periods_.clear(); }
  int Count() const { return static_cast<int>(periods_.size()); }
  /// Takes a period out; nothing happens when there is none.
  void Remove(int position);
  void Remove(std::string_view name);
  auto begin() const { return periods_.begin(); }
  auto end() const { return periods_.end(); }

  /// Makes the built-in periods the only ones.
  void Refresh();

  /// The first period of which `text` is an alias (see Period::IsAlias); null when there is none.
  const Period* GetPeriod(std::string_view text) const;
  /// The date-time that `text` expresses (see ReadDateExpression); text::kZeroDate when none.
  text::DateTime Period2DateTime(std::string_view text) const;
  /// The range that `text` means: an alias of a built-in period, whether or not the collection
  /// holds it, or a custom range of one or two expressions, "start~end" or "start", which ends five
  /// minutes from now. An expression that cannot be read gives text::kZeroDate for its end of the
  /// range. `text` loses the blanks around it; an empty one becomes "Today".
  PeriodRange Parse(std::string& text) const;
  /// The options of an HTML selection box, one line a period, the one of which `current_period` is
  /// an alias selected. Names are not escaped.
  std::string GenerateSelectionList(std::string_view current_period) const;

 private:
  std::vector<Period>::const_iterator Find(std::string_view name) const;

  const Clock& clock_;
  const text::UserLocale& locale_;
  std::vector<Period> periods_;
};

}  // namespace quillan
