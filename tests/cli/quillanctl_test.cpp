#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/sqlite_file.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

using testing::HasSubstr;

constexpr const char* kPorts = "Select Port, ServiceName, Enabled From ServicePorts Order By Port";
constexpr const char* kGroups =
    "Select IPRangeStart, IPRangeEnd, IPAddressGroupName, Enabled From IPAddressGroups "
    "Order By IPRangeStart";
constexpr const char* kEndpoints =
    "Select IPAddress, IPAddressGroupID From FlowCorrelation Order By IPAddressSort";
constexpr const char* kSources = "Select InterfaceID From NetFlowSources Order By InterfaceID";
constexpr const char* kEngines = "Select NetFlowPort From FlowEngines";

/// The real executable over a database of its own, by either driver.
class QuillanctlTest : public testing::TestWithParam<bool> {
 protected:
  QuillanctlTest() {
    const std::string file = suite_.path();
    folder_.Write("TBKelvora.DB", "CONNECTION=" + (GetParam() ? "Driver={SQLite3};Database=" + file
                                                              : suite_.ConnectionString()));
    Seed();
  }

  void Seed() {
    suite_.Run(
        "Delete From ServicePorts; Delete From IPAddressGroups; Delete From FlowCorrelation;"
        "Delete From Nodes; Delete From Interfaces; Delete From NetFlowSources;"
        "Delete From FlowEngines; Delete From GlobalSettings; Delete From sqlite_sequence;"
        "Insert Into ServicePorts Values (80,'http',1,1), (443,'https',1,0), (8080,'proxy',0,1);"
        "Insert Into IPAddressGroups Values (1,10000000000,10000003255,'Campus',0,1),"
        " (2,10000008000,10000008255,'System',1,1);"
        "Insert Into FlowCorrelation Values ('10.0.0.7',10000000007,NULL,1),"
        " ('10.0.9.7',10000009007,NULL,0);"
        "Insert Into Nodes Values (1,'core'), (2,'edge');"
        "Insert Into Interfaces Values (1,1,'eth0'), (2,1,'eth1'), (3,2,'eth0');"
        "Insert Into NetFlowSources Values (1)");
  }

  // The words of the command line are those of a shell; "$f" is the file `input`.
  int Run(const std::string& command, const std::string& input = {}) {
    folder_.Write("input", input);
    return Result(std::system(Shell(QUILLAN_CTL " " + command + " <input >out 2>err").c_str()));
  }

  // Starts a command that reads standard input; calls `meanwhile` with its process once it has
  // loaded its list and reads, then gives it the rest of `input`. The input must be longer than a
  // pipe holds.
  int RunWhile(const std::string& command, const std::string& input,
               const std::function<void(pid_t)>& meanwhile) {
    FILE* pipe =
        popen(Shell("echo $$ >pid; exec " QUILLAN_CTL " " + command + " >out 2>err").c_str(), "w");
    const size_t first = input.size() - 100;
    fwrite(input.data(), 1, first, pipe);
    fflush(pipe);
    meanwhile(std::stoi(folder_.Read("pid")));
    fwrite(input.data() + first, 1, input.size() - first, pipe);
    return Result(pclose(pipe));
  }

  int Result(int status) {
    out_ = folder_.Read("out");
    errors_ = folder_.Read("err");
    return WEXITSTATUS(status);
  }

  // Runs `command` in the folder of the database.
  std::string Shell(const std::string& command) const {
    return "cd '" + folder_.path().string() + "'; export QUILLAN_HOME=$PWD f=input; " + command;
  }

  // The rows of a query, joined by blanks.
  std::string Rows(const char* query) {
    std::string rows;
    for (const std::string& row : suite_.Rows(query)) rows += (rows.empty() ? "" : " ") + row;
    return rows;
  }

  std::string Everything() {
    std::string rows;
    for (const char* query : {kPorts, kGroups, kEndpoints, kSources, kEngines}) rows += Rows(query);
    return rows;
  }

  // More ports than a pipe holds, from 10000 on.
  static std::string ManyPorts() {
    std::string lines;
    for (int port = 10000; port < 11000; ++port) {
      lines += std::to_string(port) + "," + std::string(200, 'x') + "\n";
    }
    return lines;
  }

