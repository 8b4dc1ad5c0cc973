#include "settings/settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
  std::vector<std::string> Engines() {
    return program_.suite.Rows("Select * From FlowEngines Order By ServerName");
  }

  std::vector<std::string> changed_;
};

std::string Text(bool on) { return on ? "True" : "False"; }
std::string Text(std::string_view text) { return std::string(text); }
std::string Text(float number) { return std::to_string(number); }
std::string Text(std::int32_t number) { return std::to_string(number); }

TEST_F(SettingsTest, EveryRegistryOptionHasADefaultIsReadAndIsStoredWhereItsSetterSaysSo) {
  using S = Settings;
  const Settings defaults = Load();
  EXPECT_THAT(changed_, ElementsAre("Max Events=250", "Refresh Interval=10"));
  struct Texts {
    const char *default_value, *stored, *loaded;  // Before the setter is called,
    const char *value, *stored_again;             // and after it.
  };
  const auto expect = [&](const char* name, auto get, auto set, auto value, const Texts& texts) {
    EXPECT_EQ(Text((defaults.*get)()), texts.default_value) << name;
    Put(name, texts.stored);
    Settings settings = Load();
    EXPECT_EQ(Text((settings.*get)()), texts.loaded) << name;
    for (int twice = 0; twice < 2; ++twice) (settings.*set)(value);
    EXPECT_EQ(Text((settings.*get)()), texts.value) << name;
    EXPECT_EQ(Get(name), texts.stored_again) << name;
    EXPECT_EQ(std::count(changed_.begin() + 2, changed_.end(),
                         std::string(name) + "=" + texts.stored_again),
              texts.stored_again == std::string(texts.stored) ? 0 : 1)
        << name;
  };
  expect("Current Status Columns", &S::CurrentStatusColumns, &S::SetCurrentStatusColumns, "outbps",
         {"InterfaceTypeIcon,InterfaceSpeed,OutBps,InBps", "OutBps", "OutBps", "outbps", "outbps"});
  expect("Retain Data", &S::RetainDays, &S::SetRetainDays, 30, {"21", "40", "40", "30", "40"});
  expect("Max Events", &S::MaxEvents, &S::SetMaxEvents, 9, {"250", "300", "300", "10", "10"});
  expect("GUI Style", &S::GUIStyle, &S::SetGUIStyle, "minimal",
         {"DIALOG", "advanced", "ADVANCED", "MINIMAL", "advanced"});
  expect("Auto Refresh Status", &S::AutoRefreshStatus, &S::SetAutoRefreshStatus, false,
         {"False", "True", "True", "False", "False"});
  expect("Auto Refresh Events", &S::AutoRefreshEvents, &S::SetAutoRefreshEvents, false,
         {"False", "-1", "True", "False", "False"});
  expect("Auto Refresh Details", &S::AutoRefreshDetails, &S::SetAutoRefreshDetails, false,
         {"False", " tRUE ", "True", "False", "False"});
  expect("Refresh Interval", &S::RefreshInterval, &S::SetRefreshInterval, 0,
         {"10", "60", "60", "1", "1"});
  expect("Include DNS", &S::IncludeDNS, &S::SetIncludeDNS, true,
         {"True", "0.0", "False", "True", "True"});
  expect("Current Traffic Period", &S::CurrentPeriod, &S::SetCurrentPeriod, std::int16_t{61},
         {"5", "61", "61", "60", "60"});
  expect("Traffic Details Split", &S::TrafficDetailsSplit, &S::SetTrafficDetailsSplit, -0.5F,
         {"6000.000000", "-2.5", "-2.500000", "0.000000", "0"});
}

TEST_F(SettingsTest, StoredNumbersAreClampedOrCountAsTheirDefaults) {
  struct Row {
    const char* text;
    int events, days, period;
    float split;
  } const rows[] = {
      {"0", 10, 1, 0, 0},         {"20000", 10000, 3650, 20000, 20000}, {"12.5", 12, 12, 12, 12.5},
      {"1e39", 250, 21, 5, 6000}, {"12 events", 250, 21, 5, 6000},
  };
  for (const Row& row : rows) {
    for (const char* name :
         {"Max Events", "Retain Data", "Current Traffic Period", "Traffic Details Split"}) {
      Put(name, row.text);
    }
    const Settings settings = Load();
    EXPECT_EQ(settings.MaxEvents(), row.events) << row.text;
    EXPECT_EQ(settings.RetainDays(), row.days) << row.text;
    EXPECT_EQ(settings.CurrentPeriod(), row.period) << row.text;
    EXPECT_EQ(settings.TrafficDetailsSplit(), row.split) << row.text;
    EXPECT_EQ(Get("Max Events"), std::to_string(row.events));
    EXPECT_EQ(Get("Retain Data"), row.text);
  }
}

