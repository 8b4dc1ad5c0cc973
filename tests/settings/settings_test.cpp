#include "settings/settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "support/program_folder.h"

namespace quillan {
namespace {

using testing::ElementsAre;

class SettingsTest : public test::ProgramTest {
 protected:
  Settings Load() {
    changed_.clear();
    return Settings(registry_, program_.database, desktop_, clock_, locale_,
                    [this](std::string_view name, const OptionValue&) {
                      changed_.push_back(std::string(name) + "=" + Get(name));
                    });
  }
  void Put(std::string_view name, std::string_view value) {
    registry_.SaveRegistryString("Quillan", "Settings", name, value);
  }
  std::string Get(std::string_view name) const {
    return registry_.ReadRegistryString("Quillan", "Settings", name).value_or("(none)");
  }
  static std::string Numbers(const Settings& settings) {
    std::string numbers;
    for (const int number : {settings.MaxEvents(), settings.RefreshInterval(),
                             settings.RetainDays(), int{settings.CurrentPeriod()}}) {
      numbers += std::to_string(number) + " ";
    }
    return numbers + std::to_string(settings.TrafficDetailsSplit()).substr(0, 6);
  }

  std::vector<std::string> changed_;
};

TEST_F(SettingsTest, AnEmptyRegistryGivesDefaultsAndGetsTwoOfThem) {
  Settings settings = Load();
  EXPECT_EQ(Numbers(settings), "250 10 21 5 6000.0");
  EXPECT_TRUE(settings.IncludeDNS() && !settings.AutoRefreshStatus());
  EXPECT_EQ(settings.GUIStyle(), "DIALOG");
  EXPECT_EQ(settings.CurrentStatusColumns(), "InterfaceTypeIcon,InterfaceSpeed,OutBps,InBps");
  EXPECT_EQ(settings.WebImagesFolder(), "");
  EXPECT_THAT(changed_, ElementsAre("Max Events=250", "Refresh Interval=10"));

  Put("GUI Style", "advanced");
  registry_.SaveRegistryString("Tarrowby 2002", "Zephram", "Web Root Dir", "C:\\Wéb");
  settings.Refresh();
  EXPECT_EQ(settings.GUIStyle(), "ADVANCED");
  EXPECT_EQ(settings.WebImagesFolder(), "C:\\Wéb\\Kelvora\\Images");
  EXPECT_EQ(changed_.size(), 2U);
}

TEST_F(SettingsTest, StoredNumbersAreBroughtIntoRangeOrCountAsTheirDefaults) {
  const std::string rows[][2] = {
      {"5", "10 5 5 5 5.0000"},
      {"20000", "10000 3600 3650 20000 20000."},
      {" 40000 ", "10000 3600 3650 5 40000."},
      {"12.5", "12 12 12 12 12.500"},
      {"1e39", "250 10 21 5 6000.0"},
      {"12 events", "250 10 21 5 6000.0"},
      {"", "250 10 21 5 6000.0"},
  };
  for (const auto& [text, numbers] : rows) {
    for (const char* name : {"Max Events", "Refresh Interval", "Retain Data",
                             "Current Traffic Period", "Traffic Details Split", "Include DNS"}) {
      Put(name, text);
    }
    const Settings settings = Load();
    EXPECT_EQ(Numbers(settings), numbers) << text;
    EXPECT_TRUE(settings.IncludeDNS()) << text;
    EXPECT_EQ(Get("Max Events"), std::to_string(settings.MaxEvents()));
    EXPECT_EQ(Get("Retain Data"), text);
  }
}

TEST_F(SettingsTest, BooleansAreWordsOrNumbers) {
  for (const std::string text : {"True", " tRUE ", "-1", "0.1", "FALSE", "0.0", "yes", ""}) {
    const bool value = text != "FALSE" && text != "0.0" && text != "yes" && !text.empty();
    Put("Auto Refresh Events", text);
    registry_.SaveRegistryString("TBKelvora", "Wizard", "Completed", text);
    const Settings settings = Load();
    EXPECT_EQ(settings.AutoRefreshEvents(), value) << text;
    EXPECT_EQ(settings.WizardCompleted(), value) << text;
    // The wizard may complete while the program runs.
    registry_.SaveRegistryString("TBKelvora", "Wizard", "Completed", value ? "False" : "True");
    EXPECT_EQ(settings.WizardCompleted(), !value) << text;
  }
}

TEST_F(SettingsTest, SettersClampAndStoreOnlyWhatChanges) {
  Settings settings = Load();
  changed_.clear();
  settings.SetMaxEvents(1);
  settings.SetRefreshInterval(10);
  settings.SetIncludeDNS(false);
  settings.SetCurrentPeriod(99);
  settings.SetTrafficDetailsSplit(-0.5F);
  settings.SetTrafficDetailsSplit(std::numeric_limits<float>::quiet_NaN());
  settings.SetCurrentStatusColumns("interfacetypeicon");
  settings.SetRetainDays(9999);
  settings.SetGUIStyle("minimal");
  settings.SetListenPort(-7);
  EXPECT_THAT(changed_,
              ElementsAre("Max Events=10", "Include DNS=False", "Current Traffic Period=60",
                          "Traffic Details Split=0", "Current Status Columns=interfacetypeicon"));
  EXPECT_EQ(Get("Retain Data") + Get("GUI Style"), "(none)(none)");
  EXPECT_EQ(settings.RetainDays(), 3650);
  EXPECT_EQ(settings.GUIStyle(), "MINIMAL");
  EXPECT_EQ(settings.ListenPort(), 1);
}

TEST_F(SettingsTest, DecimalsFollowTheUsersLocale) {
  locale_ = text::UserLocale("de_DE.UTF-8");
  if (locale_.FormatNumber(0.5) != "0,5") GTEST_SKIP() << "de_DE.UTF-8 is not installed";
  Put("Traffic Details Split", "0,25");
  Settings settings = Load();
  EXPECT_EQ(settings.TrafficDetailsSplit(), 0.25F);
  settings.SetTrafficDetailsSplit(1234.1F);
  EXPECT_EQ(Get("Traffic Details Split"), "1234,1");
}

TEST_F(SettingsTest, CollapseLevelsOutsideTheirRangeMeanTheNearest) {
  Settings settings = Load();
  settings.RefreshDatabaseSettings();
  settings.SetCollapseTrigger(-9, 0);
  settings.SetCollapseInterval(7, -1);
  settings.SetCollapseEnable(4, false);
  std::string levels;
  for (const int level : {0, 1, 2, 3, 99}) {
    levels += std::to_string(settings.CollapseTrigger(level)) + "/" +
              std::to_string(settings.CollapseInterval(level)) +
              (settings.CollapseEnable(level) ? " on, " : " off, ");
  }
  EXPECT_EQ(levels, "1/15 on, 1/15 on, 24/60 on, 7/1 off, 7/1 off, ");
}

TEST_F(SettingsTest, TheListeningPortIsThisComputersRow) {
  Settings settings = Load();
  program_.suite.Run("Insert Into FlowEngines Values ('another',9)");
  settings.RefreshDatabaseSettings();
  EXPECT_EQ(settings.ListenPort(), 2055);
  for (const int port : {9995, 9996}) {
    settings.SetListenPort(port);
    settings.SaveDatabaseSettings();
    EXPECT_THAT(program_.suite.Rows("Select * From FlowEngines Order By 1"),
                ElementsAre("another|9", "collector|" + std::to_string(port)));
  }
  const std::string rows[][2] = {
      {"NULL", "0"}, {"2056.5", "2056"}, {"-1", "-1"}, {"99999999999", "2055"}};
  for (const auto& [stored, loaded] : rows) {
    program_.suite.Run("Update FlowEngines Set ServerName=upper(ServerName), NetFlowPort=" +
                       stored);
    settings.RefreshDatabaseSettings();
    EXPECT_EQ(std::to_string(settings.ListenPort()), loaded) << stored;
  }
  settings.SetListenPort(1);
  std::filesystem::rename(program_.suite.path(), program_.folder / "away.db");
  settings.SaveDatabaseSettings();
  settings.RefreshDatabaseSettings();
  EXPECT_EQ(settings.ListenPort(), 2055);
}

}  // namespace
}  // namespace quillan
