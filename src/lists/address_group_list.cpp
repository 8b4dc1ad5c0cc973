#include "lists/address_group_list.h"

#include <array>
#include <limits>

#include "db/sql_text.h"
#include "ip/ip_functions.h"
#include "lists/address_lookup.h"
#include "platform/text/number.h"
#include "suite/application.h"

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
    .key_columns = kGroupEndColumn,
    .system_field = "System",
    .editable_column = kGroupNameColumn,
    .last_update_setting = "LastIPAddressGroupUpdate",
    .filter = FilterKind::kGroups,
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

void AddressGroupList::OnRowLoaded(ado::Recordset& rows, Grid& grid, int row) {
  GridRowData& data = grid.RowData(row);
  const std::int64_t id = ado::ToWhole(rows.Fields("IPAddressGroupID").Value());
  data.id = id > 0 && id <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(id)
                                                                     : kNoIdentifier;
  data.has_range =
      HoldsRange(rows.Fields("IPRangeStart").Value(), rows.Fields("IPRangeEnd").Value());
}

GroupRange AddressGroupList::RangeOf(const Grid& grid, int row) {
  const std::int32_t id = grid.RowData(row).id;
  return {IPAddressToSortValue(grid.Text(row, kGroupStartColumn)),
          IPAddressToSortValue(grid.Text(row, kGroupEndColumn)),
          grid.Check(row, 0) == CheckState::kChecked,
          id == kNoIdentifier ? std::nullopt : std::optional(id)};
}

std::string AddressGroupList::FilterNote(const ListFilter& filter, bool ask_database) {
  if (!filter.Address()) return {};
  const AddressLookup lookup = LookUpAddress(Table(), *filter.Address());
  std::string note = DescribeLookup(Table(), lookup);
  if (!ask_database) return note;
  if (const auto hint = DescribeStoredGroup(Table(), lookup, services().database)) {
    note += " " + *hint;
  }
  const std::string address = SortValueToIPAddress(*filter.Address());
  const std::string host = Application(services().database).LookupEndpointName(address);
  if (!host.empty() && host != address) note += " Its host name is " + host + ".";
  return note;
}

std::string AddressGroupList::Key(const Grid& grid, int row) const {
  if (!grid.RowData(row).has_range) return "id " + std::to_string(grid.RowData(row).id);
  const GroupRange range = RangeOf(grid, row);
  return text::FormatDigits(range.start) + "-" + text::FormatDigits(range.end);
}

std::string AddressGroupList::RowName(const Grid& grid, int row) const {
  return std::string(grid.Text(row, kGroupStartColumn)) + " - " +
         std::string(grid.Text(row, kGroupEndColumn));
}

bool AddressGroupList::IsNested(int row, const Grid& stored, int stored_row) const {
  if (!stored.RowData(stored_row).has_range) return false;
  const GroupRange ours = RangeOf(Table(), row);
  const GroupRange theirs = RangeOf(stored, stored_row);
  return (ours.start >= theirs.start && ours.end <= theirs.end) ||
         (theirs.start >= ours.start && theirs.end <= ours.end);
}

// Finds the stored group: by its range, and by its identifier where that is known; a group without
// a range by its identifier alone.
std::string AddressGroupList::Condition(int row) const {
  const GroupRange range = RangeOf(Table(), row);
  std::string by_id = "IPAddressGroupID=" + std::to_string(range.id.value_or(kNoIdentifier));
  if (!HasRange(row)) return by_id;
  return "IPRangeStart=" + text::FormatDigits(range.start) + " and IPRangeEnd" +
         (State(row) == RowState::kDeleted ? " =" : "=") + text::FormatDigits(range.end) +
         (range.id ? " and " + by_id : "");
}

std::optional<std::int64_t> AddressGroupList::CountEndpoints(int row) const {
  if (!HasRange(row)) return std::nullopt;
  const GroupRange range = RangeOf(Table(), row);
  const auto rows = services().database.OpenRecordset(
      "Select count(*) as EndpointCount From FlowCorrelation Where IPAddressSort >=" +
      text::FormatDigits(range.start) + " and IPAddressSort <=" + text::FormatDigits(range.end));
  if (!rows || rows->Eof()) return std::nullopt;
  return ado::ToWhole(rows->Fields("EndpointCount").Value());
}

std::string AddressGroupList::RowNote(int row) const {
  const auto count = CountEndpoints(row);
  return count ? "Known endpoints in this range: " + std::to_string(*count) : "";
}

void AddressGroupList::OnSyncBegins() {
  regrouping_.emplace(services().database, services().messages);
}

void AddressGroupList::OnSyncEnds() {
  regrouping_.reset();
  EmptyGrid();
}

std::string AddressGroupList::Statement(int row) const {
  const GroupRange range = RangeOf(Table(), row);
  const std::string name = SqlText(Table().Text(row, kGroupNameColumn));
  const std::string enabled(Enabled(row));
  switch (State(row)) {
    case RowState::kDeleted:
      return "Delete From IPAddressGroups Where " + Condition(row);
    case RowState::kNew:
      return "Insert Into IPAddressGroups (IPRangeStart, IPRangeEnd, IPAddressGroupName, System, "
             "Enabled) Values (" +
             text::FormatDigits(range.start) + "," + text::FormatDigits(range.end) + "," + name +
             ",0," + enabled + ")";
    default:
      return "Update IPAddressGroups Set IPAddressGroupName=" + name + ", Enabled=" + enabled +
             " Where " + Condition(row);
  }
}

std::optional<std::int32_t> AddressGroupList::StoredIdentifier(int row) const {
  const GroupRange range = RangeOf(Table(), row);
  const auto rows = services().database.OpenRecordset(
      "Select IPAddressGroupID from IPAddressGroups WHERE IPRangeStart=" +
      text::FormatDigits(range.start) + " and IPRangeEnd=" + text::FormatDigits(range.end) +
      " and IPAddressGroupName=" + SqlText(Table().Text(row, kGroupNameColumn)));
  if (!rows || rows->Eof()) return std::nullopt;
  return static_cast<std::int32_t>(ado::ToWhole(rows->Fields("IPAddressGroupID").Value()));
}

void AddressGroupList::Write(int row) {
  GroupRange range = RangeOf(Table(), row);
  const auto execute = [&] { services().database.Execute(Statement(row)); };
  if (!HasRange(row)) return execute();
  switch (State(row)) {
    case RowState::kDeleted: {
      // A group that an earlier save deleted without freeing its endpoints is not stored any more.
      const bool stored = !range.id || Table().RowData(row).loaded_check != CheckState::kNone;
      regrouping_->BeforeDelete(range, stored);
      execute();
      regrouping_->AfterDelete(range);
      break;
    }
    case RowState::kNew:
      regrouping_->BeforeInsert(range);
      execute();
      range.id = StoredIdentifier(row);
      if (range.id) regrouping_->AfterInsert(range);
      break;
    default: {
      // One that an earlier save disabled without regrouping its endpoints.
      const GridRowData& data = Table().RowData(row);
      const bool disabled = data.kept && data.loaded_check == CheckState::kUnchecked;
      regrouping_->BeforeChange(range, !disabled);
      execute();
      regrouping_->AfterChange(range);
      break;
    }
  }
}

}  // namespace quillan
