#pragma once

#include <string>
#include <string_view>

#include "db/flow_database.h"

namespace quillan {

/// The suite's small services around one endpoint address.
class Application {
 public:
  /// Looks endpoints up through `database`.
  explicit Application(FlowDatabase& database) : database_(database) {}

  /// The current address; empty until it is set.
  const std::string& CurrentIP() const { return current_ip_; }
  void SetCurrentIP(std::string_view address) { current_ip_ = address; }

  /// The full host name of `ip_address` (a dotted quad) in the flow data; the address itself if
  /// there is none or if the query fails. A Null name gives an empty string.
  std::string LookupEndpointName(std::string_view ip_address);

  /// The address in a label of the form "name (address)", or the whole text if it does not end in
  /// ")"; empty unless it contains three dots. Neither trimmed nor validated further.
  static std::string ValidateIP(std::string_view text);

 private:
  FlowDatabase& database_;
  std::string current_ip_;
};

}  // namespace quillan
