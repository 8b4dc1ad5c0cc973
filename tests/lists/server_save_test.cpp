#include <algorithm>

#include "lists/interfaces_list.h"
#include "lists/list_fixture.h"
#include "lists/port_list.h"
#include "support/suite_server.h"

namespace quillan {
namespace {

using test::SuiteServer;
using testing::ElementsAre;

/// Lists over a SQL Server, by the driver that is installed.
class ServerSaveTest : public test::ListTest {
 protected:
  ServerSaveTest() {
    script_.keep_batches = true;
    program_.folder.Write("program/TBKelvora.DB",
                          "CONNECTION=" + server_.ConnectionString() + "\r\n");
    program_.suite.Run(
        "insert into ServicePorts values (21, 'ftp', 1, 1), (22, 'ssh', 0, 1), (23, 'tel', 0, 1);"
        "insert into Nodes values (1, 'router'); insert into NetFlowSources values (1);"
        "insert into Interfaces values (1, 1, 'eth0'), (2, 1, 'eth1')");
  }
  // Toggles every row and saves it.
  static SaveOutcome SaveAll(CheckableList& list) {
    for (int row = 1; row < list.Table().Rows(); ++row) list.OnClick(row, 0);
    return list.Sync();
  }

  SuiteServer server_{program_.suite.path()};
  PortList ports_{Services(), [] { return std::optional<NewPort>(); }};
  InterfacesList sources_{Services()};
};

TEST_F(ServerSaveTest, ARefusalIsReportedWithTheServersMessage) {
  const char* const refusal = "The permission was denied on the object.";
  for (const auto& [start, failures] : {std::pair("Update ServicePorts", 3U), {"exec tbsp_", 1U}}) {
    server_.Before({});
    ASSERT_TRUE(ports_.Refresh());
    server_.Before([&](const std::string& statement) -> SuiteServer::Fault {
      if (!statement.starts_with(start)) return {};
      return std::pair(229, refusal);
    });
    SaveAll(ports_);
    ASSERT_EQ(ports_.Failures().size(), failures);
    EXPECT_EQ(ports_.Failures()[0].message, refusal);
    // The time of the last change is written though the rows are not.
    EXPECT_EQ(program_.suite.Rows("select * from GlobalSettings").size(), failures == 3 ? 1U : 0U);
    program_.suite.Run("delete from GlobalSettings");
  }
  server_.Before({});
  ASSERT_TRUE(sources_.Refresh());
  sources_.Table().Sort(3, SortDirection::kDescending);
  server_.Before([&](const std::string& statement) -> SuiteServer::Fault {
    if (!statement.starts_with("if not exists")) return {};
    return std::pair(229, refusal);
  });
  EXPECT_THROW(SaveAll(sources_), ado::Error) << "the first one ends the save";
  EXPECT_THAT(program_.suite.Rows("select * from NetFlowSources"), ElementsAre("1"));
}

TEST_F(ServerSaveTest, ATextThatIsLongerThanItsColumnStaysInItsRow) {
  ASSERT_TRUE(ports_.Refresh());
  EXPECT_EQ(ports_.MaxLength(kPortDescriptionColumn), 255);
  ports_.EditText(2, std::string(300, 'x'));
  ports_.OnClick(3, 0);
  EXPECT_EQ(ports_.Sync().written, 1);
  EXPECT_THAT(ports_.Failures().at(0).message, testing::HasSubstr("longer than 255 characters"));
  ASSERT_TRUE(ports_.Reload());
  ASSERT_EQ(ports_.PendingCount(), 1);
  EXPECT_EQ(ports_.Table().Text(2, kPortDescriptionColumn), std::string(300, 'x'));
}

TEST_F(ServerSaveTest, ALongWayToTheServerIsGoneOncePerHundredRows) {
  program_.suite.Run(
      "with recursive n(i) as (select 101 union all select i + 1 from n where i < 1097) "
      "insert into ServicePorts select i, 'port', 1, 1 from n");
  ASSERT_TRUE(ports_.Refresh());
  const std::vector<std::string> loading = server_.tds().statements();
  EXPECT_EQ(std::ranges::count(loading, std::string(ports_.Description().query)), 1);
  EXPECT_EQ(SaveAll(ports_).written, 1000);
  EXPECT_EQ(server_.tds().statements().size() - loading.size(), 1000 / 100 + 1);
}

}  // namespace
}  // namespace quillan