  test::TemporaryFolder folder_;
  test::SqliteFile suite_{folder_ / "suite.db"};
  std::string out_;
  std::string errors_;
};

struct Case {
  const char* command;
  int status;
  const char* output = "";  // Part of it, or of standard error.
  const char* input = "";
  const char* query = nullptr;  // Without one the command changes nothing.
  const char* rows = "";        // Joined by blanks.
};

TEST_P(QuillanctlTest, CommandsPrintAndWriteWhatTheySay) {
  const char* const refusal = "The description has 300 characters; the database takes 255.";
  const Case cases[] = {
      {"ports add 81 $(printf %0300d 0)", 1, refusal},
      {"ports rename 80 $(printf %0300d 0)", 1, refusal},
      {"groups add 10.7.0.0/16 $(printf %0300d 0)", 1, refusal},
      {"status --format json", 0, "\"monitored_ports\": 2,"},
      {"ports list --filter 80 --format json", 0,
       "[\n{\"monitored\":true,\"port\":80,\"description\":\"http\",\"system\":true}\n]\n"},
      {"ports add 81 \"it's\"", 0, "", "", kPorts, "80|http|1 81|it's|1 443|https|0 8080|proxy|1"},
      {"ports add 81 a --dry-run", 0, "new     81              Monitored: yes"},
      {"ports add 80 a", 1, "already exists as http"},
      {"ports disable 80 99 --skip-refused", 1, "1 of 1 rows written", "", kPorts,
       "80|http|0 443|https|0 8080|proxy|1"},
      {"ports delete 8080", 1, "answered no"},
      {"ports delete 8080 --yes", 0, "", "", kPorts, "80|http|1 443|https|0"},
      {"ports delete 80 --yes", 1, "system-defined port"},
      {"ports import $f", 1, "line 2 refused: \"x\" is not a port number", "80,web\nx,y\n"},
      {"ports import - --skip-refused", 1, "line 2 refused", "80,web\nx,y\n", kPorts,
       "80|web|1 443|https|0 8080|proxy|1"},
      {"ports import $f", 1, "Line 2: ", "80,web\n81,\"x\n"},
      {"ports import --replace $f", 0, "kept, since the system defines it: 443",
       "81;a;no\r\n80;web\r\n", kPorts, "80|web|1 81|a|0 443|https|0"},
      {"ports import $f", 0, "nothing to change", "80,http\n"},
      {"ports import --dry-run " QUILLAN_SOURCE_DIR "/data/well_known_ports.csv", 0,
       "Port: 22, Description: ssh"},
      {"ports export", 0,
       "Monitored,Port,Description\r\nyes,80,http\r\nno,443,https\r\nyes,8080,proxy\r\n"},
      {"ports diff $f --format json", 1, "{\n    \"change\": \"changed\",\n    \"row\": \"80\",",
       "80,web\n443,https\n8080,proxy\n"},
      {"groups add 10.0.9.0/24 Halls", 0, "", "", kEndpoints, "10.0.0.7|1 10.0.9.7|3"},
      {"groups add 10.0.9.5/24 Halls --dry-run", 0, "10.0.9.0 - 10.0.9.255  1          Managed"},
      {"groups add 10.0.4.0/24 Halls --dry-run", 0, "10.0.4.0 - 10.0.4.255  0          Managed"},
      {"groups delete -y 10.0.0.0-10.0.3.255", 0, "", "", kEndpoints, "10.0.0.7|0 10.0.9.7|0"},
      {"groups import --replace $f", 0, "", "Range,Name\n10.0.9.0/24,Halls\n", kGroups,
       "10000008000|10000008255|System|1 10000009000|10000009255|Halls|1"},
      {"groups which 10.0.0.7", 0, "goes to Campus, the only enabled group"},
      {"sources list --filter 'eth0 edge' --format json", 0,
       "[\n{\"monitored\":false,\"node\":\"edge\",\"interface\":\"eth0\",\"id\":3}\n]\n"},
      {"sources enable --node Core", 0, "", "", kSources, "1 2"},
      {"sources disable 1 9", 1, "no interface 9", "", kSources, "1"},
      {"port get", 0, "2055\n"},
      {"port set 9995", 0, "", "", kEngines, "9995"},
      {"port set 9995 --dry-run", 0, "2055 -> 9995"},
      {"--version", 0, "quillanctl "},
      {"", 2, "subcommand is required"},
      {"ports list --format xml", 2, "xml"},
      {"sources enable --all 1", 2},
  };
  for (const Case& one : cases) {
    Seed();
    const std::string before = Everything();
    EXPECT_EQ(Run(one.command, one.input), one.status) << one.command << "\n" << errors_;
    EXPECT_THAT(out_ + errors_, HasSubstr(one.output)) << one.command;
    if (one.query != nullptr) {
      EXPECT_EQ(Rows(one.query), one.rows) << one.command;
    } else {
      EXPECT_EQ(Everything(), before) << one.command;
    }
  }
}

