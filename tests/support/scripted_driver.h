#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ado/driver.h"
#include "platform/ado/error.h"

namespace quillan::test {

/// What passed through the drivers of a test, and what to do to it.
struct DriverScript {
  std::vector<std::string> statements;  ///< Every Execute and Query, in order.
  int sessions = 0;                     ///< How often a session was opened.
  /// Called before each statement with its text; may throw `ado::Error` to make it fail.
  std::function<void(const std::string&)> before = [](const std::string&) {};

  /// A factory whose drivers do what `drivers` do, by this script.
  ado::DriverFactory Wrap(ado::DriverFactory drivers);
};

}  // namespace quillan::test
