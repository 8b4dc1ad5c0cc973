#include "shell/shell.h"

#include <cmath>

#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {

std::string_view TrimAtNull(std::string_view text) { return text.substr(0, text.find('\0')); }

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
    result.append(text::FormatDigits(count)).append(unit);
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

std::string FileNameFromPath(std::string_view path, FileExtension extension) {
  const size_t separator = path.find_last_of("/\\");
  if (separator != std::string_view::npos) path.remove_prefix(separator + 1);
  const size_t colon = path.rfind(':');
  if (colon != std::string_view::npos) path.remove_prefix(colon + 1);
  if (extension == FileExtension::kDrop) path = path.substr(0, path.rfind('.'));
  return std::string(path);
}

ado::Value NullToZero(const ado::Value& value) {
  return ado::IsNull(value) ? ado::Value(std::int64_t{0}) : value;
}

void OpenInBrowser(Desktop& desktop, MessageBox& messages, const std::string& url) {
  switch (desktop.OpenUrl(url)) {
    case OpenUrlResult::kOpened:
      break;
    case OpenUrlResult::kNoBrowser:
      messages.Show("Could not find default Browser", "Browser Not Found", MessageButtons::kOk,
                    MessageIcon::kExclamation);
      break;
    case OpenUrlResult::kNotOpened:
      messages.Show("Web Page not Opened", "URL Failed", MessageButtons::kOk,
                    MessageIcon::kExclamation);
      break;
  }
}

std::string LocalComputerName(const Desktop& desktop) {
  const std::string name = desktop.ComputerName();
  std::string_view trimmed = text::TrimSpaces(name);
  while (trimmed.ends_with('\0')) {
    trimmed.remove_suffix(1);
    trimmed = text::TrimSpaces(trimmed);
  }
  return std::string(trimmed);
}

int ScreenColorDepth(const Desktop& desktop) { return desktop.ColorDepth(); }

}  // namespace quillan
