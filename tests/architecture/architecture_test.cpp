#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace quillan {
namespace {

using Dependencies = std::map<std::string, std::set<std::string>>;

const std::filesystem::path kSource = QUILLAN_SOURCE_DIR;

// The modules of the table in the documentation, and what each may use.
Dependencies DocumentedDependencies() {
  std::ifstream page(kSource / "docs/architecture.md");
  Dependencies dependencies;
  bool in_table = false;
  for (std::string line; std::getline(page, line);) {
    if (line.find("The test reads this table") != std::string::npos) in_table = true;
    if (line.starts_with("## ") && in_table) break;
    std::smatch row;
    if (in_table && std::regex_match(line, row, std::regex(R"(\| `([a-z/]+)/` \|(.*)\|)"))) {
      auto& uses = dependencies[row[1]];
      const std::string names = row[2];
      const std::regex name("`([a-z/]+)/`");
      for (std::sregex_iterator i(names.begin(), names.end(), name), end; i != end; ++i) {
        uses.insert((*i)[1]);
      }
    }
  }
  return dependencies;
}

TEST(ArchitectureTest, IncludesFollowTheDocumentedDependenciesWhichHaveNoCycle) {
  const std::regex own(R"re(#include "([a-z_/]+)/[a-z_]+\.h".*)re");
  const std::regex driver(R"(#include <(sqlite3|sql|sqlext|sqltypes|sqlucode)\.h>.*)");
  const std::regex qt(R"(#include <Q.*)");
  Dependencies used;
  for (const auto& file : std::filesystem::recursive_directory_iterator(kSource / "src")) {
    if (!file.is_regular_file()) continue;
    const std::string module_name =
        file.path().parent_path().lexically_relative(kSource / "src").generic_string();
    const bool may_use_qt = module_name == "platform/qt" || module_name == "dialog" ||
                            file.path().filename() == "main.cpp";
    used[module_name];
    std::ifstream content(file.path());
    for (std::string line; std::getline(content, line);) {
      std::smatch include;
      if (!line.starts_with("#include")) continue;
      if (std::regex_match(line, include, own) && include[1] != module_name)
        used[module_name].insert(include[1]);
      EXPECT_TRUE(module_name == "platform/ado" || !std::regex_match(line, driver)) << file.path();
      EXPECT_TRUE(may_use_qt || !std::regex_match(line, qt)) << file.path();
    }
  }
  ASSERT_FALSE(used.empty());
  EXPECT_EQ(used, DocumentedDependencies());
  // Modules without dependencies are removed until none is left; modules of a cycle would stay.
  while (!used.empty()) {
    const auto bottom =
        std::ranges::find_if(used, [](const auto& uses) { return uses.second.empty(); });
    ASSERT_NE(bottom, used.end()) << used.begin()->first;
    const std::string name = bottom->first;
    used.erase(bottom);
    for (auto& [user, uses] : used) uses.erase(name);
  }
}

}  // namespace
}  // namespace quillan
