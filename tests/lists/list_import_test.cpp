#include "lists/list_import.h"

#include <algorithm>
#include <random>

#include "lists/list_fixture.h"
#include "lists/port_list.h"

namespace quillan {
namespace {

using test::Dotted;
using testing::ElementsAre;
using testing::HasSubstr;

// The verdicts as "line: +key-end name", with + for new, ~ for changed, = for unchanged, and ! for
// refused, and "(off)" or "*" where a row is to be disabled or has a note.
std::vector<std::string> Verdicts(const ImportPlan& plan) {
  std::vector<std::string> lines;
  for (const ImportLine& line : plan.lines) {
    std::string text = std::to_string(line.line) + ": ";
    if (line.verdict == ImportVerdict::kRefused) {
      lines.push_back(text + "!" + line.reason);
      continue;
    }
    text += line.verdict == ImportVerdict::kNew       ? "+"
            : line.verdict == ImportVerdict::kChanged ? "~"
                                                      : "=";
    text += line.key + (line.end.empty() ? "" : "-" + line.end) + " " + line.name;
    lines.push_back(text + (line.enabled ? "" : " (off)") + (line.reason.empty() ? "" : "*"));
  }
  return lines;
}

class PortImportTest : public test::ListTest {
 protected:
  PortImportTest() {
    program_.suite.Run(
        "Insert Into ServicePorts Values (80,'http',1,1), (443,'https',1,0), (8080,'proxy',0,1), "
        "(9000,'gone',0,1)");
    list_.Refresh();
    Select(list_, {4});
    Press(list_, "cmdDeletePort");
    messages_.messages.clear();
  }
  ImportPlan Plan(std::string_view bytes, ImportMode mode = ImportMode::kMerge) {
    return list_.PlanImport(bytes, mode);
  }

