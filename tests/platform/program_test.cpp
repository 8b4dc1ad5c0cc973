#include "platform/program.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/desktop.h"
#include "platform/files.h"
#include "support/fakes.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

TEST(ProgramFolderTest, TheVariableComesFirstThenAnInstallationThenTheSystemsFolder) {
  const test::TemporaryFolder root;
  std::filesystem::create_directories(root / "usr/bin");
  const auto folder = [&] { return ProgramFolder(root / "usr/bin", root / "etc"); };
  unsetenv("QUILLAN_HOME");
  EXPECT_EQ(folder(), root / "usr/bin");
  std::filesystem::create_directory(root / "etc");
  EXPECT_EQ(folder(), root / "etc");
  for (const char* mark : {"usr/bin/registry.reg", "usr/TBKelvora.DB", "usr/bin/QuillanGUI.DB"}) {
    const auto file = root.Write(mark, "");
    EXPECT_EQ(folder(), root / "usr/bin") << mark;
    std::filesystem::remove(file);
  }
  setenv("QUILLAN_HOME", (root.path().string() + "/home/").c_str(), 1);
  EXPECT_EQ(folder(), root / "home");
  setenv("QUILLAN_HOME", "", 1);
  EXPECT_EQ(folder(), root / "etc");
}

TEST(FilesTest, FileNamesAreTakenFromPathsOfEitherKind) {
  EXPECT_EQ(FileNameFromPath("C:/Program Files/a.b.txt", FileExtension::kDrop), "a.b");
  EXPECT_EQ(FileNameFromPath("C:\\x/y\\a.txt", FileExtension::kKeep), "a.txt");
  EXPECT_EQ(FileNameFromPath("c:a.txt", FileExtension::kKeep), "a.txt");
  EXPECT_EQ(FileNameFromPath("dir.d/name", FileExtension::kDrop), "name");
}

TEST(ComputerNameTest, HasNeitherADomainNorPadding) {
  test::FakeDesktop desktop;
  for (const std::string& name :
       {std::string("  SERVER  "), std::string("SERVER\0  ", 9), std::string("SERVER \0\0", 9)}) {
    desktop.computer_name = name;
    EXPECT_EQ(LocalComputerName(desktop), "SERVER");
  }
  const pid_t other_host = fork();
  if (other_host == 0) {
    if (unshare(CLONE_NEWUTS) != 0 || sethostname("server.example.org", 18) != 0) _exit(2);
    _exit(Desktop().ComputerName() == "server" ? 0 : 1);
  }
  int result = 0;
  waitpid(other_host, &result, 0);
  if (WEXITSTATUS(result) == 2) GTEST_SKIP() << "only root can rename its computer";
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace quillan
