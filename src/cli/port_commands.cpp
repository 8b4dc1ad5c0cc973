#include "cli/list_commands.h"
#include "lists/port_list.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

const ListOutput kPorts = {
    .columns = {{"Monitored", "monitored", ValueKind::kBoolean},
                {"Port", "port", ValueKind::kNumber},
                {"Description", "description"},
                {"System", "system", ValueKind::kBoolean}},
    .values =
        [](const Grid& grid, int row) {
          return std::vector<std::string>{std::string(CheckWord(grid.Check(row, 0))),
                                          std::string(grid.Text(row, kPortColumn)),
                                          std::string(grid.Text(row, kPortDescriptionColumn)),
                                          grid.RowData(row).system ? "yes" : "no"};
        },
    .filter = FilterKind::kPorts,
    .add_button = "cmdAddPort",
    .delete_button = "cmdDeletePort",
};

class PortCommands final : public CommandList {
 public:
  explicit PortCommands(Session& session)
      : list_(session.Services(), [this, &session] { return NewPortOf(session); }) {}

  EditableList& List() override { return list_; }
  const ListOutput& Output() const override { return kPorts; }

  int Find(std::string_view key, std::string& reason) override {
    const auto number = ReadPortNumber(key);
    for (int row = Grid::kFixedRows; number && row < list_.Table().Rows(); ++row) {
      if (ReadPortNumber(list_.Table().Text(row, kPortColumn)) == number) return row;
    }
    reason = "there is no port " + std::string(key);
    return 0;
  }

 private:
  std::optional<NewPort> NewPortOf(Session& session) {
    // A number that has something behind it is not cut here, as in a text box, but refused.
    const Options& options = session.options();
    const auto checked = ValidateNewPort(ReadPortNumber(options.key) ? options.key : "",
                                         options.name, session.database());
    if (const auto* refusal = std::get_if<Refusal>(&checked)) return Refuse(refusal->message);
    return std::get<NewPort>(checked);
  }

  PortList list_;
};

}  // namespace

std::unique_ptr<CommandList> Ports(Session& session) {
  return std::make_unique<PortCommands>(session);
}

}  // namespace quillan
