#include "lists/port_list.h"

#include <array>

#include "db/sql_text.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr std::array<ListColumn, 3> kColumns = {{
    {"Monitored", "XXXXXXXXX", Alignment::kCenter, "Enabled"},
    {"Port  ", "XXXXXXX", Alignment::kCenter, "Port"},
    {.header = "Description",
     .width_text = "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX",
     .alignment = Alignment::kLeft,
     .field = "ServiceName",
     .stretches = true},
}};

constexpr ListDescription kPorts = {
    .columns = kColumns,
    .query = "Select * From ServicePorts Order By Port",
    .system_field = "System",
    .editable_column = kPortDescriptionColumn,
    .last_update_setting = "LastServicePortUpdate",
    .filter = FilterKind::kPorts,
    .batch = true,
};

constexpr EditableListTexts kTexts = {
    .items = "Ports",
    .add_name = "cmdAddPort",
    .add_caption = "Add New Port",
    .delete_name = "cmdDeletePort",
    .delete_question = "Delete the selected ports ?",
    .system_before = "Port (",
    .system_name_column = kPortColumn,
    .system_after = ") is a system-defined port and cannot be deleted.",
    .system_uncheck = "You may still uncheck the 'Monitored' box for this port.",
    .system_ask_again =
        "Do you want to see this warning when attempting to delete additional system ports?",
};

}  // namespace

PortList::PortList(const ListServices& services, AddNewPort add_new_port)
    : EditableList(kPorts, kTexts, services), add_new_port_(std::move(add_new_port)) {}

void PortList::Add() {
  const auto port = add_new_port_();
  if (!port) return;
  Grid& grid = Table();
  const int top_row = grid.TopRow();
  AddRow({std::to_string(port->number), port->description});
  grid.Sort(kPortColumn, SortDirection::kAscending);
  grid.SetTopRow(top_row);
  for (int row = 0; row < grid.Rows(); ++row) {
    if (text::ReadLeadingNumber(grid.Text(row, kPortColumn)) == port->number) {
      grid.ShowCell(row, kPortColumn);
      break;
    }
  }
}

void PortList::OnImported() { Table().Sort(kPortColumn, SortDirection::kAscending); }

std::string PortList::Key(const Grid& grid, int row) const {
  return SqlKey(grid.Text(row, kPortColumn));
}

std::string PortList::Statement(int row) const {
  const std::string port = Key(Table(), row);
  const std::string name = SqlText(Table().Text(row, kPortDescriptionColumn));
  const std::string enabled(Enabled(row));
  switch (State(row)) {
    case RowState::kDeleted:
      return "Delete From ServicePorts Where Port=" + port;
    case RowState::kNew:
      return "Insert Into ServicePorts (Port, ServiceName, System, Enabled) Values (" + port + "," +
             name + ",0," + enabled + ")";
    default:
      return "Update ServicePorts Set ServiceName=" + name + ", Enabled=" + enabled +
             " Where Port=" + port;
  }
}

}  // namespace quillan
