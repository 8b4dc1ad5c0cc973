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

using Arrows = std::map<std::string, std::set<std::string>>;

const std::filesystem::path kSource = QUILLAN_SOURCE_DIR;

std::set<std::string> Matches(const std::string& text, const std::regex& pattern) {
  std::set<std::string> found;
  for (std::sregex_iterator i(text.begin(), text.end(), pattern), end; i != end; ++i) {
    found.insert((*i)[1]);
  }
  return found;
}

// The rooms of the page's table of arrows, and what each may use.
Arrows DocumentedArrows() {
  std::ifstream page(kSource / "docs/architecture.md");
  Arrows arrows;
  bool in_table = false;
  for (std::string line; std::getline(page, line);) {
    if (line.find("The test reads this table") != std::string::npos) in_table = true;
    if (line.starts_with("## ") && in_table) break;
    std::smatch row;
    if (in_table && std::regex_match(line, row, std::regex(R"(\| `([a-z/]+)/` \|(.*)\|)"))) {
      arrows[row[1]] = Matches(row[2], std::regex("`([a-z/]+)/`"));
    }
  }
  return arrows;
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

TEST(ArchitectureTest, IncludesRunOnlyAlongTheDocumentedArrows) {
  const std::regex own(R"re(#include "([a-z_/]+)/[a-z_]+\.h".*)re");
  const std::regex driver(R"(#include <(sqlite3|sql|sqlext|sqltypes|sqlucode)\.h>.*)");
  const std::regex qt(R"(#include <Q.*)");
  Arrows used;
  for (const auto& file : std::filesystem::recursive_directory_iterator(kSource / "src")) {
    if (!file.is_regular_file()) continue;
    const std::string room =
        file.path().parent_path().lexically_relative(kSource / "src").generic_string();
    const bool window =
        room == "platform/qt" || room == "dialog" || file.path().filename() == "main.cpp";
    used[room];
    for (const std::string& line : Includes(file.path())) {
      std::smatch include;
      if (std::regex_match(line, include, own) && include[1] != room) used[room].insert(include[1]);
      EXPECT_TRUE(room == "platform/ado" || !std::regex_match(line, driver)) << file.path();
      EXPECT_TRUE(window || !std::regex_match(line, qt)) << file.path();
    }
  }
  EXPECT_EQ(used, DocumentedArrows());
}

TEST(ArchitectureTest, ArrowsNeverRunInACircle) {
  Arrows arrows = DocumentedArrows();
  ASSERT_FALSE(arrows.empty());
  // Rooms that use nothing any more are taken away; what stays leans on itself.
  while (!arrows.empty()) {
    const auto bottom = std::find_if(arrows.begin(), arrows.end(),
                                     [](const auto& room) { return room.second.empty(); });
    ASSERT_NE(bottom, arrows.end()) << arrows.begin()->first;
    const std::string name = bottom->first;
    arrows.erase(bottom);
    for (auto& [room, uses] : arrows) uses.erase(name);
  }
}

}  // namespace
}  // namespace quillan
