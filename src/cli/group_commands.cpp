#include "cli/commands.h"
#include "cli/json.h"
#include "cli/list_commands.h"
#include "ip/address_range.h"
#include "ip/ip_functions.h"
#include "lists/address_group_list.h"
#include "lists/address_lookup.h"

namespace quillan {
namespace {

std::string IdentifierOf(const Grid& grid, int row) {
  const std::int32_t id = grid.RowData(row).id;
  return id > 0 ? std::to_string(id) : "";
}

const ListOutput kGroups = {
    .columns = {{"Managed", "managed", ValueKind::kBoolean},
                {"IP Start Range", "start"},
                {"IP End Range", "end"},
                {"Description", "description"},
                {"System", "system", ValueKind::kBoolean},
                {"Id", "id", ValueKind::kNumber}},
    .values =
        [](const Grid& grid, int row) {
          return std::vector<std::string>{std::string(CheckWord(grid.Check(row, 0))),
                                          std::string(grid.Text(row, kGroupStartColumn)),
                                          std::string(grid.Text(row, kGroupEndColumn)),
                                          std::string(grid.Text(row, kGroupNameColumn)),
                                          grid.RowData(row).system ? "yes" : "no",
                                          IdentifierOf(grid, row)};
        },
    .filter = FilterKind::kGroups,
    .add_button = "cmdAddGroup",
    .delete_button = "cmdDeleteGroup",
};

class GroupCommands final : public CommandList {
 public:
  explicit GroupCommands(Session& session)
      : list_(session.Services(), session.settings(),
              [this, &session](const Grid& grid) { return NewGroupOf(session, grid); }) {}

  EditableList& List() override { return list_; }
  const ListOutput& Output() const override { return kGroups; }

  int Find(std::string_view key, std::string& reason) override {
    const auto parsed = ParseAddressRange(key);
    if (const auto* fault = std::get_if<std::string>(&parsed)) {
      reason = *fault;
      return 0;
    }
    const auto& range = std::get<AddressRange>(parsed);
    // Perhaps another group was meant.
    if (!range.note.empty()) {
      reason = range.note;
      return 0;
    }
    const Grid& grid = list_.Table();
    for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
      if (IPAddressToSortValue(grid.Text(row, kGroupStartColumn)) == range.start_value &&
          IPAddressToSortValue(grid.Text(row, kGroupEndColumn)) == range.end_value) {
        return row;
      }
    }
    reason = "there is no group with the range " + FormatAddressRange(range.start, range.end);
    return 0;
  }

 private:
  std::optional<NewGroup> NewGroupOf(Session& session, const Grid& grid) {
    const auto parsed = ParseAddressRange(session.options().key);
    if (const auto* fault = std::get_if<std::string>(&parsed)) return Refuse(*fault);
    const auto& range = std::get<AddressRange>(parsed);
    if (!range.note.empty()) Console::Print(range.note);
    if (const auto refusal = RefuseNewGroup(range.start, range.end, &grid, session.database(),
                                            session.options().name)) {
      return Refuse(refusal->message);
    }
    return NewGroup{range.start, range.end, session.options().name};
  }

  AddressGroupList list_;
};

nlohmann::ordered_json RowObject(const Grid& grid, int row) {
  return {{"start", grid.Text(row, kGroupStartColumn)},
          {"end", grid.Text(row, kGroupEndColumn)},
          {"description", grid.Text(row, kGroupNameColumn)},
          {"managed", grid.Check(row, 0) == CheckState::kChecked}};
}

std::string LookupObject(const Grid& grid, const AddressLookup& lookup, std::string_view answer) {
  nlohmann::ordered_json object = {{"address", SortValueToIPAddress(lookup.address)},
                                   {"group", nullptr},
                                   {"reason", answer},
                                   {"candidates", nlohmann::ordered_json::array()}};
  if (lookup.winner != 0) object["group"] = RowObject(grid, lookup.winner);
  for (const int row : lookup.rows) object["candidates"].push_back(RowObject(grid, row));
  return DumpJson(object);
}

}  // namespace

std::unique_ptr<CommandList> Groups(Session& session) {
  return std::make_unique<GroupCommands>(session);
}

ExitStatus WhichGroup(Session& session) {
  const std::string& address = session.options().key;
  if (!IsValidIPAddress(address)) {
    Console::PrintError("\"" + address + "\" is not a valid IP address.");
    return kDifferent;
  }
  const auto groups = Groups(session);
  if (!Load(groups->List())) return kNoSession;
  const Grid& grid = groups->List().Table();
  const AddressLookup lookup = LookUpAddress(grid, IPAddressToSortValue(address));
  std::string answer = DescribeLookup(grid, lookup);
  if (const auto stored = DescribeStoredGroup(grid, lookup, session.database())) {
    answer += " " + *stored;
  }
  const bool json = session.options().format == OutputFormat::kJson;
  return PrintData(json ? LookupObject(grid, lookup, answer) : answer + "\n") ? kDone : kFailed;
}

}  // namespace quillan
