#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <set>
#include <utility>

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>

#include "dialog/dialog_fixture.h"
#include "platform/ado/error.h"
#include "support/suite_server.h"

namespace quillan {
namespace {

using test::SuiteServer;
using testing::ElementsAre;
using testing::HasSubstr;

class SavingTest : public test::DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    program_.suite.Run(
        "insert into ServicePorts values (21, 'ftp', 1, 1), (22, 'ssh', 1, 1), (23, 'telnet', 1, "
        "1);"
        "insert into IPAddressGroups values (1, 10000000000, 10000000255, 'a', 1, 1),"
        "(2, 10000001000, 10000001255, 'b', 1, 1)");
    Open();
    SelectPage(1);
    table_ = Table("PortList");
  }
  bool IsRed(int row) { return TextColor(table_, row, 1) == Qt::red; }
  // Lets no file of this process grow beyond `size` bytes.
  static void LimitFiles(rlim_t size) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
  }

  GridView* table_ = nullptr;
};

TEST_F(SavingTest, TellsWhatIsNotSavedAndReverts) {
  auto* tabs = Find<QTabWidget>("Tabs");
  EXPECT_EQ(Status(), "");
  ClickCell(table_, 1, 0);
  ClickCell(table_, 3, 0);
  QTest::keyClicks(Find<QLineEdit>("ListenPort"), QStringLiteral("6"));
  EXPECT_THAT(Status(), HasSubstr("3 changes"));
  for (int tab = 0; tab < tabs->count(); ++tab) {
    EXPECT_EQ(tabs->tabIcon(tab).isNull(), tab != 0 && tab != 4) << tab;
  }
  SelectPage(2);
  InNextDialog([&](QDialog* review) {
    const std::string page = "Application & Service Ports|";
    EXPECT_THAT(
        Lines(review),
        ElementsAre(page + "21|Changed|Monitored|yes|no", page + "23|Changed|Monitored|yes|no",
                    "NetFlow Service|Listening port|Changed|Listening port|2055|20556"));
    auto* rows = review->findChild<QTableWidget*>();
    rows->selectRow(2);
    Click("cmdRevert", review);
    EXPECT_EQ(Lines(review).size(), 2U);
    rows->selectRow(1);
    Click("cmdCopy", review);
    EXPECT_THAT(QApplication::clipboard()->text().toStdString(),
                testing::AllOf(HasSubstr("\t23\tChanged"), testing::Not(HasSubstr("\t21\t"))));
    Click("cmdGoToRow", review);
  });
  QTest::keyClick(form_.get(), Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(Find<QLineEdit>("ListenPort")->text(), QStringLiteral("2055"));
  EXPECT_EQ(tabs->currentIndex(), 0);
  EXPECT_EQ(table_->currentIndex().row(), 2);
  form_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
  QTest::keyClick(table_, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Check(table_, 3), Qt::Checked);
  EXPECT_FALSE(IsRed(3));
  EXPECT_THAT(Status(), HasSubstr("1 change "));
  Find<QLineEdit>("ListenPort")->setText(QStringLiteral("9996"));
  Click("CmdApply");
  EXPECT_EQ(Status(), "Saved 2 changes at 13:05");
  EXPECT_TRUE(tabs->tabIcon(0).isNull());
  EXPECT_TRUE(tabs->tabIcon(4).isNull());
}

TEST_F(SavingTest, TheCloseBoxAsksBeforeTheTextOfAnOpenCellIsLost) {
  ClickCell(table_, 2, 2);
  QTest::keyClicks(Edit(table_), QStringLiteral("new"));
  messages_.answers = {MessageAnswer::kNo};
  form_->close();
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(messages_.messages.size(), 1U);
  EXPECT_EQ(Status(), "1 change not saved");
}

TEST_F(SavingTest, AListThatCouldNotBeReadSaysSo) {
  auto* list = Find<QWidget>("PortList");
  EXPECT_FALSE(Find<QLabel>("LoadError")->isVisible());
  program_.suite.Run("alter table ServicePorts rename to Elsewhere");
  Click("CmdApply");
  EXPECT_FALSE(table_->isVisible());
  EXPECT_THAT(Find<QLabel>("LoadError", list)->text().toStdString(), HasSubstr("ServicePorts"));
  program_.suite.Run("alter table Elsewhere rename to ServicePorts");
  Click("cmdRetry", list);
  EXPECT_TRUE(table_->isVisible());
  EXPECT_EQ(table_->model()->rowCount(), 3);
}

TEST_F(SavingTest, StopLeavesTheRestAsItIs) {
  SelectPage(2);
  GridView* groups = Table("AddressGroupList");
  ClickCell(groups, 1, 0);
  ClickCell(groups, 2, 0);
  script_.before = [&](const std::string& statement) {
    if (statement.starts_with("Update IPAddressGroups")) Find<QPushButton>("cmdStop")->click();
  };
  Click("cmdOK");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_NE(TextColor(groups, 1, 1), Qt::red);
  EXPECT_EQ(TextColor(groups, 2, 1), Qt::red);
  script_.before = [](const std::string&) {};
  Click("CmdApply");
  EXPECT_NE(TextColor(groups, 2, 1), Qt::red);
  EXPECT_THAT(program_.suite.Rows("select Enabled from IPAddressGroups"), ElementsAre("0", "0"));
}

/// A way in which the database fails during a save, and how the window tells of it.
struct Fault {
  const char* name;
  std::function<void()> begins;
  std::function<void()> ends;
  const char* told;
};

TEST_F(SavingTest, WhateverFailsTheRestIsStillThereAndTheNextSaveWritesIt) {
  const auto run = [this](const char* statement) {
    return [this, statement] { program_.suite.Run(statement); };
  };
  const auto in_session = [this](const char* statement) {
    return [this, statement] { program_.database.Execute(statement); };
  };
  const auto move = [this](const std::string& from, const std::string& to) {
    return
        [this, from, to] { std::filesystem::rename(program_.folder / from, program_.folder / to); };
  };
  // Before the first statement that begins so.
  const auto before = [this](std::string start, std::function<void()> act) {
    return [this, start = std::move(start), act = std::move(act)] {
      script_.before = [start, act, done = false](const std::string& statement) mutable {
        if (statement.starts_with(start) && !std::exchange(done, true)) act();
      };
    };
  };
  const auto time_out = [this](const std::string& seconds) {
    program_.folder.Write(
        "program/TBKelvora.DB",
        "CONNECTION=Provider=SQLite;Data Source=suite.db\r\nCOMMANDTIMEOUT=" + seconds + "\r\n");
    program_.database.CloseMainDatabase();
  };
  const auto lose = [] { throw ado::Error(0, "08S01", "connection reset"); };
  const std::string file = "program/suite.db";
  const auto another_column = run("alter table ServicePorts rename column ServiceName to Title");
  const auto the_column = run("alter table ServicePorts rename column Title to ServiceName");
  const Fault faults[] = {
      {"locked",
       [&] {
         time_out("1");
         messages_.answers = {MessageAnswer::kNo};
         program_.suite.Run("begin immediate");
       },
       [&] { time_out("120"), program_.suite.Run("rollback"); },
       "did not answer in time. Keep trying?"},
      {"gone", move(file, "away.db"), move("away.db", file), "suite.db does not exist"},
      {"gone in the middle", before("delete from NetFlowSources", move(file, "away.db")),
       move("away.db", file), "program/suite.db"},
      {"full",
       [&] {
         LimitFiles(std::filesystem::file_size(program_.suite.path().string() + "-wal") + 5000);
       },
       [] { LimitFiles(RLIM_INFINITY); }, "disk I/O error"},
      {"write-protected", in_session("pragma query_only = 1"), in_session("pragma query_only = 0"),
       "attempt to write a readonly database"},
      {"refused",
       run("create trigger Refuse before update on ServicePorts when new.Port = 22 "
           "begin select raise(abort, 'not this one'); end"),
       run("drop trigger Refuse"), "1 of 5"},
      {"port refused",
       run("create trigger Refuse before update on FlowEngines "
           "begin select raise(abort, 'no port'); end"),
       run("drop trigger Refuse"), "1 of 5"},
      {"without the table", run("alter table ServicePorts rename to Elsewhere"),
       run("alter table Elsewhere rename to ServicePorts"), "no such table: ServicePorts"},
      {"another column", another_column, the_column, "\"ServiceName\""},
      {"another column in the middle", before("Update ServicePorts", another_column), the_column,
       "2 of 5"},
      {"lost while idle", before("", lose), [] {}, "Saved 5 changes"},
      {"lost in the middle", before("Update ServicePorts", lose), [] {}, "2 of 5"},
      {"lost before the last list", before("delete from NetFlowSources", lose), [] {},
       "connection reset"},
  };
  // What each edit stores, a query that tells whether it is stored, and its statement.
  const std::array<std::array<const char*, 3>, 5> edits = {{
      {"port 21", "select 1 from ServicePorts where Port = 21 and Enabled = 0", " Where Port=21"},
      {"port 22", "select 1 from ServicePorts where Port = 22 and Enabled = 0", " Where Port=22"},
      {"group a", "select 1 from IPAddressGroups where IPAddressGroupID = 1 and Enabled = 0",
       "Where IPRangeStart=10000000000"},
      {"source 1", "select 1 from Nodes where not exists (select 1 from NetFlowSources)",
       "delete from NetFlowSources where InterfaceID = 1"},
      {"listening port", "select 1 from FlowEngines where NetFlowPort = 20556", "FlowEngines set"},
  }};
  program_.suite.Run(
      "insert into Nodes values (1, 'n'); insert into Interfaces values (1, 1, 'i')");
  for (const Fault& fault : faults) {
    SCOPED_TRACE(fault.name);
    program_.suite.Run(
        "update ServicePorts set Enabled = 1; update IPAddressGroups set Enabled = 1;"
        "insert or ignore into NetFlowSources values (1); delete from FlowEngines;"
        "insert into FlowEngines values ('collector', 2055)");
    Open();
    GridView* ports = Table("PortList");
    GridView* groups = Table("AddressGroupList");
    GridView* sources = Table("InterfacesList");
    SelectPage(1);
    ClickCell(ports, 1, 0);
    ClickCell(ports, 2, 0);
    SelectPage(2);
    ClickCell(groups, 1, 0);
    SelectPage(6);
    ClickCell(sources, 1, 0);
    SelectPage(5);
    auto* listen = Find<QLineEdit>("ListenPort");
    QTest::keyClicks(listen, QStringLiteral("6"));
    messages_.messages.clear();

    fault.begins();
    Click("CmdApply");
    script_.before = [](const std::string&) {};
    std::string told = Status();
    for (const auto& message : messages_.messages) told += "\n" + message.text;
    EXPECT_THAT(told, HasSubstr(fault.told));
    if (std::string_view(fault.name) == "refused") {
      InNextDialog([&](QDialog* details) {
        EXPECT_THAT(Lines(details),
                    ElementsAre(testing::MatchesRegex(".*Ports\\|22\\|.*not this one")));
        Click("cmdClose", details);
      });
      Click("cmdDetails");
    }
    fault.ends();
    std::string written;
    for (const auto& [name, query, statement] : edits) {
      written += program_.suite.Rows(query).empty() ? '-' : 'x';
    }
    const std::array<std::pair<GridView*, int>, 4> rows = {
        {{ports, 1}, {ports, 2}, {groups, 1}, {sources, 1}}};
    for (size_t i = 0; i < rows.size(); ++i) {
      const auto& [table, row] = rows[i];
      // A list that could not be read again shows no rows.
      if (table->model()->rowCount() < row) continue;
      EXPECT_EQ(TextColor(table, row, 1) == Qt::red, written[i] == '-') << edits[i][0];
    }
    EXPECT_EQ(listen->text(), QStringLiteral("20556"));
    EXPECT_NE(form_->cursor().shape(), Qt::WaitCursor);

    script_.statements.clear();
    Click("CmdApply");
    for (size_t i = 0; i < edits.size(); ++i) {
      const auto& [name, query, part] = edits[i];
      EXPECT_FALSE(program_.suite.Rows(query).empty()) << name << " was not written";
      const char* statement = part;
      const auto again = std::ranges::count_if(script_.statements, [&](const std::string& text) {
        return text.find(statement) != std::string::npos && !text.starts_with("Select");
      });
      const bool always = name == edits.back()[0];  // Every save writes the port.
      EXPECT_EQ(again, written[i] == 'x' && !always ? 0 : 1) << name;
    }
    EXPECT_THAT(Status(), testing::AnyOf("", testing::StartsWith("Saved ")));
  }
}

/// The dialog over a SQL Server, by the driver that is installed.
class ServerSavingTest : public SavingTest {
 protected:
  void SetUp() override {
    WriteConnection("");
    script_.keep_batches = true;
    SavingTest::SetUp();
  }
  std::filesystem::path WriteConnection(const std::string& more) {
    return program_.folder.Write("program/TBKelvora.DB",
                                 "CONNECTION=" + server_.ConnectionString() + "\r\n" + more);
  }

  SuiteServer server_{program_.suite.path()};
};

TEST_F(ServerSavingTest, LoadsWithEachQueryOnceAndSavesOverASessionThatWasLostWhileIdle) {
  std::set<std::string> queries;
  for (const std::string& text : server_.tds().statements()) {
    EXPECT_TRUE(text.starts_with("SET ") || queries.insert(text).second) << text;
  }
  EXPECT_GE(queries.size(), 4U);
  ClickCell(table_, 1, 0);
  server_.tds().EndConnection();
  Click("cmdOK");
  EXPECT_FALSE(form_->isVisible()) << Status();
  EXPECT_THAT(messages_.messages, testing::IsEmpty());
  EXPECT_THAT(StoredPorts(), ElementsAre("21|ftp|0", "22|ssh|1", "23|telnet|1"));
}

TEST_F(ServerSavingTest, ASilentNetworkCostsOneTimeOutAndOneQuestion) {
  program_.database.CloseMainDatabase();
  WriteConnection("TIMEOUT=1\r\nCOMMANDTIMEOUT=1\r\n");
  ASSERT_TRUE(program_.database.OpenDatabase());
  server_.Before([](const std::string&) { return test::TdsServer::Mute{}; });
  ClickCell(table_, 1, 0);
  script_.statements.clear();
  Click("CmdApply");
  EXPECT_EQ(script_.statements.size(), 1U);
  EXPECT_TRUE(IsRed(1));
  script_.sessions = 0;
  messages_.messages.clear();
  messages_.answers = {MessageAnswer::kNo};
  Open();
  EXPECT_EQ(script_.sessions, 1);
  ASSERT_EQ(messages_.messages.size(), 1U);
  EXPECT_THAT(messages_.messages[0].text, HasSubstr("did not answer in time"));
}

TEST_F(ServerSavingTest, TheStatusLinePointsOutAPasswordThatEverybodyCanRead) {
  const std::filesystem::path file = WriteConnection("");
  std::filesystem::permissions(file, std::filesystem::perms(0640));
  Open();
  EXPECT_EQ(Status(), "");
  std::filesystem::permissions(file, std::filesystem::perms(0644));
  Open();
  EXPECT_THAT(Status(), testing::AllOf(HasSubstr("can read the password"),
                                       testing::EndsWith("TBKelvora.DB.")));
  SelectPage(1);
  table_ = Table("PortList");
  ClickCell(table_, 1, 0);
  EXPECT_EQ(Status(), "1 change not saved");
  QTest::keyClick(table_, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Status(), "");
}

}  // namespace
}  // namespace quillan
