#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QScrollBar>

#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

using testing::StartsWith;

class RetentionCollapseTest : public test::DialogTest {
 protected:
  QCheckBox* Enable(int level) {
    return Find<QCheckBox>(("CollapseEnable(" + std::to_string(level) + ")").c_str());
  }
};

TEST_F(RetentionCollapseTest, TextsFollowTheControls) {
  struct Level {
    int value;
    const char* text;
    int fallback;
  };
  constexpr std::array<Level, 3> kLevels = {{
      {3, "3 hours into 15 minute intervals", 1},
      {26, "1 days, 2 hours into 60 minute intervals", 24},
      {5, "5 days into 24 hour intervals", 7},
  }};
  Open();
  const auto name = [](const char* control, size_t level) {
    return std::string(control) + "(" + std::to_string(level + 1) + ")";
  };
  for (size_t i = 0; i < kLevels.size(); ++i) {
    Find<QScrollBar>(name("CollapseInterval_Scroll", i).c_str())->setValue(kLevels[i].value);
    EXPECT_EQ(Find<QLabel>(name("CollapseLevel", i).c_str())->text().toStdString(),
              std::string("Collapse statistics older than ") + kLevels[i].text);
  }
  Click("cmdRestoreCollapseDefaults");
  for (size_t i = 0; i < kLevels.size(); ++i) {
    EXPECT_EQ(Find<QScrollBar>(name("CollapseInterval_Scroll", i).c_str())->value(),
              kLevels[i].fallback);
  }
}

TEST_F(RetentionCollapseTest, SwitchingALevelOffIsRefusedOrConfirmedByTheSave) {
  Open();
  Enable(1)->click();
  EXPECT_TRUE(Enable(1)->isChecked());
  EXPECT_THAT(messages_.messages.back().text,
              StartsWith("Level 1 data collapsing cannot be disabled."));
  for (const int level : {2, 3}) Enable(level)->click();
  EXPECT_FALSE(Find<QFrame>("CollapseFrame(3)")->isEnabled());
  Find<QScrollBar>("RetainData_Scroll")->setValue(99);
  messages_.messages.clear();
  messages_.answers = {MessageAnswer::kCancel, MessageAnswer::kYes};
  Click("cmdOK");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(settings_->RetainDays(), 99);
  EXPECT_TRUE(settings_->CollapseEnable(2));
  // Of several levels, one save asks about the first alone.
  Click("cmdOK");
  ASSERT_EQ(messages_.messages.size(), 2U);
  EXPECT_THAT(messages_.messages[1].text,
              StartsWith("You have disabled Data Collapse Level 2\r\n"));
  EXPECT_EQ(messages_.messages[1].buttons, MessageButtons::kYesNoCancel);
  EXPECT_TRUE(settings_->CollapseEnable(2));
  EXPECT_FALSE(settings_->CollapseEnable(3));
}

}  // namespace
}  // namespace quillan
