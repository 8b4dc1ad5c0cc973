#include "shell/shell.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

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

class MockMessageBox : public MessageBox {
 public:
  MOCK_METHOD(MessageAnswer, Show,
              (std::string_view text, std::string_view title, MessageButtons buttons,
               MessageIcon icon),
              (override));
};

TEST(ShellTest, DurationsNameAUnitOnlyWhenMoreThanOneIsLeft) {
  EXPECT_EQ(DurationText(0, 0, 0, 90), "1 minutes, 30 seconds");
  EXPECT_EQ(DurationText(1, 0, 0, 0), "24 hours");
  EXPECT_EQ(DurationText(0, 25, 0, 0), "1 days, 60 minutes");
  EXPECT_EQ(DurationText(0, 26, 0, 0), "1 days, 2 hours");
  EXPECT_EQ(DurationText(0, 1, 0, 0), "60 minutes");
  EXPECT_EQ(DurationText(0, 0, 1, 0), "60 seconds");
  EXPECT_EQ(DurationText(7, 0, 0, 0), "7 days");
  EXPECT_EQ(DurationText(1, 1, 1, 1), "1 days, 1 hours, 1 minutes, 1 seconds");
  EXPECT_EQ(DurationText(0, 0, 0, 0), "");
  EXPECT_EQ(DurationText(0, 0, 0, -5), "");
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(DurationText(0, kMost, 0, 0), "89478485 days, 7 hours");
  EXPECT_EQ(DurationText(kMost, 0, 0, 0), "2147483647 days");
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
  testing::StrictMock<MockMessageBox> messages;
  OpenInBrowser(desktop, messages, "http://server/help");
  EXPECT_EQ(desktop.opened, "http://server/help");

  EXPECT_CALL(messages, Show("Could not find default Browser", "Browser Not Found",
                             MessageButtons::kOk, MessageIcon::kExclamation));
  desktop.result = OpenUrlResult::kNoBrowser;
  OpenInBrowser(desktop, messages, "http://server/help");

  EXPECT_CALL(messages, Show("Web Page not Opened", "URL Failed", MessageButtons::kOk,
                             MessageIcon::kExclamation));
  desktop.result = OpenUrlResult::kNotOpened;
  OpenInBrowser(desktop, messages, "http://server/help");
}

TEST(ShellTest, TheComputersNameHasNoPaddingAtItsEnds) {
  ScriptedDesktop desktop;
  for (const std::string& name : {std::string("  SERVER  "), std::string("SERVER\0  ", 9),
                                  std::string("SERVER \0\0", 9), std::string("SERVER")}) {
    desktop.name = name;
    EXPECT_EQ(LocalComputerName(desktop), "SERVER");
  }
}

TEST(ShellTest, OnlyNullBecomesZero) {
  EXPECT_EQ(NullToZero(ado::Null{}), ado::Value(std::int64_t{0}));
  EXPECT_EQ(NullToZero(2.5), ado::Value(2.5));
  EXPECT_EQ(NullToZero(std::string_view("")), ado::Value(std::string_view("")));
}

}  // namespace
}  // namespace quillan