TEST_P(QuillanctlTest, StatementsThatFailAreListedAndTheOthersWritten) {
  suite_.Run(
      "Create Trigger Refuse Before Update On ServicePorts When old.Port=443 Begin "
      "Select Raise(Abort, 'no changes today'); End");
  EXPECT_EQ(Run("ports import $f", "443,x\n80,web\n"), 4);
  EXPECT_THAT(errors_, HasSubstr("443 failed: "));
  EXPECT_THAT(errors_, HasSubstr("no changes today"));
  EXPECT_THAT(errors_, HasSubstr("1 of 2 rows written"));
  EXPECT_EQ(suite_.Rows(kPorts)[0], "80|web|1");
}

TEST_P(QuillanctlTest, AnInterruptStopsTheSaveAndReportsWhatWasWritten) {
  EXPECT_EQ(RunWhile("ports import -", ManyPorts(), [](pid_t process) { kill(process, SIGINT); }),
            4);
  EXPECT_THAT(errors_, HasSubstr("stopped"));
  const auto written = suite_.Rows("Select count(*) From ServicePorts Where Port >= 10000")[0];
  EXPECT_THAT(errors_, HasSubstr(written + " of 1000 rows written"));
  EXPECT_NE(written, "1000");
}

TEST_P(QuillanctlTest, ARowThatSomebodyElseChangesMeanwhileIsNotOverwrittenUnasked) {
  const auto change = [this](pid_t) {
    suite_.Run("Update ServicePorts Set ServiceName='theirs' Where Port=80");
  };
  EXPECT_EQ(RunWhile("ports import -", "80,ours\n" + ManyPorts(), change), 1);
  EXPECT_THAT(errors_, HasSubstr("80: was yes, http; is yes, theirs; would become yes, ours"));
  EXPECT_THAT(suite_.Rows(kPorts), testing::SizeIs(3));
  Seed();
  EXPECT_EQ(RunWhile("ports import - --yes", "80,ours\n" + ManyPorts(), change), 0);
  EXPECT_EQ(suite_.Rows(kPorts)[0], "80|ours|1");
}

TEST_P(QuillanctlTest, ItLeavesTheProgramFolderAloneAndSaysWhenThereIsNoSession) {
  const std::string registry =
      "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\Software\\Tarrowby.Net\\Quillan\\Settings]\r\n"
      "\"Max Events\"=\"1\"\r\n";
  folder_.Write("registry.reg", registry);
  EXPECT_EQ(Run("ports disable 80"), 0);
  EXPECT_EQ(folder_.Read("registry.reg"), registry);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "registry.reg.lock"));
  folder_.Write("TBKelvora.DB", "CONNECTION=Provider=SQLite;Data Source=missing.db\r\n");
  EXPECT_EQ(Run("ports list"), 3);
  EXPECT_THAT(errors_, HasSubstr("missing.db does not exist"));
}

INSTANTIATE_TEST_SUITE_P(Drivers, QuillanctlTest, testing::Bool(),
                         [](const auto& driver) { return driver.param ? "Odbc" : "Sqlite"; });

}  // namespace
}  // namespace quillan
