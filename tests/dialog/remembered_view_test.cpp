#include "dialog/remembered_view.h"

#include <filesystem>

#include <QLineEdit>

#include "dialog/dialog_fixture.h"
#include "dialog/lengths.h"

namespace quillan {
namespace {

class RememberedViewTest : public test::DialogTest {
 protected:
  std::string Stored() {
    return ReadFile(program_.folder / "user/tarrowby.net/registry.reg").value_or("");
  }
  void Close() { Click("cmdCancel"); }
};

TEST_F(RememberedViewTest, KeepsWhatTheUserArrangedAndNothingElse) {
  Open();
  const QSize usual = form_->size();
  Close();
  EXPECT_EQ(Stored(), "");
  Open();
  form_->resize(usual + QSize(8, 20));
  Table("PortList")->setColumnWidth(1, 90);
  Close();
  const std::string stored = Stored();
  Open();
  EXPECT_EQ(form_->size(), usual + QSize(8, 20));
  SelectPage(1);
  EXPECT_EQ(Table("PortList")->columnWidth(1), 90);
  EXPECT_EQ(form_->minimumSize(), QSize(ToPixels(7735), ToPixels(6475)));
  Close();
  EXPECT_EQ(Stored(), stored);
  RememberedView view(registry_);
  EXPECT_EQ(view.StripShown(), std::nullopt);
  view.SetStripShown(true);
  view.Write();
  EXPECT_EQ(view.StripShown(), true);
}

TEST_F(RememberedViewTest, NoStoredSizeIsSmallerThanTheDesignOrLargerThanTheScreen) {
  const auto opened_with = [&](const char* size) {
    program_.folder.Write("user/tarrowby.net/registry.reg",
                          std::string("REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Tarrowby.Net"
                                      "\\Quillan\\Window]\r\n\"Size\"=\"") +
                              size + "\"\r\n\"PortList Columns\"=\"1 900000 x\"\r\n");
    Open();
    return form_->size();
  };
  const QSize usual = opened_with("");
  const QSize screen = form_->screen()->availableSize();
  EXPECT_EQ(opened_with("1 1"), form_->minimumSize());
  const QSize largest = opened_with("900000 900000");
  EXPECT_EQ(largest.boundedTo(screen), largest);
  EXPECT_GT(largest.width(), usual.width());
  for (const char* nonsense : {"wide", "9000", "-1 -1", "99999999999 1", "1  1"}) {
    EXPECT_EQ(opened_with(nonsense), usual) << nonsense;
  }
}

TEST_F(RememberedViewTest, WhatCannotBeReadOrWrittenIsLeftAloneInSilence) {
  const auto file = program_.folder.Write("user/tarrowby.net/registry.reg", std::string("a\0b", 3));
  Open();
  form_->resize(form_->size() + QSize(8, 20));
  Close();
  EXPECT_EQ(Stored(), std::string("a\0b", 3));
  std::filesystem::remove(file);
  const std::string lock = file.string() + ".lock";
  std::filesystem::remove(lock);
  std::filesystem::create_directory(lock);  // No program gets this lock.
  Open();
  form_->resize(form_->size() + QSize(8, 20));
  Close();
  EXPECT_FALSE(form_->isVisible());
  EXPECT_EQ(Stored(), "");
  EXPECT_THAT(messages_.messages, testing::IsEmpty());
}

TEST_F(RememberedViewTest, AnOptionThatTheUserCouldNotSaveKeepsTheDialogOpen) {
  Open();
  const auto lock = program_.folder / "program/registry.reg.lock";
  std::filesystem::remove(lock);
  std::filesystem::create_directory(lock);
  settings_->SetIncludeDNS(false);
  Find<QLineEdit>("ListenPort")->setText(QStringLiteral("9996"));
  Click("cmdOK");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_THAT(Status(), testing::HasSubstr("1 of 2"));
  EXPECT_TRUE(Find<QPushButton>("cmdDetails")->isVisible());
  EXPECT_THAT(program_.suite.Rows("select NetFlowPort from FlowEngines"),
              testing::ElementsAre("9996"));
  std::filesystem::remove(lock);
  settings_->SetIncludeDNS(false);
  Click("cmdOK");
  EXPECT_FALSE(form_->isVisible());
  EXPECT_EQ(registry_.ReadRegistryString("Quillan", "Settings", "Include DNS"), "False");
}

}  // namespace
}  // namespace quillan
