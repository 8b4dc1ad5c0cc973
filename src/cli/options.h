#pragma once

#include <string>
#include <vector>

namespace quillan {

/// What the process returns.
enum ExitStatus {
  kDone = 0,
  kDifferent = 1,  ///< A difference was found, or input was refused.
  kWrongUsage = 2,
  kNoSession = 3,  ///< The database cannot be reached or read.
  kFailed = 4,     ///< Some statements failed, or the save was stopped.
};

enum class OutputFormat { kTable, kCsv, kJson };

/// What the command line asks for; each command reads the members of its own options.
struct Options {
  OutputFormat format = OutputFormat::kTable;
  std::string filter;
  bool dry_run = false;
  bool yes = false;
  bool skip_refused = false;
  bool replace = false;
  bool all = false;
  std::string file;
  std::string node;
  std::string key;  ///< A port, a range or an address.
  std::string name;
  std::vector<std::string> keys;
};

}  // namespace quillan
