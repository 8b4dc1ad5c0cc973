#include <stdexcept>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/row_printer.h"
#include "lists/new_port.h"
#include "platform/ado/error.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

// The first column of the first row; empty if there is none.
std::string ReadOne(FlowDatabase& database, const std::string& query) {
  const auto rows = database.OpenRecordset(query);
  if (!rows || rows->Eof()) return {};
  return ado::ToText(rows->Fields(rows->FieldNames()[0]).Value());
}

std::string Count(FlowDatabase& database, const std::string& rows) {
  return ReadOne(database, "Select count(*) as Total From " + rows);
}

std::string LastUpdate(FlowDatabase& database, const std::string& name) {
  return ReadOne(database, "Select Value From GlobalSettings Where Name='" + name + "'");
}

}  // namespace

ExitStatus ShowStatus(Session& session) {
  FlowDatabase& database = session.database();
  Settings& settings = session.settings();
  settings.RefreshDatabaseSettings();
  const bool port_known = settings.ListenPortError().empty();
  struct Line {
    const char* name;
    const char* json_name;
    std::string value;
    bool number;
  };
  const Line lines[] = {
      {"Database", "database", database.Location(), false},
      {"Engine", "engine", database.DatabaseEngine(), false},
      {"Ports", "ports", Count(database, "ServicePorts"), true},
      {"Monitored ports", "monitored_ports", Count(database, "ServicePorts Where Enabled=1"), true},
      {"Groups", "groups", Count(database, "IPAddressGroups"), true},
      {"Managed groups", "managed_groups", Count(database, "IPAddressGroups Where Enabled=1"),
       true},
      {"Interfaces", "interfaces", Count(database, "Interfaces"), true},
      {"NetFlow sources", "sources", Count(database, "NetFlowSources"), true},
      {"Endpoints", "endpoints", Count(database, "FlowCorrelation"), true},
      {"Last port update", "last_port_update", LastUpdate(database, "LastServicePortUpdate"),
       false},
      {"Last group update", "last_group_update", LastUpdate(database, "LastIPAddressGroupUpdate"),
       false},
      {"Listening port", "listening_port", port_known ? std::to_string(settings.ListenPort()) : "",
       true},
  };
  if (!port_known) Console::PrintError(settings.ListenPortError());
  std::string text;
  nlohmann::ordered_json object;
  for (const auto& [name, json_name, value, number] : lines) {
    text += std::string(name) + ": " + value + "\n";
    if (value.empty()) {
      object[json_name] = nullptr;
    } else if (number) {
      object[json_name] = static_cast<std::int64_t>(text::ReadLeadingNumber(value));
    } else {
      object[json_name] = value;
    }
  }
  if (session.options().format == OutputFormat::kJson) text = DumpJson(object);
  if (!PrintData(text)) return kFailed;
  return port_known ? kDone : kNoSession;
}

ExitStatus GetPort(Session& session) {
  Settings& settings = session.settings();
  settings.RefreshDatabaseSettings();
  if (!settings.ListenPortError().empty()) {
    Console::PrintError(settings.ListenPortError());
    return kNoSession;
  }
  return PrintData(std::to_string(settings.ListenPort()) + "\n") ? kDone : kFailed;
}

ExitStatus SetPort(Session& session) {
  const auto port = ReadPortNumber(session.options().key);
  if (!port || *port < 1 || *port > 65535) {
    Console::PrintError("\"" + session.options().key + "\" is not a UDP port from 1 to 65535.");
    return kDifferent;
  }
  Settings& settings = session.settings();
  settings.RefreshDatabaseSettings();
  if (!settings.ListenPortError().empty()) {
    Console::PrintError(settings.ListenPortError());
    return kNoSession;
  }
  const std::int32_t before = settings.ListenPort();
  if (session.options().dry_run) {
    return PrintData("listening port: " + std::to_string(before) + " -> " + std::to_string(*port) +
                     "\n")
               ? kDone
               : kFailed;
  }
  settings.SetListenPort(*port);
  try {
    settings.SaveDatabaseSettings();
  } catch (const ado::Error& failure) {
    Console::PrintError(failure.what());
    return kFailed;
  }
  return kDone;
}

}  // namespace quillan
