#include "suite/application.h"

#include <algorithm>

#include "db/sql_text.h"

namespace quillan {

std::string Application::LookupEndpointName(std::string_view ip_address) {
  const auto rows = database_.OpenRecordset(
      "Select Top 1 FullHostname From FlowCorrelation Where IPAddress=" + SqlText(ip_address));
  if (!rows || rows->Eof()) return std::string(ip_address);
  return ado::ToText(rows->Fields("FullHostname").Value());
}

std::string Application::ValidateIP(std::string_view text) {
  if (text.ends_with(')')) {
    const size_t open = text.find('(');
    if (open == std::string_view::npos) return {};
    text = text.substr(open + 1, text.size() - open - 2);
  }
  return std::count(text.begin(), text.end(), '.') >= 3 ? std::string(text) : std::string();
}

}  // namespace quillan
