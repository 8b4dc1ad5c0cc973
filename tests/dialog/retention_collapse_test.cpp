#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QScrollBar>

#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

using testing::EndsWith;
using testing::StartsWith;

class RetentionCollapseTest : public test::DialogTest {
 protected:
  std::string Text(const char* label) { return Find<QLabel>(label)->text().toStdString(); }
  QCheckBox* Enable(int level) {
    return Find<QCheckBox>(("CollapseEnable(" + std::to_string(level) + ")").c_str());
  }
  QScrollBar* Trigger(int level) {
    return Find<QScrollBar>(("CollapseInterval_Scroll(" + std::to_string(level) + ")").c_str());
  }
  QFrame* Frame(int level) {
    return Find<QFrame>(("CollapseFrame(" + std::to_string(level) + ")").c_str());
  }
};

TEST_F(RetentionCollapseTest, TextsFollowTheControls) {
  Open();
  EXPECT_EQ(Text("CollapseLevel(1)"),
            "Collapse statistics older than 60 minutes into 15 minute intervals");
  Find<QScrollBar>("RetainData_Scroll")->setValue(1234);
  EXPECT_EQ(Text("RetainDescription"),
            "NetFlow Statistics older than 1,234 days will be deleted from the Zephram database");
  Trigger(2)->setValue(26);
  EXPECT_EQ(Text("CollapseLevel(2)"),
            "Collapse statistics older than 1 days, 2 hours into 60 minute intervals");
  Click("cmdRestoreCollapseDefaults");
  EXPECT_EQ(Trigger(2)->value(), 24);
}

TEST_F(RetentionCollapseTest, LevelOneCannotBeSwitchedOffAndTheOthersEnableTheirFrames) {
  Open();
  Enable(1)->click();
  EXPECT_TRUE(Enable(1)->isChecked());
  ASSERT_EQ(messages_.messages.size(), 1U);
  EXPECT_THAT(messages_.messages[0].text,
              StartsWith("Level 1 data collapsing cannot be disabled."));
  Enable(3)->click();
  EXPECT_FALSE(Frame(3)->isEnabled());
  EXPECT_TRUE(Frame(2)->isEnabled());
  EXPECT_EQ(messages_.messages.size(), 1U);
}

TEST_F(RetentionCollapseTest, OneSaveAsksAboutOneLevel) {
  Open();
  Enable(2)->setChecked(false);
  Enable(3)->setChecked(false);
  messages_.answers = {MessageAnswer::kNo};
  Click("cmdOK");
  ASSERT_EQ(messages_.messages.size(), 1U);
  EXPECT_THAT(messages_.messages[0].text,
              StartsWith("You have disabled Data Collapse Level 2\r\n"));
  EXPECT_EQ(messages_.messages[0].buttons, MessageButtons::kYesNoCancel);
  EXPECT_FALSE(settings_->CollapseEnable(3));

  Open();
  Enable(3)->setChecked(false);
  messages_.answers = {MessageAnswer::kYes};
  Click("cmdOK");
  EXPECT_THAT(messages_.messages.back().text, EndsWith("Level 3 ?"));
  EXPECT_TRUE(settings_->CollapseEnable(3));
  EXPECT_TRUE(Frame(3)->isEnabled());
}

TEST_F(RetentionCollapseTest, CancelStopsTheSaveAndApplyReloads) {
  Open();
  Enable(2)->setChecked(false);
  Trigger(3)->setValue(9);
  Find<QScrollBar>("RetainData_Scroll")->setValue(99);
  messages_.answers = {MessageAnswer::kCancel, MessageAnswer::kCancel};
  Click("cmdOK");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(settings_->RetainDays(), 99);
  EXPECT_TRUE(settings_->CollapseEnable(2));
  EXPECT_EQ(settings_->CollapseTrigger(3), 7);
  Click("CmdApply");
  EXPECT_TRUE(Enable(2)->isChecked());
  EXPECT_EQ(Trigger(3)->value(), 7);
  EXPECT_EQ(Find<QScrollBar>("RetainData_Scroll")->value(), 21);
}

}  // namespace
}  // namespace quillan
