// Programs that are killed at any moment, and programs that work at the same time.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "db/flow_database.h"
#include "lists/port_list.h"
#include "platform/ado/drivers.h"
#include "registry/registry_store.h"
#include "support/fakes.h"
#include "support/sqlite_file.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

constexpr int kPorts = 500;
constexpr int kKills = 300;
constexpr char kKey[] = "HKEY_LOCAL_MACHINE\\Software\\Test";

class ProcessesTest : public testing::Test {
 protected:
  ProcessesTest() {
    folder_.Write("TBKelvora.DB", "CONNECTION=Provider=SQLite;Data Source=suite.db\r\n");
    Rows("with recursive n(port) as (values (1) union all select port + 1 from n where port < " +
         std::to_string(kPorts) + ") insert into ServicePorts select port, 'p', 0, 0 from n");
  }

  // Starts a process for `work`, which stops itself (`WaitForOthers`) when it has read what it
  // needs; returns then.
  static pid_t Start(const std::function<void()>& work) {
    const pid_t process = fork();
    if (process == 0) {
      try {
        work();
        _exit(0);
      } catch (const std::exception&) {
        _exit(1);
      }
    }
    int status = 0;
    waitpid(process, &status, WUNTRACED);
    if (!WIFSTOPPED(status)) throw std::runtime_error("the process did not begin");
    return process;
  }
  static void WaitForOthers() { raise(SIGSTOP); }
  static int End(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  // Lets the process go on and kills it after a random part of `longest`.
  void KillWithin(pid_t process, std::chrono::microseconds longest) {
    kill(process, SIGCONT);
    const auto moment = std::uniform_int_distribution<long>(0, longest.count())(random_);
    usleep(static_cast<useconds_t>(moment));
    kill(process, SIGKILL);
    End(process);
  }
  // Loads the list of ports, toggles every row whose number leaves `rest` when divided by `step`,
  // and saves.
  void Toggle(
      int step, int rest, const std::function<void()>& before_saving = [] {}) const {
    DiskFiles files;
    FlowDatabase database(files, folder_.path(), ado::InstalledDrivers(folder_.path()));
    const test::FixedClock clock;
    test::ScriptedMessageBox messages;
    ListHost host;
    const text::UserLocale locale("C");
    PortList ports({database, host, messages, clock, locale}, [] { return std::nullopt; });
    if (!ports.Refresh()) throw std::runtime_error(ports.LoadError());
    for (int row = Grid::kFixedRows; row <= kPorts; ++row) {
      if (row % step == rest) ports.OnClick(row, 0);
    }
    WaitForOthers();
    before_saving();
    if (ports.Sync().failed > 0) throw std::runtime_error("rows were not written");
  }
  // The rows of a query. No connection stays open: SQLite's locks do not survive a fork.
  std::vector<std::string> Rows(std::string_view query) const {
    return test::SqliteFile(folder_ / "suite.db").Rows(query);
  }
  std::vector<std::string> Enabled() const {
    return Rows("Select Enabled From ServicePorts Order By Port");
  }

  test::TemporaryFolder folder_;
  std::mt19937 random_{20070601};
};

TEST_F(ProcessesTest, AKilledSaveLeavesTheFirstRowsWrittenAndTheDatabaseSound) {
  std::vector<std::string> before = Enabled();
  std::chrono::microseconds longest{10000};  // Becomes about twice the time of a save.
  int cut_short = 0;
  for (int round = 0; round < kKills; ++round) {
    KillWithin(Start([this] { Toggle(1, 0); }), longest);
    const std::vector<std::string> after = Enabled();
    ASSERT_EQ(after.size(), before.size());
    std::size_t written = 0;
    while (written < after.size() && after[written] != before[written]) ++written;
    EXPECT_TRUE(std::equal(after.begin() + static_cast<long>(written), after.end(),
                           before.begin() + static_cast<long>(written)))
        << "a row was written after one that was not, in round " << round;
    cut_short += written > 0 && written < after.size() ? 1 : 0;
    longest = written == after.size() ? longest * 4 / 5 : longest * 5 / 4;
    before = after;
  }
  EXPECT_GT(cut_short, 0) << "no kill came in the middle of a save";
  EXPECT_EQ(Rows("pragma integrity_check").at(0), "ok");
}

TEST_F(ProcessesTest, AKilledRegistryWriteLeavesTheOldOrTheNewFile) {
  const std::filesystem::path file = folder_ / "registry.reg";
  ASSERT_TRUE(RegistryStore(file).WriteString(kKey, "Kept", "kept"));
  ASSERT_TRUE(RegistryStore(file).WriteString(kKey, "Count", "0"));
  int count = 0;
  for (int round = 0; round < kKills; ++round) {
    KillWithin(Start([&] {
                 RegistryStore store(file);
                 WaitForOthers();
                 for (int next = count + 1;; ++next) {
                   if (!store.WriteString(kKey, "Count", std::to_string(next))) _exit(1);
                 }
               }),
               std::chrono::milliseconds(3));
    RegistryStore store(file);
    EXPECT_EQ(store.ReadString(kKey, "Kept"), "kept");
    const int read = std::stoi(store.ReadString(kKey, "Count").value_or("-1"));
    EXPECT_GE(read, count);
    count = read;
    EXPECT_TRUE(store.WriteString(kKey, "Next", std::to_string(round)));
  }
  EXPECT_GT(count, 0) << "no write came through";
}

TEST_F(ProcessesTest, TwoProgramsThatSaveAtTheSameTimeKeepEachOthersEdits) {
  const std::filesystem::path file = folder_ / "registry.reg";
  for (int round = 0; round < 50; ++round) {
    const auto expected = Rows("Select 1-Enabled From ServicePorts Order By Port");
    std::vector<pid_t> processes;
    for (int number = 0; number < 2; ++number) {
      processes.push_back(Start([&] {
        RegistryStore store(file);
        Toggle(2, number, [&] {
          for (int value = number; value < 10; value += 2) {
            if (!store.WriteString(kKey, std::to_string(value), std::to_string(round))) _exit(1);
          }
        });
      }));
    }
    // Now both have read the same rows.
    for (const pid_t process : processes) kill(process, SIGCONT);
    for (const pid_t process : processes) ASSERT_EQ(End(process), 0);
    EXPECT_EQ(Enabled(), expected);
    for (int value = 0; value < 10; ++value) {
      EXPECT_EQ(RegistryStore(file).ReadString(kKey, std::to_string(value)), std::to_string(round));
    }
  }
}

}  // namespace
}  // namespace quillan
