#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace quillan {
namespace {

using Dependencies = std::map<std::string, std::set<std::string>>;

const std::filesystem::path kSource = QUILLAN_SOURCE_DIR;

std::set<std::string> Matches(const std::string& text, const std::regex& pattern) {
  std::set<std::string> found;
  for (std::sregex_iterator i(text.begin(), text.end(), pattern), end; i != end; ++i) {
    found.insert((*i)[1]);
  }
  return found;
}

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
      dependencies[row[1]] = Matches(row[2], std::regex("`([a-z/]+)/`"));
    }
  }
  return dependencies;
}

// The lines of `file` that include something.
std::vector<std::string> Includes(const std::filesystem::path& file) {
  std::vector<std::string> includes;
  std::ifstream content(file);
  for (std::string line; std::getline(content, line);) {
    if (line.starts_with("#include")) includes.push_back(line);
  }
  return includes;
}

TEST(ArchitectureTest, IncludesFollowTheDocumentedDependencies) {
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
    for (const std::string& line : Includes(file.path())) {
      std::smatch include;
      if (std::regex_match(line, include, own) && include[1] != module_name)
        used[module_name].insert(include[1]);
      EXPECT_TRUE(module_name == "platform/ado" || !std::regex_match(line, driver)) << file.path();
      EXPECT_TRUE(may_use_qt || !std::regex_match(line, qt)) << file.path();
    }
  }
  EXPECT_EQ(used, DocumentedDependencies());
}

TEST(ArchitectureTest, TheDependenciesHaveNoCycle) {
  Dependencies dependencies = DocumentedDependencies();
  ASSERT_FALSE(dependencies.empty());
  // Modules without dependencies are removed until none is left; modules of a cycle would stay.
  while (!dependencies.empty()) {
    const auto bottom = std::find_if(dependencies.begin(), dependencies.end(),
                                     [](const auto& entry) { return entry.second.empty(); });
    ASSERT_NE(bottom, dependencies.end()) << dependencies.begin()->first;
    const std::string name = bottom->first;
    dependencies.erase(bottom);
    for (auto& [name_of_user, uses] : dependencies) uses.erase(name);
  }
}

}  // namespace
}  // namespace quillan
