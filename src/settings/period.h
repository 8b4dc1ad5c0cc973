#pragma once

#include <string>
#include <string_view>

namespace quillan {

/// One named reporting period, such as "Last Hour". Immutable.
class Period {
 public:
  Period(std::string_view name, std::string_view aliases, std::string_view sample_size,
         bool includes_present)
      : name_(name),
        aliases_(aliases),
        sample_size_(sample_size),
        includes_present_(includes_present) {}

  /// The display name, the key in a Periods collection.
  const std::string& Name() const { return name_; }
  /// The names by which users may name the period: upper-case, separated by commas.
  const std::string& Aliases() const { return aliases_; }
  /// The sample size that suits the period: a number and "M" minutes, "H" hours or "D" days.
  const std::string& SampleSize() const { return sample_size_; }
  /// Whether the period reaches the present moment.
  bool IncludesPresent() const { return includes_present_; }

  /// Whether `text` in upper case is one of the aliases or the name. Blanks count.
  bool IsAlias(std::string_view text) const;

 private:
  std::string name_;
  std::string aliases_;
  std::string sample_size_;
  bool includes_present_;
};

/// Whether `name` is one of the comma-separated `aliases`.
bool IsListedAlias(std::string_view aliases, std::string_view name);

}  // namespace quillan
