#include <algorithm>
#include <array>
#include <map>

#include "lists/import_planner.h"
#include "lists/port_list.h"
#include "platform/text/ascii.h"

namespace quillan {
namespace {

constexpr auto kPortNames = std::to_array<std::string_view>({"port", "port number"});
constexpr auto kDescriptionNames = std::to_array<std::string_view>(
    {"description", "servicename", "service name", "service", "name"});
constexpr auto kEnabledNames = std::to_array<std::string_view>({"monitored", "enabled"});

bool LooksLikePort(std::string_view text) {
  text = text::TrimSpaces(text);
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

constexpr ImportColumns kColumns = {
    .key = kPortNames,
    .end = {},
    .name = kDescriptionNames,
    .enabled = kEnabledNames,
    .looks_like_key = LooksLikePort,
};

class PortImport final : public ImportRules {
 public:
  PortImport(const Grid& grid, FlowDatabase& database) : grid_(grid), database_(database) {}

  const ImportColumns& Columns() const override { return kColumns; }

  std::optional<ImportKey> KeyOf(int row) const override {
    return ReadPort(grid_.Text(row, kPortColumn));
  }

  // Unlike the text box, a file is not read up to the first character that is no digit: a number
  // with something behind it was meant as something else.
  std::optional<ImportKey> ReadKey(const ImportRecord& record, ImportLine& line) const override {
    const auto key = ReadPort(record.key);
    if (!key || key->first < kLowestPort || key->first > kHighestPort) {
      line.reason = "\"" + record.key + "\" is not a port number from 1 to 65536.";
      return std::nullopt;
    }
    line.key = std::to_string(static_cast<int>(key->first));
    return key;
  }

  std::string Prepare(const std::vector<int>& /*remaining*/,
                      const std::vector<ImportKey>& /*keys*/) override {
    const auto rows = database_.OpenRecordset("Select Port, ServiceName From ServicePorts");
    if (!rows) {
      return "The database cannot be asked which ports exist: " + database_.LastError();
    }
    ado::Field port = rows->Fields("Port");
    ado::Field name = rows->Fields("ServiceName");
    for (; !rows->Eof(); rows->MoveNext()) {
      stored_.emplace(ado::ToNumber(port.Value()), ado::ToText(name.Value()));
    }
    // What the list shows, or is to delete, has been judged.
    for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
      if (const auto key = KeyOf(row)) stored_.erase(key->first);
    }
    return {};
  }

  std::string AddNew(const ImportKey& key, int /*line*/) override {
    const auto stored = stored_.find(key.first);
    if (stored == stored_.end()) return {};
    return "Port number " + std::to_string(static_cast<int>(key.first)) + " already exists as " +
           stored->second + ". Reload the list.";
  }

 private:
  static std::optional<ImportKey> ReadPort(std::string_view text) {
    const auto port = ReadPortNumber(text::TrimSpaces(text));
    return port ? std::optional(ImportKey{*port, *port}) : std::nullopt;
  }

  const Grid& grid_;
  FlowDatabase& database_;
  std::map<double, std::string> stored_;  // Ports that the list does not show.
};

}  // namespace

ImportPlan PortList::PlanImport(std::string_view bytes, ImportMode mode) {
  PortImport rules(Table(), services().database);
  return quillan::PlanImport(bytes, mode, *this, rules);
}

}  // namespace quillan
