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

/// A range of time and the sample size that suits it.
struct PeriodRange {
  text::DateTime start;
  text::DateTime end;
  std::int16_t sample_minutes = 0;
  std::string_view sample_size;  // A number and "M" minutes, "H" hours or "D" days.
};

/// The reporting periods, in their order. Pointers to periods are valid until the collection
/// changes.
class Periods {
 public:
  /// Starts with the built-in periods. `clock` and `locale` must outlive the collection.
  Periods(const Clock& clock, const text::UserLocale& locale);

  /// The period at a position, from 1, or with a name (without regard to case); null if there is
  /// none.
  const Period* Item(int position) const;
  const Period* Item(std::string_view name) const;
  void Clear() { periods_.clear(); }
  int Count() const { return static_cast<int>(periods_.size()); }
  /// Removes a period; does nothing if there is none.
  void Remove(int position);
  void Remove(std::string_view name);
  auto begin() const { return periods_.begin(); }
  auto end() const { return periods_.end(); }

  /// Makes the built-in periods the only ones.
  void Refresh();

  /// The first period of which `text` is an alias (see Period::IsAlias); null if there is none.
  const Period* GetPeriod(std::string_view text) const;
  /// The date-time that `text` names, blanks around it aside: "NOW"; an offset back from now, in
  /// days
  /// ("-7") or in the unit whose letter follows the first blank ("-30 M": M or N minutes, S
  /// seconds, H hours, D, W or Y days, Q quarters), halves of a unit rounded to the even neighbour;
  /// or a date-time in the user's form. text::kZeroDate for anything else and for results outside
  /// the years 100 to 9999.
  text::DateTime Period2DateTime(std::string_view text) const;
  /// The range that `text` names: an alias of a built-in period, whether or not the collection has
  /// it, or a custom range of one or two date-times, "start~end" or "start", which ends five
  /// minutes from now (see `Period2DateTime`). A date-time that cannot be read is text::kZeroDate.
  /// `text` loses the blanks around it; an empty one becomes "Today".
  PeriodRange Parse(std::string& text) const;
  /// The options of an HTML selection box, one line a period, the one of which `current_period` is
  /// an alias selected. Names are not escaped.
  std::string GenerateSelectionList(std::string_view current_period) const;

 private:
  text::DateTime ToDateTime(std::string_view text, text::DateTime now) const;
  std::vector<Period>::const_iterator Find(std::string_view name) const;

  const Clock& clock_;
  const text::UserLocale& locale_;
  std::vector<Period> periods_;
};

}  // namespace quillan
