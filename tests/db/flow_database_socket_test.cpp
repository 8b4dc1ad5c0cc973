#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "db/flow_database.h"
#include "platform/ado/drivers.h"
#include "platform/ado/tds_server.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

using test::TdsReply;
using test::TdsServer;
using testing::ElementsAre;

TEST(FlowDatabaseSocketTest, AnExpiredTimeOutIsFinalButALostConnectionIsTriedAgain) {
  const TdsServer server([dropped = false](const std::string& statement) mutable {
    TdsServer::Answer answer =
        TdsReply().Columns({{"Id", TdsReply::Type::kBigInt}}).Row({std::int64_t{7}}).Done(1);
    if (statement == "Select slow") answer = TdsServer::Silence{};
    if (statement == "Select lost" && !std::exchange(dropped, true)) answer = TdsServer::HangUp{};
    return answer;
  });
  const test::TemporaryFolder folder;
  folder.Write("TBKelvora.DB", "CONNECTION=Provider=SQLOLEDB;Data Source=127.0.0.1," +
                                   std::to_string(server.port()) +
                                   ";User ID=sa;Password=x\r\nCOMMANDTIMEOUT=1\r\n");
  const DiskFiles files;
  FlowDatabase database(files, folder.path(), ado::InstalledDrivers(folder.path()));
  const char* isolation = "SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED";

  EXPECT_EQ(database.OpenRecordset("Select slow"), nullptr);
  EXPECT_NE(database.LastError(), "");
  EXPECT_TRUE(database.Connected());
  EXPECT_THAT(server.statements(), ElementsAre(isolation, isolation, "Select slow"));

  const auto rows = database.OpenRecordset("Select lost");
  ASSERT_NE(rows, nullptr) << database.LastError();
  EXPECT_EQ(ado::ToWhole(rows->Fields("Id").Value()), 7);
  EXPECT_EQ(server.logins().size(), 2U);
}

}  // namespace
}  // namespace quillan
