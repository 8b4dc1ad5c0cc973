#include <gmock/gmock.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <string>

#include <QProcess>

#include "registry/registry.h"
#include "support/sqlite_file.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr int kPatience = 60'000;  // Milliseconds; only a failure takes that long.

struct Outcome {
  int status = -1;       // The exit status; -1 when a signal ended the process.
  bool went_on = false;  // It still ran after its windows were closed, and was then ended.
  std::string output;
  std::string error;
};

/// Starts the real executable, into which Qt loads a plugin that closes its windows.
class ExecutableTest : public testing::Test {
 protected:
  ExecutableTest() {
    folder_.Write("program/TBKelvora.DB", "CONNECTION=Provider=SQLite;Data Source=suite.db\r\n");
    WriteRegistry("DIALOG");
  }

  void WriteRegistry(const std::string& style) {
    Registry registry(folder_ / "program", folder_ / "user");
    registry.SaveRegistryString("TBKelvora", "Wizard", "Completed", "True");
    registry.SaveRegistryString("Quillan", "Settings", "GUI Style", style);
  }

  Outcome Start(const QStringList& arguments = {}) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QUILLAN_HOME"), QString::fromStdString(folder_ / "program"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QString::fromStdString(folder_ / "user"));
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(QUILLAN_TEST_PLUGINS));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("closewindows"));
    process.setProcessEnvironment(environment);
    process.setChildProcessModifier([] {  // File permissions are to hold for root, too.
      for (const int right : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH}) prctl(PR_CAPBSET_DROP, right);
    });
    process.start(QStringLiteral(QUILLAN_EXECUTABLE), arguments);
    Outcome run;
    while (!run.went_on && process.waitForReadyRead(kPatience)) {
      run.output += process.readAllStandardOutput().toStdString();
      run.went_on = run.output.ends_with("running\n");
    }
    if (run.went_on) process.terminate();
    process.waitForFinished(kPatience);
    EXPECT_EQ(process.state(), QProcess::NotRunning) << run.output;
    if (process.exitStatus() == QProcess::NormalExit) run.status = process.exitCode();
    run.output += process.readAllStandardOutput().toStdString();
    // Qt has remarks of its own.
    for (const QByteArray& line : process.readAllStandardError().split('\n')) {
      if (line.startsWith("quillan: ")) run.error += line.toStdString() + "\n";
    }
    return run;
  }

  test::TemporaryFolder folder_;
  test::SqliteFile suite_{folder_ / "program/suite.db"};
};

TEST_F(ExecutableTest, OnlySomeStylesLetTheProcessOutliveItsDialog) {
  for (const auto& [style, goes_on] :
       {std::pair{"DIALOG", false}, {"", false}, {"MINIMAL", true}, {"advanced", true}}) {
    WriteRegistry(style);
    const Outcome run = Start();
    EXPECT_THAT(run.output, StartsWith("Quillan Settings: ")) << style;
    EXPECT_EQ(run.went_on, goes_on) << style;
    EXPECT_EQ(run.status, goes_on ? -1 : 0) << style;
    EXPECT_EQ(run.error, "") << style;
  }
}

TEST_F(ExecutableTest, TheWizardOfTheProgramFolderIsStartedElseThatOfItsParent) {
  const auto make_wizard = [&](const std::string& name, const std::string& script) {
    chmod(folder_.Write(name, script).c_str(), 0700);
  };
  std::filesystem::remove(folder_ / "program/registry.reg");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(folder_ / "program/Kelvora-Wizard.exe");
  make_wizard("Kelvora-Wizard.exe", "#!/bin/sh\necho parent >pipe\n");
  const Outcome parent = Start();
  EXPECT_EQ(folder_.Read("pipe"), "parent\n");
  std::filesystem::remove(folder_ / "program/Kelvora-Wizard.exe");
  make_wizard("program/Kelvora-Wizard.exe", "#!/bin/sh\necho own >../pipe\n");
  const Outcome own = Start();
  EXPECT_EQ(folder_.Read("pipe"), "own\n");
  EXPECT_EQ(parent.status + own.status, 0);
  EXPECT_EQ(parent.output + own.output, "") << "no window is shown";
}

TEST_F(ExecutableTest, AFailedStartSaysWhyInABoxAndInOneLineAndEndsWithAStatus) {
  const auto expect_failure = [&](const std::string& reason) {
    const Outcome run = Start();
    EXPECT_EQ(run.status, 1) << reason;
    EXPECT_THAT(run.output, HasSubstr(reason));
    EXPECT_THAT(run.error, testing::MatchesRegex("quillan: [^\n]*\n"));
    EXPECT_THAT(run.error, HasSubstr(reason));
  };
  folder_.Write("program/TBKelvora.DB", "TIMEOUT=3\r\n");
  expect_failure("Add a line such as CONNECTION=");
  const auto connection_file =
      folder_.Write("program/TBKelvora.DB", "CONNECTION=Provider=SQLite;Data Source=suite.db");
  ASSERT_EQ(chmod((folder_ / "program/suite.db").c_str(), 0444), 0);
  expect_failure("suite.db is write-protected.");
  std::filesystem::remove(connection_file);
  expect_failure("Cannot find TBKelvora.DB or QuillanGUI.DB. Please re-run");
  ASSERT_EQ(mkfifo(connection_file.c_str(), 0600), 0);
  expect_failure("Cannot read " + connection_file.string() + ": Not a regular file");
  const auto registry = folder_ / "program/registry.reg";
  ASSERT_EQ(chmod(registry.c_str(), 0), 0);
  expect_failure("Cannot read " + registry.string() + ": Permission denied");
  std::filesystem::remove(registry);
  expect_failure("Cannot start Configuration Wizard");
}

TEST_F(ExecutableTest, OnlyHelpVersionAndTheOptionsOfQtAreAccepted) {
  for (const auto& [arguments, output] : {std::pair("--help", "usage: quillan"),
                                          {"-platform missing --version", "quillan 1"},
                                          {"-style fusion", "Quillan Settings: "}}) {
    const Outcome run = Start(QString::fromLatin1(arguments).split(QLatin1Char(' ')));
    EXPECT_EQ(run.status, 0) << arguments;
    EXPECT_THAT(run.output, StartsWith(output));
    EXPECT_EQ(run.error, "");
  }
  const Outcome refused = Start({QStringLiteral("--colour")});
  EXPECT_EQ(refused.status, 2);
  EXPECT_THAT(refused.error, StartsWith("quillan: unknown argument --colour"));
}

}  // namespace
}  // namespace quillan
