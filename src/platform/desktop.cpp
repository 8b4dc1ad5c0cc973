#include "platform/desktop.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <string_view>

#include "platform/text/ascii.h"

namespace quillan {

std::string Desktop::ComputerName() const {
  std::array<char, HOST_NAME_MAX + 1> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return {};
  const std::string full(name.data());
  return full.substr(0, full.find('.'));
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

}  // namespace quillan
