#include <set>

#include <QClipboard>
#include <QLineEdit>
#include <QTableWidget>
#include <QToolTip>

#include "dialog/dialog_fixture.h"
#include "support/suite_server.h"

namespace quillan {
namespace {

using test::SuiteServer;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

/// The dialog over a SQL Server, by the driver that is installed.
class ServerSavingTest : public test::DialogTest {
 protected:
  void SetUp() override {
    const auto file = program_.folder.Write("program/TBKelvora.DB",
                                            "CONNECTION=" + server_.ConnectionString() + "\r\n");
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    script_.keep_batches = true;
    DialogTest::SetUp();
    program_.suite.Run(
        "insert into ServicePorts values (21, 'ftp', 1, 1), (22, 'ssh', 1, 1), (23, 'tel', 1, 1)");
    Open();
    SelectPage(1);
    table_ = Table("PortList");
  }
  std::string Status() { return Find<QAbstractButton>("SaveStatus")->text().toStdString(); }
  std::vector<std::string> StoredPorts() {
    return program_.suite.Rows("select Port, ServiceName, Enabled from ServicePorts order by Port");
  }

  SuiteServer server_{program_.suite.path()};
  GridView* table_ = nullptr;
};

TEST_F(ServerSavingTest, LoadsWithEachQueryOnceAndSavesOverASessionThatWasLostWhileIdle) {
  const std::vector<std::string> sent = server_.tds().statements();
  std::multiset<std::string> queries;
  for (const std::string& text : sent) {
    if (!text.starts_with("SET ")) queries.insert(text);
  }
  EXPECT_EQ(std::set<std::string>(queries.begin(), queries.end()).size(), queries.size());
  EXPECT_GE(queries.size(), 4U);

  ClickCell(table_, 1, 0);
  server_.tds().EndConnection();
  Click("cmdOK");
  EXPECT_FALSE(form_->isVisible()) << Status();
  EXPECT_THAT(messages_.messages, testing::IsEmpty());
  EXPECT_THAT(StoredPorts(), ElementsAre("21|ftp|0", "22|ssh|1", "23|tel|1"));
}

TEST_F(ServerSavingTest, ASessionLostInTheMiddleOfASaveIsReportedAndTheRestSavedByTheNext) {
  for (const int row : {1, 2, 3}) ClickCell(table_, row, 0);
  int updates = 0;
  server_.Before([&](const std::string& statement) -> SuiteServer::Fault {
    if (!statement.starts_with("Update ServicePorts") || ++updates != 2) return {};
    return test::TdsServer::Reset{};
  });
  program_.suite.Run("update ServicePorts set ServiceName = 'theirs' where Port = 23");
  InNextDialog([&](QDialog* dialog) { Click("cmdOverwrite", dialog); });
  Click("CmdApply");
  EXPECT_THAT(Status(), HasSubstr("2 of 3"));
  EXPECT_NE(TextColor(table_, 1, 1), Qt::red);
  EXPECT_EQ(TextColor(table_, 2, 1), Qt::red);
  InNextDialog([&](QDialog* details) {
    auto* lines = details->findChild<QTableWidget*>();
    ASSERT_EQ(lines->rowCount(), 3);  // Two ports and the setting that tells of the last change.
    EXPECT_EQ(lines->item(0, 2)->text().toStdString(), "The connection to the server was lost.");
    Click("cmdClose", details);
  });
  Click("cmdDetails");
  Click("CmdApply");
  EXPECT_THAT(Status(), HasSubstr("Saved 2 changes"));
  EXPECT_EQ(updates, 4);
  EXPECT_THAT(StoredPorts(), ElementsAre("21|ftp|0", "22|ssh|0", "23|tel|0"));
  EXPECT_THAT(program_.suite.Rows("select Name from GlobalSettings"),
              ElementsAre("LastServicePortUpdate"));
}

TEST_F(ServerSavingTest, ASilentNetworkCostsOneTimeOutAndOneQuestion) {
  program_.database.CloseMainDatabase();
  program_.folder.Write("program/TBKelvora.DB", "CONNECTION=" + server_.ConnectionString() +
                                                    "\r\nTIMEOUT=1\r\nCOMMANDTIMEOUT=1\r\n");
  ASSERT_TRUE(program_.database.OpenDatabase());
  server_.Before([](const std::string&) { return test::TdsServer::Mute{}; });
  ClickCell(table_, 1, 0);
  script_.statements.clear();
  Click("CmdApply");
  EXPECT_EQ(script_.statements.size(), 1U);
  EXPECT_EQ(TextColor(table_, 1, 1), Qt::red);
  script_.sessions = 0;
  messages_.messages.clear();
  messages_.answers = {MessageAnswer::kNo};
  Open();
  EXPECT_EQ(script_.sessions, 1);
  ASSERT_EQ(messages_.messages.size(), 1U);
  EXPECT_THAT(messages_.messages[0].text, HasSubstr("did not answer in time"));
}

TEST_F(ServerSavingTest, ADescriptionLongerThanItsColumnIsRefusedAsAWhole) {
  QApplication::clipboard()->setText(QString(300, QLatin1Char('x')));
  const std::string reason = "The description has 300 characters; the database takes 255.";
  ClickCell(table_, 1, 2);
  auto* editor = qobject_cast<QLineEdit*>(Edit(table_));
  ASSERT_NE(editor, nullptr);
  editor->paste();
  EXPECT_EQ(editor->text(), QStringLiteral("ftp"));
  EXPECT_EQ(QToolTip::text().toStdString(), reason);
  QTest::keyClicks(editor, QStringLiteral("s"));
  table_->CommitEdit();
  EXPECT_EQ(Cell(table_, 1, 2), QStringLiteral("s"));

  for (const int page : {1, 2}) {
    SelectPage(page);
    InNextDialog([&](QDialog* dialog) {
      for (QLineEdit* box : dialog->findChildren<QLineEdit*>()) {
        const bool port = box->objectName() == QLatin1String("PortNumber");
        box->setText(port ? QStringLiteral("80") : QStringLiteral("10.0.0.1"));
      }
      Find<QLineEdit>("Description", dialog)->setText(QApplication::clipboard()->text());
      Click("cmdOK", dialog);
      ASSERT_FALSE(messages_.messages.empty());
      EXPECT_EQ(messages_.messages.back().text, reason);
      dialog->reject();
    });
    Click(page == 1 ? "cmdAddPort" : "cmdAddGroup");
  }
}

TEST_F(ServerSavingTest, TheStatusLinePointsOutAPasswordThatEverybodyCanRead) {
  EXPECT_EQ(Status(), "");
  const std::filesystem::path file = program_.folder / "program/TBKelvora.DB";
  std::filesystem::permissions(file, std::filesystem::perms(0644));
  Open();
  EXPECT_THAT(Status(), AllOf(HasSubstr("can read the password"), EndsWith("TBKelvora.DB.")));
  SelectPage(1);
  table_ = Table("PortList");
  ClickCell(table_, 1, 0);
  EXPECT_EQ(Status(), "1 change not saved");
  QTest::keyClick(table_, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Status(), "");
}

}  // namespace
}  // namespace quillan
