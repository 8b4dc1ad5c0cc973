#include "lists/new_port.h"

#include <charconv>

#include "platform/text/number.h"

namespace quillan {

std::optional<std::int32_t> ReadPortNumber(std::string_view text) {
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc{} || read.ptr != end) return std::nullopt;
  return number;
}

std::variant<NewPort, Refusal> ValidateNewPort(std::string_view port_number,
                                               std::string_view description,
                                               FlowDatabase& database) {
  const auto refuse = [](const std::string& message, bool select_text) {
    return Refusal{message, "PortNumber", select_text};
  };
  const auto number = text::ReadLeadingWhole(port_number);
  if (!number || *number < kLowestPort || *number > kHighestPort) {
    return refuse("Please enter a Port Number from 1 to 65536.", false);
  }
  const std::string digits = std::to_string(*number);
  const auto rows = database.OpenRecordset("Select * From ServicePorts Where Port=" + digits);
  if (!rows) {
    return refuse("Could not check whether port " + digits +
                      " already exists.\r\nPlease try again later.\r\n\r\n" + database.LastError(),
                  false);
  }
  if (!rows->Eof()) {
    return refuse("Port number " + digits + " already exists as " +
                      ado::ToText(rows->Fields("ServiceName").Value()),
                  true);
  }
  const auto longest = static_cast<int>(rows->ColumnSize("ServiceName"));
  if (const std::string reason = RefuseDescription(description, longest); !reason.empty()) {
    return Refusal{reason, "Description"};
  }
  return NewPort{*number, std::string(description)};
}

}  // namespace quillan
