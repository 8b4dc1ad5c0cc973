#include "cli/commands.h"
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
};

// The list of ports, whose user adds the port that the command line names.
class Ports {
 public:
  explicit Ports(Session& session)
      : list(session.Services(), [this, &session] { return NewPortOf(session); }) {}

  FindRow Find() {
    return [this](std::string_view key, std::string& reason) {
      const auto number = ReadPortNumber(key);
      for (int row = Grid::kFixedRows; number && row < list.Table().Rows(); ++row) {
        if (ReadPortNumber(list.Table().Text(row, kPortColumn)) == number) return row;
      }
      reason = "there is no port " + std::string(key);
      return 0;
    };
  }

  PortList list;
  bool refused = false;

 private:
  std::optional<NewPort> NewPortOf(Session& session) {
    // A number that has something behind it is not cut here, as in a text box, but refused.
    const Options& options = session.options();
    const auto checked = ValidateNewPort(ReadPortNumber(options.key) ? options.key : "",
                                         options.name, session.database());
    if (const auto* refusal = std::get_if<1>(&checked)) {
      Console::PrintError(refusal->message);
      refused = true;
      return std::nullopt;
    }
    return std::get<NewPort>(checked);
  }
};

ExitStatus RunOnPorts(Session& session, std::string_view command) {
  Ports ports(session);
  return RunOnRows(ports.list, ports.Find(), command, session);
}

}  // namespace

ExitStatus ListPorts(Session& session) {
  Ports ports(session);
  return PrintList(ports.list, kPorts, session.options());
}

ExitStatus AddPort(Session& session) {
  Ports ports(session);
  if (!Load(ports.list)) return kNoSession;
  RunCommand(ports.list, "cmdAddPort");
  return ports.refused ? kDifferent : SaveList(ports.list, session);
}

ExitStatus EnablePorts(Session& session) { return RunOnPorts(session, "cmdCheck"); }
ExitStatus DisablePorts(Session& session) { return RunOnPorts(session, "cmdUncheck"); }
ExitStatus DeletePorts(Session& session) { return RunOnPorts(session, "cmdDeletePort"); }

ExitStatus RenamePort(Session& session) {
  Ports ports(session);
  return RenameRow(ports.list, ports.Find(), session);
}

ExitStatus ImportPorts(Session& session) {
  Ports ports(session);
  return ImportFile(ports.list, session);
}

ExitStatus ExportPorts(Session& session) {
  Ports ports(session);
  return ExportRows(ports.list);
}

ExitStatus DiffPorts(Session& session) {
  Ports ports(session);
  return DiffFile(ports.list, session);
}

}  // namespace quillan
