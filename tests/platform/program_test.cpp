#include "platform/program.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/files.h"
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

}  // namespace
}  // namespace quillan
