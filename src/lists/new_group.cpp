#include "lists/new_group.h"

#include "ip/ip_functions.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr const char* kStartField = "StartIPAddress";
constexpr const char* kEndField = "EndIPAddress";

std::string NestedMessage(std::string_view name, std::string_view where) {
  return "IP address groups may overlap but cannot be nested within another group.\r\n"
         "An IP address group (" +
         std::string(name) + ") already exists " + std::string(where) +
         "that is nested with\r\n"
         "the IP address range you are attempting to add.\r\n\r\n"
         "Please change the starting or ending IP Addresses you are adding.";
}

// The first row whose range lies within start..end or contains it.
std::optional<int> FindNestedRow(const Grid& grid, double start, double end) {
  for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
    const double row_start = IPAddressToSortValue(grid.Text(row, kGroupStartColumn));
    const double row_end = IPAddressToSortValue(grid.Text(row, kGroupEndColumn));
    if ((start >= row_start && end <= row_end) || (row_start >= start && row_end <= end)) {
      return row;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<Refusal> RefuseNewGroup(std::string_view start_text, std::string_view end_text,
                                      const Grid* grid, FlowDatabase& database,
                                      std::string_view description) {
  if (!IsValidIPAddress(start_text)) {
    return Refusal{"Please enter a valid starting IP Address.", kStartField};
  }
  if (!IsValidIPAddress(end_text)) {
    return Refusal{"Please enter a valid ending IP Address.", kEndField};
  }
  const double start = IPAddressToSortValue(start_text);
  const double end = IPAddressToSortValue(end_text);
  if (start > end) {
    return Refusal{
        "The ENDING IP Address cannot be less than the STARTING IP Address.\r\n"
        "Please change one of the IP Addresses.",
        kEndField};
  }
  if (grid != nullptr) {
    if (const auto row = FindNestedRow(*grid, start, end)) {
      return Refusal{NestedMessage(grid->Text(*row, kGroupNameColumn), "in your list "),
                     kStartField};
    }
  }
  const std::string first = text::FormatDigits(start);
  const std::string last = text::FormatDigits(end);
  const auto rows = database.OpenRecordset(
      "Select * From IPAddressGroups Where (IPRangeStart >=" + first + " and IPRangeEnd <=" + last +
      ") OR (IPRangeStart <=" + first + " and IPRangeEnd >=" + last + ")");
  if (!rows) {
    return Refusal{
        "Could not check whether the range is nested with an existing group.\r\n"
        "Please try again later.\r\n\r\n" +
            database.LastError(),
        kStartField};
  }
  if (!rows->Eof()) {
    return Refusal{NestedMessage(ado::ToText(rows->Fields("IPAddressGroupName").Value()), ""),
                   kStartField, true};
  }
  const auto longest = static_cast<int>(rows->ColumnSize("IPAddressGroupName"));
  if (const std::string reason = RefuseDescription(description, longest); !reason.empty()) {
    return Refusal{reason, "Description"};
  }
  return std::nullopt;
}

}  // namespace quillan