  PortList list_{Services(), [] { return std::optional<NewPort>(); }};
};

TEST_F(PortImportTest, EveryFormOfAFileIsUnderstood) {
  const std::vector<std::string> rows = {"+81 a", "=443 https (off)", "~80 web (off)"};
  const std::pair<const char*, int> files[] = {
      {"81,a\n443,https\n80,web,no", 1},
      {"81;a;yes\r\n443;https;\r\n80;web;False\r\n", 1},
      {"yes\t81\ta\nno\t443\thttps\nno\t80\tweb", 1},  // As a list shows it.
      {"Description,PORT,Comment,Enabled\na,81,,1\nhttps,443,x,\nweb,80,,0\n", 2},
  };
  for (const auto& [file, first_line] : files) {
    std::vector<std::string> expected;
    for (size_t i = 0; i < rows.size(); ++i) {
      expected.push_back(std::to_string(first_line + static_cast<int>(i)) + ": " + rows[i]);
    }
    EXPECT_EQ(Verdicts(Plan(file)), expected) << file;
  }
  EXPECT_THAT(Verdicts(Plan("Port\n81\n443\n80\n")),
              ElementsAre("2: +81 ", "3: =443 https (off)", "4: =80 http"));
}

TEST_F(PortImportTest, LinesAreRefusedOneByOneWithAReason) {
  program_.suite.Run("Insert Into ServicePorts Values (7,'other',0,1)");
  EXPECT_THAT(Verdicts(Plan("81,a\n0,zero\n65536,top\n65537,x\n80abc,x\n81,again\n82,a,maybe\n"
                            "83,a,yes,more\n7,stored\n9000,back\n8080,proxy\n8080,proxy\n80," +
                            std::string(254, 'x') + "\u00e9\n84," + std::string(256, 'x'))),
              ElementsAre("1: +81 a", "2: !\"0\" is not a port number from 1 to 65536.",
                          "3: +65536 top", "4: !\"65537\" is not a port number from 1 to 65536.",
                          "5: !\"80abc\" is not a port number from 1 to 65536.",
                          "6: !Line 1 has the same key.", "7: !\"maybe\" is neither yes nor no.",
                          "8: !The line has more fields than there are columns.",
                          "9: !Port number 7 already exists as other. Reload the list.",
                          "10: ~9000 back", "11: =8080 proxy", "12: !Line 11 has the same key.",
                          "13: ~80 " + std::string(254, 'x') + "\u00e9",
                          "14: !The description has 256 characters; the database takes 255."));
  EXPECT_THAT(Verdicts(Plan("81,telnet" + std::string(1, '\0') + "over a secure line")),
              ElementsAre("1: !The description holds a NUL character."));
  const ImportPlan broken = Plan("81,a\n82,\"b\n");
  EXPECT_THAT(broken.error, HasSubstr("Line 2: "));
  EXPECT_THAT(broken.lines, testing::IsEmpty());
  // A line that is refused does not delete the row that it names.
  EXPECT_THAT(Plan("8080,a,maybe", ImportMode::kReplace).deleted_rows, testing::IsEmpty());
  TakeDatabaseAway();
  EXPECT_THAT(Plan("81,a").error, HasSubstr("suite.db"));
  EXPECT_EQ(Plan("80,a").error, "");  // Nothing to ask.
}

class GroupImportTest : public test::GroupEditsTest {
 protected:
  ImportPlan Plan(std::string_view bytes, ImportMode mode = ImportMode::kMerge) {
    return list_.PlanImport(bytes, mode);
  }
};

TEST_F(GroupImportTest, RangesComeInEveryFormAndMayNotNest) {
  Store({{1, 0, 255, true}, {2, 512, 767, false}, {3, 1024, 1279, true}});
  Delete(1024);
  program_.suite.Run("Insert Into IPAddressGroups Values (9,20000000000,20000000255,'other',0,1)");
  EXPECT_THAT(
      Verdicts(Plan("10.0.0.0,10.0.0.255,name\n"
                    "10.0.2.0/24,renamed\n"
                    "10.0.0.128 - 10.0.1.127,overlaps,no\n"
                    "10.0.0.0/25,inside\n"
                    "10.0.4.0/22,around the deleted one\n"
                    "10.0.4.0/24,name\n"
                    "10.0.6.0,10.0.8.0,past line 5\n"
                    "20.0.0.7,host\n"
                    "30.1.2.3/16,host bits\n"
                    "10.0.0.0,10.0.0.999,x\n")),
      ElementsAre("1: =10.0.0.0-10.0.0.255 name", "2: ~10.0.2.0-10.0.2.255 renamed (off)",
                  "3: +10.0.0.128-10.0.1.127 overlaps (off)",
                  "4: !The range is nested with the group name (10.0.0.0-10.0.0.255).",
                  "5: +10.0.4.0-10.0.7.255 around the deleted one",
                  "6: !The range is nested with line 5.", "7: +10.0.6.0-10.0.8.0 past line 5",
                  "8: !The range is nested with the group other (20.0.0.0-20.0.0.255), which the "
                  "database holds and the list does not show.",
                  "9: +30.1.0.0-30.1.255.255 host bits*",
                  "10: !\"10.0.0.999\" is not a valid IP address."));
  EXPECT_THAT(Verdicts(Plan("Name;Start;End\na;10.0.2.0;10.0.2.255\nb;10.0.9.0/24;\n")),
              ElementsAre("2: ~10.0.2.0-10.0.2.255 a (off)", "3: +10.0.9.0-10.0.9.255 b"));
}

TEST_F(GroupImportTest, AReplacementIsCheckedAgainstWhatStaysAndWritesItsDeletionsFirst) {
  Store({{1, 0, 255, true}, {2, 512, 767, true}});
  program_.suite.Run(
      "Insert Into IPAddressGroups Values (3,10000008000,10000008255,'system',1,1); "
      "Insert Into FlowCorrelation Values ('10.0.0.7',10000000007,NULL,1)");
  list_.Refresh();
  const ImportPlan plan =
      Plan("10.0.0.0/23,wider\n10.0.2.0/24,name\n10.0.8.0/25,in system\n", ImportMode::kReplace);
  EXPECT_THAT(Verdicts(plan),
              ElementsAre("1: +10.0.0.0-10.0.1.255 wider", "2: =10.0.2.0-10.0.2.255 name",
                          "3: !The range is nested with the group system "
                          "(10.0.8.0-10.0.8.255)."));
  list_.ApplyImport(plan);
  list_.OnSortRequest(2);  // The new row now stands above the deleted one.
  EXPECT_THAT(Saved(list_)[0], testing::StartsWith("Delete From IPAddressGroups"));
  EXPECT_THAT(
      program_.suite.Rows("Select IPRangeEnd, IPAddressGroupName From IPAddressGroups"),
      testing::UnorderedElementsAre("10000001255|wider", "10000002255|name", "10000008255|system"));
  EXPECT_THAT(program_.suite.Rows("Select IPAddressGroupName From FlowCorrelation c Join "
                                  "IPAddressGroups g On g.IPAddressGroupID=c.IPAddressGroupID"),
              ElementsAre("wider"));
}

TEST_F(GroupImportTest, NestingIsFoundAsByComparingEveryPair) {
  std::mt19937 random(7);
  std::string file;
  std::vector<std::pair<int, int>> held;
  std::vector<int> expected;
  for (int line = 1; line <= 300; ++line) {
    const int start = static_cast<int>(random() % 2000);
    const int end = start + static_cast<int>(random() % 300);
    file += Dotted(start) + "," + Dotted(end) + ",name\n";
    const bool nests = std::ranges::any_of(held, [&](const auto& range) {
      return (start >= range.first && end <= range.second) ||
             (range.first >= start && range.second <= end);
    });
    if (nests) {
      expected.push_back(line);
    } else {
      held.emplace_back(start, end);
    }
  }
  Store({});
  std::vector<int> refused;
  for (const ImportLine& line : Plan(file).lines) {
    if (line.verdict == ImportVerdict::kRefused) refused.push_back(line.line);
  }
  EXPECT_EQ(refused, expected) << file;
}

}  // namespace
}  // namespace quillan
