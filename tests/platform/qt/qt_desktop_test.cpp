#include "platform/qt/qt_desktop.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <cstdlib>

#include "support/temporary_folder.h"

namespace quillan {
namespace {

TEST(QtDesktopTest, OpensAPageWithTheFirstOpenerOnTheSearchPath) {
  const test::TemporaryFolder folder;
  const auto make = [&](const char* name, const std::string& script) {
    const auto program = folder.Write(name, script);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  };
  const auto pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string path = getenv("PATH");
  setenv("PATH", (folder / "bin").c_str(), 1);
  signal(SIGCHLD, SIG_IGN);  // Some parents leave it ignored.
  QtDesktop desktop;
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
  make("bin/firefox", "\x01\x02");
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNotOpened);
  // The opener goes on as the browser.
  make("bin/xdg-open", "#!/bin/sh\nexec /bin/sh -c '/bin/sleep 1.2; echo \"$@\" >" + pipe.string() +
                           "' browser \"$@\"\n");
  EXPECT_EQ(desktop.OpenUrl("http://a/?b=c d"), OpenUrlResult::kOpened);
  EXPECT_EQ(folder.Read("pipe"), "http://a/?b=c d\n");
  EXPECT_EQ(desktop.OpenUrl("--help"), OpenUrlResult::kNotOpened);
  make("bin/xdg-open", "#!/bin/sh\nexit 3\n");
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
  make("bin/xdg-open", "#!/bin/sh\nexit 4\n");
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNotOpened);
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace quillan
