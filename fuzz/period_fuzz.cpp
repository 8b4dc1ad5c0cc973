// Reporting periods: whatever the text, a range is made of two date-times that can be shown.

#include <chrono>

#include "fuzz/fuzz.h"
#include "platform/text/ascii.h"
#include "settings/periods.h"

namespace quillan {
namespace {

class FixedClock final : public Clock {
 public:
  text::DateTime Now() const override {
    return std::chrono::local_days{std::chrono::year{2007} / std::chrono::June / 1} +
           std::chrono::hours{13};
  }
};

void ExpectShowable(text::DateTime value) {
  const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(value));
  fuzz::Expect(static_cast<int>(day.year()) >= 100 && static_cast<int>(day.year()) <= 9999,
               "years are 100 to 9999");
}

void Check(std::string_view input) {
  static const FixedClock clock;
  static const text::UserLocale locale("C");
  static const Periods periods(clock, locale);
  std::string text(input);
  const PeriodRange range = periods.Parse(text);
  ExpectShowable(range.start);
  ExpectShowable(range.end);
  fuzz::Expect(!text.empty(), "an empty text becomes a period");

  std::string again = text;
  const PeriodRange same = periods.Parse(again);
  fuzz::ExpectSame(again, text, "the text stays as it is the second time");
  fuzz::Expect(same.start == range.start && same.end == range.end, "the range stays");
  std::string upper = text::ToUpperAscii(text);
  const PeriodRange without_case = periods.Parse(upper);
  fuzz::Expect(without_case.start == range.start && without_case.end == range.end,
               "case does not count");

  const text::DateTime moment = periods.Period2DateTime(input);
  ExpectShowable(moment);
  if (moment != text::kZeroDate) {
    const std::string written = locale.GeneralDateText(moment);
    fuzz::Expect(periods.Period2DateTime(written) == moment, "a date-time is read back");
  }
  (void)periods.GenerateSelectionList(input);
}

}  // namespace
}  // namespace quillan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillan::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
