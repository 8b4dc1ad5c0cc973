#include "platform/desktop.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "support/fakes.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

/// Programs of the test's own that write into a pipe, which the test reads until they end.
class DesktopTest : public testing::Test {
 protected:
  DesktopTest() { mkfifo((folder_ / "pipe").c_str(), 0600); }
  ~DesktopTest() override { setenv("PATH", path_.c_str(), 1); }

  std::filesystem::path MakeProgram(const char* name, const std::string& script) {
    const auto program = folder_.Write(name, script);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return program;
  }
  std::string ReadPipe() { return folder_.Read("pipe"); }

  test::TemporaryFolder folder_;
  const std::string path_ = getenv("PATH");
  PosixDesktop desktop_;
};

TEST_F(DesktopTest, StartsAProgramInItsOwnFolderWithoutWaiting) {
  const auto program = MakeProgram("own folder/wizard", "#!/bin/sh\npwd > ../pipe\n");
  EXPECT_TRUE(desktop_.StartProgram(program));
  EXPECT_EQ(ReadPipe(), program.parent_path().string() + "\n");
  EXPECT_FALSE(desktop_.StartProgram(folder_ / "missing"));
  EXPECT_FALSE(desktop_.StartProgram(MakeProgram("garbage", "\x01\x02")));
}

TEST_F(DesktopTest, OpensAPageWithTheFirstOpenerOnTheSearchPath) {
  setenv("PATH", (folder_ / "bin").c_str(), 1);
  EXPECT_EQ(desktop_.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
  MakeProgram("bin/firefox", "\x01\x02");
  EXPECT_EQ(desktop_.OpenUrl("http://a/"), OpenUrlResult::kNotOpened);
  MakeProgram("bin/xdg-open", "#!/bin/sh\necho \"$@\" > " + (folder_ / "pipe").string() + "\n");
  EXPECT_EQ(desktop_.OpenUrl("http://a/?b=c d"), OpenUrlResult::kOpened);
  EXPECT_EQ(ReadPipe(), "http://a/?b=c d\n");
  MakeProgram("bin/xdg-open", "#!/bin/sh\nexit 3\n");
  EXPECT_EQ(desktop_.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
}

TEST_F(DesktopTest, TheComputersNameHasNoDomain) {
  const std::string name = desktop_.ComputerName();
  EXPECT_FALSE(name.empty());
  EXPECT_EQ(name.find('.'), std::string::npos);
}

class ScriptedDesktop final : public PosixDesktop {
 public:
  OpenUrlResult OpenUrl(const std::string& url) override {
    opened = url;
    return result;
  }
  std::string ComputerName() const override { return name; }

  std::string opened;
  std::string name;
  OpenUrlResult result = OpenUrlResult::kOpened;
};

TEST(OpenInBrowserTest, ABrowserThatDoesNotOpenIsReported) {
  ScriptedDesktop desktop;
  test::ScriptedMessageBox messages;
  OpenInBrowser(desktop, messages, "http://server/help");
  EXPECT_EQ(desktop.opened, "http://server/help");
  EXPECT_TRUE(messages.messages.empty());
  desktop.result = OpenUrlResult::kNoBrowser;
  OpenInBrowser(desktop, messages, "http://server/help");
  EXPECT_EQ(messages.messages.at(0).text, "Could not find default Browser");
  EXPECT_EQ(messages.messages.at(0).title, "Browser Not Found");
  desktop.result = OpenUrlResult::kNotOpened;
  OpenInBrowser(desktop, messages, "http://server/help");
  EXPECT_EQ(messages.messages.at(1).text, "Web Page not Opened");
  EXPECT_EQ(messages.messages.at(1).title, "URL Failed");
}

TEST(LocalComputerNameTest, HasNoPaddingAtItsEnds) {
  ScriptedDesktop desktop;
  for (const std::string& name : {std::string("  SERVER  "), std::string("SERVER\0  ", 9),
                                  std::string("SERVER \0\0", 9), std::string("SERVER")}) {
    desktop.name = name;
    EXPECT_EQ(LocalComputerName(desktop), "SERVER");
  }
}

}  // namespace
}  // namespace quillan
