#include "platform/ado/driver.h"

namespace quillan::ado {

void RefuseNul(std::string_view statement) {
  if (statement.find('\0') == std::string_view::npos) return;
  throw Error(0, "",
              "The statement contains a NUL character (code 0), which a database cannot store. "
              "Remove it from the text.");
}

bool EndsBatch(const Error& error) {
  return error.IsTimeout() || error.IsCancelled() || error.IsConnectionLost();
}

std::vector<Outcome> ExecuteOneByOne(Driver& driver, std::span<const std::string> statements,
                                     BatchMode mode) {
  std::vector<Outcome> outcomes;
  outcomes.reserve(statements.size());
  for (const std::string& statement : statements) {
    try {
      driver.Execute(statement);
      outcomes.emplace_back();
    } catch (const Error& error) {
      outcomes.emplace_back(error);
      if (mode == BatchMode::kStopAtFailure || EndsBatch(error)) break;
    } catch (const std::exception& failure) {  // Out of memory: the statements before it ran.
      outcomes.emplace_back(Error(0, "", failure.what()));
      if (mode == BatchMode::kStopAtFailure) break;
    }
  }
  return outcomes;
}

}  // namespace quillan::ado
