#include "platform/qt/qt_desktop.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <cstdlib>

#include "support/temporary_folder.h"

namespace quillan {
namespace {

/// Programs of the test's own that write into a FIFO, which the test reads until they end.
class QtDesktopTest : public testing::Test {
 protected:
  QtDesktopTest() { mkfifo((folder_ / "pipe").c_str(), 0600); }
  ~QtDesktopTest() override { setenv("PATH", path_.c_str(), 1); }

  std::filesystem::path MakeProgram(const char* name, const std::string& script) {
    const auto program = folder_.Write(name, script);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return program;
  }
  std::string ReadPipe() { return folder_.Read("pipe"); }

  test::TemporaryFolder folder_;
  const std::string path_ = getenv("PATH");
  // Some parents leave it ignored.
  const sighandler_t sigchld_ = signal(SIGCHLD, SIG_IGN);
  QtDesktop desktop_;
};

TEST_F(QtDesktopTest, StartsAProgramInItsOwnFolderWithoutWaiting) {
  const auto program = MakeProgram("own folder/wizard", "#!/bin/sh\npwd > ../pipe\n");
  EXPECT_TRUE(desktop_.StartProgram(program));
  EXPECT_EQ(ReadPipe(), program.parent_path().string() + "\n");
  EXPECT_FALSE(desktop_.StartProgram(folder_ / "missing"));
  EXPECT_FALSE(desktop_.StartProgram(MakeProgram("garbage", "\x01\x02")));
}

TEST_F(QtDesktopTest, OpensAPageWithTheFirstOpenerOnTheSearchPath) {
  setenv("PATH", (folder_ / "bin").c_str(), 1);
  EXPECT_EQ(desktop_.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
  MakeProgram("bin/firefox", "\x01\x02");
  EXPECT_EQ(desktop_.OpenUrl("http://a/"), OpenUrlResult::kNotOpened);
  // The opener goes on as the browser.
  MakeProgram("bin/xdg-open", "#!/bin/sh\nexec /bin/sh -c '/bin/sleep 1.2; echo \"$@\" >" +
                                  (folder_ / "pipe").string() + "' browser \"$@\"\n");
  EXPECT_EQ(desktop_.OpenUrl("http://a/?b=c d"), OpenUrlResult::kOpened);
  EXPECT_EQ(ReadPipe(), "http://a/?b=c d\n");
  EXPECT_EQ(desktop_.OpenUrl("--help"), OpenUrlResult::kNotOpened);
  MakeProgram("bin/xdg-open", "#!/bin/sh\nexit 3\n");
  EXPECT_EQ(desktop_.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
  MakeProgram("bin/xdg-open", "#!/bin/sh\nexit 4\n");
  EXPECT_EQ(desktop_.OpenUrl("http://a/"), OpenUrlResult::kNotOpened);
}

}  // namespace
}  // namespace quillan