TEST_F(SettingsTest, OptionsInMemoryHaveTheirDefaultsAfterARefreshFromTheDatabase) {
  Settings settings = Load();
  EXPECT_EQ(settings.CollapseTrigger(1), 0);
  settings.SetRetainDays(9);
  settings.SetPortList("1");
  settings.SetCollapseEnable(1, false);
  settings.RefreshDatabaseSettings();
  EXPECT_EQ(settings.RetainDays(), 21);
  EXPECT_EQ(settings.PortList(), "1-1024,8080,2055,9100");
  struct Row {
    int level, trigger, interval;
  };
  // A level outside 1..3 means the nearest.
  for (const Row& row : {Row{-9, 1, 15}, Row{2, 24, 60}, Row{99, 7, 24}}) {
    EXPECT_EQ(settings.CollapseTrigger(row.level), row.trigger) << row.level;
    EXPECT_EQ(settings.CollapseInterval(row.level), row.interval) << row.level;
    EXPECT_TRUE(settings.CollapseEnable(row.level)) << row.level;
  }
  settings.SetCollapseTrigger(0, 0);
  settings.SetCollapseInterval(7, -1);
  settings.SetCollapseEnable(4, false);
  EXPECT_EQ(settings.CollapseTrigger(1), 1);
  EXPECT_EQ(settings.CollapseInterval(3), 1);
  EXPECT_FALSE(settings.CollapseEnable(3));
  settings.SetPortList("");
  EXPECT_EQ(settings.PortList(), "1-1024");
}

TEST_F(SettingsTest, WizardImagesFolderAndIconsFollowTheSystem) {
  Settings settings = Load();
  EXPECT_FALSE(settings.WizardCompleted());
  registry_.SaveRegistryString("TBKelvora", "Wizard", "Completed", "1");
  EXPECT_TRUE(settings.WizardCompleted());
  registry_.SaveRegistryString("Tarrowby 2002", "Zephram", "Web Root Dir", "C:\\Wéb");
  settings.Refresh();
  EXPECT_EQ(settings.WebImagesFolder(), "C:\\Wéb\\Kelvora\\Images");
  for (const int depth : {15, 16}) {
    desktop_.color_depth = depth;
    EXPECT_EQ(settings.HighColorIcons(), depth >= 16) << depth;
  }
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

TEST_F(SettingsTest, TheListeningPortIsThisComputersRow) {
  Settings settings = Load();
  settings.SaveDatabaseSettings();  // Never read: nothing to store.
  EXPECT_THAT(Engines(), testing::IsEmpty());
  program_.suite.Run("Insert Into FlowEngines Values ('another',9)");
  settings.RefreshDatabaseSettings();
  settings.SetListenPort(-7);
  settings.SaveDatabaseSettings();
  EXPECT_THAT(Engines(), ElementsAre("another|9", "collector|1"));
  const std::string rows[][2] = {{"NULL", "0"}, {"2056.5", "2056"}, {"-1", "-1"}};
  for (const auto& [stored, loaded] : rows) {
    program_.suite.Run("Update FlowEngines Set ServerName=upper(ServerName), NetFlowPort=" +
                       stored);
    settings.RefreshDatabaseSettings();
    EXPECT_EQ(std::to_string(settings.ListenPort()), loaded) << stored;
    EXPECT_EQ(settings.ListenPortError(), "") << stored;
  }
  script_.before = [](const std::string&) { throw ado::Error(547, "", "refused"); };
  EXPECT_THROW(settings.SaveDatabaseSettings(), ado::Error);
}

TEST_F(SettingsTest, AListeningPortThatCouldNotBeReadIsStoredOnlyOnceItIsSet) {
  program_.suite.Run("Insert Into FlowEngines Values ('collector',9995)");
  struct Row {
    const char *fault, *repair, *reason;
  } const rows[] = {
      {"Alter Table FlowEngines Rename To Away", "Alter Table Away Rename To FlowEngines",
       "FlowEngines"},
      {"Alter Table FlowEngines Rename NetFlowPort To P",
       "Alter Table FlowEngines Rename P To NetFlowPort", "NetFlowPort"},
      {"Update FlowEngines Set NetFlowPort=99999999999", "Update FlowEngines Set NetFlowPort=9995",
       "99999999999"},
  };
  for (const Row& row : rows) {
    Settings settings = Load();
    program_.suite.Run(row.fault);
    program_.database.CloseMainDatabase();  // A new session sees the new columns at once.
    settings.RefreshDatabaseSettings();
    EXPECT_EQ(settings.ListenPort(), 2055) << row.fault;
    EXPECT_THAT(settings.ListenPortError(), testing::HasSubstr(row.reason));
    settings.SaveDatabaseSettings();
    program_.suite.Run(row.repair);
    program_.database.CloseMainDatabase();
    settings.SaveDatabaseSettings();
    EXPECT_THAT(Engines(), ElementsAre("collector|9995")) << row.fault;
    settings.SetListenPort(2055);
    settings.SaveDatabaseSettings();
    EXPECT_THAT(Engines(), ElementsAre("collector|2055")) << row.fault;
    program_.suite.Run("Update FlowEngines Set NetFlowPort=9995");
    settings.RefreshDatabaseSettings();
    EXPECT_EQ(settings.ListenPortError(), "") << row.fault;
  }
}

}  // namespace
}  // namespace quillan
