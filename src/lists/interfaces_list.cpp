#include "lists/interfaces_list.h"

#include <array>

#include "db/sql_text.h"

namespace quillan {
namespace {

constexpr int kInterfaceId = 3;
constexpr std::string_view kCaptionWidth = "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX";

constexpr std::array<ListColumn, 4> kColumns = {{
    {"Monitored", "XXXXXXXXX", Alignment::kCenter, "IsNetFlowSource"},
    {"Node Name  ", kCaptionWidth, Alignment::kLeft, "NodeCaption"},
    {"Interface Name", kCaptionWidth, Alignment::kLeft, "InterfaceCaption"},
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
  for (int row = Grid::kFixedRows; row < Table().Rows(); ++row) SetRowChecked(row, checked);
}

std::string InterfacesList::Key(const Grid& grid, int row) const {
  return SqlKey(grid.Text(row, kInterfaceId));
}

std::string InterfacesList::RowName(const Grid& grid, int row) const {
  return std::string(grid.Text(row, 1)) + ", " + std::string(grid.Text(row, 2)) + " (" +
         Key(grid, row) + ")";
}

std::string InterfacesList::Statement(int row) const {
  const std::string id = Key(Table(), row);
  return IsChecked(row) ? "if not exists (select * from NetFlowSources where InterfaceID = " + id +
                              ") insert into NetFlowSources (InterfaceID) values (" + id + ")"
                        : "delete from NetFlowSources where InterfaceID = " + id;
}

}  // namespace quillan
