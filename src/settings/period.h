#pragma once

#include <string>
#include <string_view>

namespace quillan {

/// One named reporting period, such as "Last Hour". Never changes once it is made.
class Period {
 public:
  Period(std::string_view name, std::string_view aliases, std::string_view sample_size,
         bool includes_present)
      : name_(name),
        aliases_(aliases),
        sample_size_(sample_size),
        includes_present_(includes_present) {}

  /// The display name, by which a Periods collection finds the period.
  const std::string& Name() const { return name_; }
  /// The names by which users may name the period: upper-case, separated by commas.
  const std::string& Aliases() const { return aliases_; }
  /// The sample size that suits the period: a number and "M" minutes, "H" hours or "D" days.
  const std::string& SampleSize() const { return sample_size_; }
  /// Whether the period reaches the present moment.
  bool IncludesPresent() const { return includes_present_; }

  /// Whether `text`, without regard to case but blank for blank, is one of the aliases (or, in
  /// upper case, the name itself).
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
