#include "platform/desktop.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "support/fakes.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

class ScriptedDesktop final : public Desktop {
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
  EXPECT_EQ(Desktop().ComputerName().find('.'), std::string::npos);
  ScriptedDesktop desktop;
  for (const std::string& name : {std::string("  SERVER  "), std::string("SERVER\0  ", 9),
                                  std::string("SERVER \0\0", 9), std::string("SERVER")}) {
    desktop.name = name;
    EXPECT_EQ(LocalComputerName(desktop), "SERVER");
  }
}

}  // namespace
}  // namespace quillan
