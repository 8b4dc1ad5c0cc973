#include "lists/interfaces_list.h"

#include <array>

#include "db/sql_text.h"

namespace quillan {
namespace {

constexpr std::string_view kCaptionWidth = "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX";

constexpr std::array<ListColumn, 4> kColumns = {{
    {"Monitored", "XXXXXXXXX", Alignment::kCenter, "IsNetFlowSource"},
    {.header = "Node Name  ",
     .width_text = kCaptionWidth,
     .alignment = Alignment::kLeft,
     .field = "NodeCaption",
     .stretches = true,
     .digits_by_value = true},
    {.header = "Interface Name",
     .width_text = kCaptionWidth,
     .alignment = Alignment::kLeft,
     .field = "InterfaceCaption",
     .stretches = true,
     .digits_by_value = true},
    {"Interface Id", "XXXXXXXXX", Alignment::kLeft, "InterfaceID"},
}};

constexpr ListDescription kInterfaces = {
    .columns = kColumns,
    .query =
        "SELECT n.Caption NodeCaption, i.Caption InterfaceCaption, i.InterfaceID, "
        "ISNUMERIC(s.InterfaceID ) IsNetFlowSource "
        "FROM Interfaces i "
        "INNER JOIN Nodes n ON i.NodeID = n.NodeID "
        "LEFT JOIN NetflowSources s on i.InterfaceID = s.InterfaceID",
    .finds_conflicts = false,  // Both statements leave what somebody else did already.
    .batch = true,
    .stops_at_failure = true,
};

}  // namespace

bool ForEachInterface(FlowDatabase& database,
                      const std::function<bool(const InterfaceRow& row)>& on_row) {
  return database.ReadInBlocks(kInterfaces.query, [&](ado::Recordset& rows) {
    if (rows.Eof()) return true;
    std::vector<ado::Field> fields;
    fields.reserve(kColumns.size());
    for (const ListColumn& column : kColumns) fields.push_back(rows.Fields(column.field));
    std::array<std::string, kColumns.size()> texts;
    const auto text = [&](size_t column) -> std::string_view {
      const ado::Value value = fields[column].Value();
      if (const auto* view = std::get_if<std::string_view>(&value)) return *view;
      return texts[column] = ado::ToText(value);
    };
    for (; !rows.Eof(); rows.MoveNext()) {
      if (!on_row({ado::ToBoolean(fields[0].Value()), text(1), text(2), text(3)})) return false;
    }
    return true;
  });
}

InterfacesList::InterfacesList(const ListServices& services)
    : CheckableList(kInterfaces, services) {}

std::vector<ListCommand> InterfacesList::Commands() {
  using enum CommandPlace;
  using enum CommandEnabled;
  return {
      {"cmdSelectAll", "Select All", kTop, kAlways, [this] { SetAllChecked(true); }},
      {"cmdSelectNone", "Select None", kTop, kAlways, [this] { SetAllChecked(false); }},
  };
}

void InterfacesList::SetAllChecked(bool checked) {
  const Edit edit(*this);
  for (int row = Grid::kFixedRows; row < Table().Rows(); ++row) {
    if (Table().IsShown(row)) SetRowChecked(row, checked);
  }
}

std::string InterfacesList::Key(const Grid& grid, int row) const {
  return SqlKey(grid.Text(row, kSourceIdColumn));
}

std::string InterfacesList::RowName(const Grid& grid, int row) const {
  return std::string(grid.Text(row, kSourceNodeColumn)) + ", " + std::string(grid.Text(row, 2)) +
         " (" + Key(grid, row) + ")";
}

std::string InterfacesList::Statement(int row) const {
  const std::string id = Key(Table(), row);
  return IsChecked(row) ? "if not exists (select * from NetFlowSources where InterfaceID = " + id +
                              ") insert into NetFlowSources (InterfaceID) values (" + id + ")"
                        : "delete from NetFlowSources where InterfaceID = " + id;
}

}  // namespace quillan
