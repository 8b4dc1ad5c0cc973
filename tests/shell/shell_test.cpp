#include "shell/shell.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/fakes.h"

namespace quillan {
namespace {

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

TEST(ShellTest, DurationsNameAUnitOnlyWhenMoreThanOneIsLeft) {
  EXPECT_EQ(DurationText(0, 0, 0, 90), "1 minutes, 30 seconds");
  EXPECT_EQ(DurationText(1, 0, 0, 0), "24 hours");
  EXPECT_EQ(DurationText(0, 26, 0, 0), "1 days, 2 hours");
  EXPECT_EQ(DurationText(0, 0, 1, 0), "60 seconds");
  EXPECT_EQ(DurationText(1, 1, 1, 1), "1 days, 1 hours, 1 minutes, 1 seconds");
  EXPECT_EQ(DurationText(0, 0, 0, -5), "");
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(DurationText(0, kMost, 0, 0), "89478485 days, 7 hours");
}

TEST(ShellTest, FileNamesAreTakenFromPathsOfEitherKind) {
  EXPECT_EQ(FileNameFromPath("C:/Program Files/a.b.txt", FileExtension::kDrop), "a.b");
  EXPECT_EQ(FileNameFromPath("C:\\x/y\\a.txt", FileExtension::kKeep), "a.txt");
  EXPECT_EQ(FileNameFromPath("c:a.txt", FileExtension::kKeep), "a.txt");
  EXPECT_EQ(FileNameFromPath("dir.d/name", FileExtension::kDrop), "name");
  EXPECT_EQ(FileNameFromPath("dir/", FileExtension::kDrop), "");
}

TEST(ShellTest, ABrowserThatDoesNotOpenIsReported) {
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

TEST(ShellTest, TheComputersNameHasNoPaddingAtItsEnds) {
  ScriptedDesktop desktop;
  for (const std::string& name : {std::string("  SERVER  "), std::string("SERVER\0  ", 9),
                                  std::string("SERVER \0\0", 9), std::string("SERVER")}) {
    desktop.name = name;
    EXPECT_EQ(LocalComputerName(desktop), "SERVER");
  }
}

}  // namespace
}  // namespace quillan
