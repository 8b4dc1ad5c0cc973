#include "platform/desktop.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/fakes.h"

namespace quillan {
namespace {

class ScriptedDesktop final : public Desktop {
 public:
  OpenUrlResult OpenUrl(const std::string& /*url*/) override { return result; }
  std::string ComputerName() const override { return name; }

  std::string name;
  OpenUrlResult result = OpenUrlResult::kOpened;
};

TEST(OpenInBrowserTest, ABrowserThatDoesNotOpenIsReported) {
  ScriptedDesktop desktop;
  test::ScriptedMessageBox messages;
  for (const auto result :
       {OpenUrlResult::kOpened, OpenUrlResult::kNoBrowser, OpenUrlResult::kNotOpened}) {
    desktop.result = result;
    OpenInBrowser(desktop, messages, "http://server/help");
  }
  ASSERT_EQ(messages.messages.size(), 2U);
  EXPECT_EQ(messages.messages[0].text, "Could not find default Browser");
  EXPECT_EQ(messages.messages[1].text, "Web Page not Opened");
}

TEST(ComputerNameTest, HasNeitherADomainNorPadding) {
  ScriptedDesktop desktop;
  for (const std::string& name :
       {std::string("  SERVER  "), std::string("SERVER\0  ", 9), std::string("SERVER \0\0", 9)}) {
    desktop.name = name;
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
