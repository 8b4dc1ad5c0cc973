#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace quillan {

/// The value in readable form, with a line end. What is not UTF-8 is replaced.
inline std::string DumpJson(const nlohmann::ordered_json& value) {
  return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace quillan
