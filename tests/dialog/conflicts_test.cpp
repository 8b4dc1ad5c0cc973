// The dialog, and the command line as a second program over the same database.

#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QLineEdit>

#include "dialog/dialog_fixture.h"
#include "support/suite_server.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// The dialog's session is one with the file, or over ODBC with a server over the file.
class ConflictsTest : public test::DialogTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    if (GetParam()) {
      server_.emplace(program_.suite.path());
      program_.folder.Write("program/TBKelvora.DB",
                            "CONNECTION=" + server_->ConnectionString() + "\r\n");
    }
    program_.folder.Write("other/TBKelvora.DB", "CONNECTION=" + program_.suite.ConnectionString());
    DialogTest::SetUp();
  }
  void Add(const char* button, std::initializer_list<std::pair<const char*, const char*>> texts) {
    InNextDialog([&](QDialog* dialog) {
      for (const auto& [field, text] : texts) {
        Find<QLineEdit>(field, dialog)->setText(QLatin1String(text));
      }
      Click("cmdOK", dialog);
    });
    Click(button);
  }
  // Two rows of each list to be unchecked that the other program changes and deletes, a new one
  // whose key it takes; a port to be deleted that it changes, and one that it leaves alone; a new
  // group that would be nested with one of its own.
  void EditInTheDialog() {
    SelectPage(1);
    GridView* ports = Table("PortList");
    for (const int row : {1, 2, 3, 4}) ClickCell(ports, row, 0);
    Click("cmdDeletePort");
    Add("cmdAddPort", {{"PortNumber", "50"}, {"Description", "ours"}});
    SelectPage(2);
    GridView* groups = Table("AddressGroupList");
    for (const int row : {1, 2}) ClickCell(groups, row, 0);
    for (const auto& [start, end] :
         {std::pair("10.0.2.0", "10.0.2.255"), {"10.0.4.0", "10.0.4.9"}}) {
      Add("cmdAddGroup",
          {{"StartIPAddress", start}, {"EndIPAddress", end}, {"Description", "ours"}});
    }
  }
  void EditWithTheOtherProgram() const {
    std::string commands = "export QUILLAN_HOME='" + (program_.folder / "other").string() + "'";
    for (const char* command :
         {"ports rename 21 theirs", "ports rename 25 theirs", "ports delete -y 23",
          "ports add 50 theirs", "groups rename 10.0.0.0/24 theirs", "groups delete -y 10.0.1.0/24",
          "groups add 10.0.2.0/24 theirs", "groups add 10.0.4.0/23 theirs"}) {
      commands.append(" && " QUILLAN_CTL " ").append(command);
    }
    ASSERT_EQ(std::system((commands + " >&2").c_str()), 0);
  }
  std::vector<std::string> Stored() {
    std::vector<std::string> rows = StoredPorts();
    for (const std::string& row : program_.suite.Rows(
             "select IPRangeStart, IPAddressGroupName, Enabled from IPAddressGroups order by 1")) {
      rows.push_back(row);
    }
    return rows;
  }

  std::optional<test::SuiteServer> server_;
};

TEST_P(ConflictsTest, RowsThatAnotherProgramHasChangedAreListedAndTheAnswerIsCarriedOut) {
  struct Case {
    const char* button;
    std::vector<std::string> stored;
    const char* status;
  };
  const Case cases[] = {
      {"cmdCancel",
       {"21|theirs|1", "22|ssh|1", "25|theirs|1", "50|theirs|1", "10000000000|theirs|1",
        "10000002000|theirs|1", "10000004000|theirs|1"},
       "9 changes not saved"},
      {"cmdKeepTheirs",
       {"21|theirs|1", "22|ssh|0", "25|theirs|1", "50|theirs|1", "10000000000|theirs|1",
        "10000002000|theirs|1", "10000004000|theirs|1"},
       "Saved 1 change at 13:05"},
      {"cmdOverwrite",
       {"21|ftp|0", "22|ssh|0", "23|telnet|0", "50|ours|1", "10000000000|a|0", "10000001000|b|0",
        "10000002000|ours|1", "10000004000|theirs|1"},
       "1 of 9 changes could not be saved"},
  };
  for (const auto& [button, stored, status] : cases) {
    SCOPED_TRACE(button);
    program_.suite.Run(
        "delete from ServicePorts; delete from IPAddressGroups;"
        "insert into ServicePorts values (21, 'ftp', 1, 1), (22, 'ssh', 1, 1), "
        "(23, 'telnet', 0, 1), (25, 'smtp', 0, 1);"
        "insert into IPAddressGroups values (1, 10000000000, 10000000255, 'a', 1, 1),"
        "(2, 10000001000, 10000001255, 'b', 0, 1)");
    Open();
    EditInTheDialog();
    EditWithTheOtherProgram();
    InNextDialog([&, answer = button](QDialog* dialog) {
      const std::string ports = "Application & Service Ports|";
      const std::string groups = "IP Address Groups|";
      const std::string changed = "|Changed by someone else|";
      const std::string deleted = "|Deleted by someone else|";
      const std::string added = "|Added by someone else|";
      EXPECT_THAT(
          Lines(dialog),
          ElementsAre(ports + "21" + changed + "yes, ftp|yes, theirs|no, ftp",
                      ports + "23" + deleted + "yes, telnet||no, telnet",
                      ports + "25" + changed + "yes, smtp|yes, theirs|to be deleted",
                      ports + "50" + added + "|yes, theirs|yes, ours",
                      groups + "10.0.0.0 - 10.0.0.255" + changed + "yes, a|yes, theirs|no, a",
                      groups + "10.0.1.0 - 10.0.1.255" + deleted + "yes, b||no, b",
                      groups + "10.0.2.0 - 10.0.2.255" + added + "|yes, theirs|yes, ours",
                      groups + "10.0.4.0 - 10.0.4.9|Nested with a new group||"
                               "yes, theirs (10.0.4.0 - 10.0.5.255)|yes, ours"));
      Click(answer, dialog);
    });
    Click("CmdApply");
    EXPECT_THAT(Stored(), ElementsAreArray(stored));
    EXPECT_EQ(Status(), status);
  }
}

INSTANTIATE_TEST_SUITE_P(Drivers, ConflictsTest, testing::Bool(),
                         [](const auto& odbc) { return odbc.param ? "Odbc" : "Sqlite"; });

}  // namespace
}  // namespace quillan
