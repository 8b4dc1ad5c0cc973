#include "lists/address_group_list.h"

#include <array>
#include <limits>

#include "db/sql_text.h"
#include "ip/ip_functions.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr std::string_view kAddressWidth = "XXXXXXXXXXXXXX";
constexpr std::int32_t kNoIdentifier = 0;

std::string FormatAddress(const ado::Value& value) {
  return SortValueToIPAddress(ado::ToNumber(value));
}

constexpr std::array<ListColumn, 4> kColumns = {{
    {"Managed", "XXXXXXXXX", Alignment::kCenter, "Enabled"},
    {"IP Start Range", kAddressWidth, Alignment::kLeft, "IPRangeStart", FormatAddress},
    {"IP End Range  ", kAddressWidth, Alignment::kLeft, "IPRangeEnd", FormatAddress},
    {.header = "Description",
     .width_text = "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX",
     .alignment = Alignment::kLeft,
     .field = "IPAddressGroupName",
     .stretches = true},
}};

constexpr ListDescription kGroups = {
    .columns = kColumns,
    .query = "Select * From IPAddressGroups Order By IPRangeStart",
    .system_field = "System",
    .editable_column = kGroupNameColumn,
    .last_update_setting = "LastIPAddressGroupUpdate",
};

constexpr EditableListTexts kTexts = {
    .items = "Groups",
    .add_name = "cmdAddGroup",
    .add_caption = "Add New Groups",
    .delete_name = "cmdDeleteGroup",
    .delete_question = "Delete the selected IP Address Group?",
    .system_before = "IP Address Group (",
    .system_name_column = kGroupNameColumn,
    .system_after = ") is a system-defined range and cannot be deleted.",
    .system_uncheck = "You may still uncheck the 'Managed' box for this IP Address Group.",
    .system_ask_again =
        "Do you want to see this warning when attempting to delete additional "
        "system IP Address groups?",
};

}  // namespace

AddressGroupList::AddressGroupList(const ListServices& services, Settings& settings,
                                   AddNewAddressGroup add_new_group)
    : EditableList(kGroups, kTexts, services),
      settings_(settings),
      add_new_group_(std::move(add_new_group)) {}

bool AddressGroupList::OnSortRequest(int column) {
  if (column != kGroupStartColumn && column != kGroupEndColumn) return false;
  const bool descending = settings_.SortToggle() != 1;
  settings_.SetSortToggle(descending ? 1 : 0);
  const Grid& grid = Table();
  Table().SortByKey(column, descending ? SortDirection::kDescending : SortDirection::kAscending,
                    [&](int row) { return IPAddressToSortValue(grid.Text(row, column)); });
  return true;
}

void AddressGroupList::Add() {
  Grid& grid = Table();
  const auto group = add_new_group_(grid);
  if (!group) return;
  const int top_row = grid.TopRow();
  AddRow({group->start, group->end, group->description});
  grid.SetTopRow(top_row);
  for (int row = 0; row < grid.Rows(); ++row) {
    if (grid.Text(row, kGroupStartColumn) == group->start) {
      grid.ShowCell(row, kGroupStartColumn);
      break;
    }
  }
}

void AddressGroupList::OnRowLoaded(ado::Recordset& rows, int row) {
  GridRowData& data = Table().RowData(row);
  const std::int64_t id = ado::ToWhole(rows.Fields("IPAddressGroupID").Value());
  data.id = id > 0 && id <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(id)
                                                                     : kNoIdentifier;
  data.has_range =
      HoldsRange(rows.Fields("IPRangeStart").Value(), rows.Fields("IPRangeEnd").Value());
}

GroupRange AddressGroupList::RangeOf(int row) const {
  const Grid& grid = Table();
  const std::int32_t id = grid.RowData(row).id;
  return {IPAddressToSortValue(grid.Text(row, kGroupStartColumn)),
          IPAddressToSortValue(grid.Text(row, kGroupEndColumn)), IsChecked(row),
          id == kNoIdentifier ? std::nullopt : std::optional(id)};
}

// Finds the stored group: by its range, and by its identifier where that is known; a group without
// a range by its identifier alone.
std::string AddressGroupList::Condition(int row) const {
  const GroupRange range = RangeOf(row);
  std::string by_id = "IPAddressGroupID=" + std::to_string(range.id.value_or(0));
  if (!HasRange(row)) return by_id;
  return "IPRangeStart=" + text::FormatDigits(range.start) + " and IPRangeEnd" +
         (State(row) == RowState::kDeleted ? " =" : "=") + text::FormatDigits(range.end) +
         (range.id ? " and " + by_id : "");
}

void AddressGroupList::OnSyncBegins() {
  regrouping_.emplace(services().database, services().messages);
}

void AddressGroupList::OnSyncEnds() {
  regrouping_.reset();
  Table().Reset(0, {});
}

void AddressGroupList::WriteChanged(int row) {
  const GroupRange range = RangeOf(row);
  const bool regroup = HasRange(row);
  if (regroup) regrouping_->BeforeChange(range);
  services().database.Execute("Update IPAddressGroups Set IPAddressGroupName=" +
                              SqlText(Table().Text(row, kGroupNameColumn)) + ", Enabled=" +
                              std::string(Enabled(row)) + " Where " + Condition(row));
  if (regroup) regrouping_->AfterChange(range);
}

void AddressGroupList::WriteDeleted(int row) {
  const GroupRange range = RangeOf(row);
  const bool regroup = HasRange(row);
  if (regroup) regrouping_->BeforeDelete(range);
  services().database.Execute("Delete From IPAddressGroups Where " + Condition(row));
  if (regroup) regrouping_->AfterDelete(range);
}

void AddressGroupList::WriteNew(int row) {
  GroupRange range = RangeOf(row);
  const std::string start = text::FormatDigits(range.start);
  const std::string end = text::FormatDigits(range.end);
  const std::string name = SqlText(Table().Text(row, kGroupNameColumn));
  FlowDatabase& database = services().database;
  regrouping_->BeforeInsert(range);
  database.Execute(
      "Insert Into IPAddressGroups (IPRangeStart, IPRangeEnd, IPAddressGroupName, System, Enabled) "
      "Values (" +
      start + "," + end + "," + name + ",0," + std::string(Enabled(row)) + ")");
  const auto rows = database.OpenRecordset(
      "Select IPAddressGroupID from IPAddressGroups WHERE IPRangeStart=" + start +
      " and IPRangeEnd=" + end + " and IPAddressGroupName=" + name);
  if (!rows || rows->Eof()) return;
  range.id = static_cast<std::int32_t>(ado::ToWhole(rows->Fields("IPAddressGroupID").Value()));
  regrouping_->AfterInsert(range);
}

}  // namespace quillan
