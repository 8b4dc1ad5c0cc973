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

  /// The full host name that the flow data holds for `ip_address` (a dotted quad); the address
  /// itself when there is none or the database cannot be asked. A Null name gives the empty text.
  std::string LookupEndpointName(std::string_view ip_address);

  /// The address inside a label of the form "name (address)", or in a text without such an ending
  /// the whole text; empty unless it holds three dots. Neither trimmed nor tested further.
  static std::string ValidateIP(std::string_view text);

 private:
  FlowDatabase& database_;
  std::string current_ip_;
};

}  // namespace quillan
