#include "app/start_up.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/program_folder.h"

namespace quillan {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class StartUpTest : public test::ProgramTest {
 protected:
  StartUpResult Start() {
    messages_.messages.clear();
    reported_.clear();
    return StartUp({
        .program_folder = program_.folder / "program",
        .registry = registry_,
        .settings = settings_,
        .database = program_.database,
        .files = program_.files,
        .desktop = desktop_,
        .messages = messages_,
        .set_help_file = [this](const std::filesystem::path& file) { help_file_ = file; },
        .show_dialog = [this] { ++shown_; },
        .report_failure = [this](std::string_view line) { reported_ += line; },
    });
  }
  void CompleteWizard() {
    registry_.SaveRegistryString("TBKelvora", "Wizard", "Completed", "True");
  }
  // The one message of a start that ended; nothing was shown or started.
  std::string Refusal() {
    EXPECT_EQ(Start(), StartUpResult::kFailed);
    EXPECT_EQ(shown_, 0);
    EXPECT_THAT(desktop_.started, IsEmpty());
    if (messages_.messages.size() != 1) return "no message, or several";
    EXPECT_EQ(messages_.messages[0].icon, MessageIcon::kCritical);
    return messages_.messages[0].text;
  }

  Settings settings_{registry_, program_.database, desktop_, clock_, locale_};
  std::filesystem::path help_file_;
  std::string reported_;
  int shown_ = 0;
};

TEST_F(StartUpTest, TheWizardOfTheProgramFolderComesBeforeThatOfItsParent) {
  EXPECT_EQ(Refusal(),
            "Cannot start Configuration Wizard to setup the Quillan Management Pack.\r\n"
            "You may need to reinstall this application.");
  EXPECT_EQ(messages_.messages[0].title, "Config Wizard Startup Error");

  const std::filesystem::path own = program_.folder / "program/Kelvora-Wizard.exe";
  const std::filesystem::path above = program_.folder / "Kelvora-Wizard.exe";
  std::filesystem::create_directory(own);  // A folder is no program.
  program_.folder.Write("Kelvora-Wizard.exe", "");
  EXPECT_EQ(Start(), StartUpResult::kWizardStarted);
  std::filesystem::remove(own);
  program_.folder.Write("program/Kelvora-Wizard.exe", "");
  desktop_.starts = false;
  EXPECT_EQ(Start(), StartUpResult::kFailed);
  EXPECT_EQ(reported_, "Cannot start " + own.string() + ".");
  ASSERT_THAT(desktop_.started, SizeIs(2));
  EXPECT_EQ(desktop_.started[0].lexically_normal(), above);
  EXPECT_EQ(desktop_.started[1], own);
  EXPECT_THAT(messages_.messages, IsEmpty());
  EXPECT_EQ(shown_, 0);
  EXPECT_FALSE(program_.database.Connected());
}

TEST_F(StartUpTest, ADatabaseThatCannotBeOpenedIsExplained) {
  CompleteWizard();
  program_.folder.Write("program/TBKelvora.DB", "TIMEOUT=3\r\n");
  EXPECT_EQ(Refusal(),
            "The connection file TBKelvora.DB or QuillanGUI.DB names no CONNECTION.\r\n"
            "Please re-run the Installation Wizard.");
  program_.folder.Write("program/TBKelvora.DB", "# on Linux\nCONNECTION=Provider=SQLite\n");
  EXPECT_THAT(Refusal(), HasSubstr("must end in CR LF. To convert the file, run: sed -i "));
  program_.folder.Write("program/TBKelvora.DB",
                        "CONNECTION=Provider=SQLite;Password=secret;Data Source=gone.db");
  EXPECT_THAT(Refusal(),
              AllOf(StartsWith("Cannot connect to SQL database. Re-run the Installation Wizard."
                               "\r\n\r\nProvider=SQLite;Password='*********';Data Source=gone.db"
                               "\r\n\r\nError="),
                    EndsWith("gone.db does not exist.")));
  std::filesystem::remove(program_.folder / "program/TBKelvora.DB");
  EXPECT_EQ(Refusal(),
            "Cannot find TBKelvora.DB or QuillanGUI.DB.\r\nPlease re-run the Installation Wizard.");
}

TEST_F(StartUpTest, TheDialogIsShownOverAnOpenDatabase) {
  CompleteWizard();
  EXPECT_EQ(Start(), StartUpResult::kRunning);
  EXPECT_EQ(shown_, 1);
  EXPECT_TRUE(program_.database.Connected());
  EXPECT_THAT(messages_.messages, IsEmpty());
  EXPECT_THAT(desktop_.started, IsEmpty());
  EXPECT_EQ(help_file_, program_.folder / "program/Help/Tarrowby.chm");
}

}  // namespace
}  // namespace quillan
