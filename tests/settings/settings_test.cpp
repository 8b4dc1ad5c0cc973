#include "settings/settings.h"

#include <gmock/gmock.h>

#include <sstream>
#include <tuple>
#include <vector>

#include "platform/text/case_fold.h"
#include "settings/periods.h"
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
  const std::tuple<const char*, int, int, int, float> rows[] = {
      {"0", 10, 1, 0, 0},         {"20000", 10000, 3650, 20000, 20000}, {"12.5", 12, 12, 12, 12.5},
      {"1e39", 250, 21, 5, 6000}, {"12 events", 250, 21, 5, 6000},
  };
  for (const auto& [text, events, days, period, split] : rows) {
    for (const char* name :
         {"Max Events", "Retain Data", "Current Traffic Period", "Traffic Details Split"}) {
      Put(name, text);
    }
    const Settings settings = Load();
    EXPECT_EQ(settings.MaxEvents(), events) << text;
    EXPECT_EQ(settings.RetainDays(), days) << text;
    EXPECT_EQ(settings.CurrentPeriod(), period) << text;
    EXPECT_EQ(settings.TrafficDetailsSplit(), split) << text;
    EXPECT_EQ(Get("Max Events"), std::to_string(events));
    EXPECT_EQ(Get("Retain Data"), text);
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
  // A level outside 1..3 means the nearest.
  for (const auto& [level, trigger, interval] : {std::tuple(-9, 1, 15), {2, 24, 60}, {99, 7, 24}}) {
    EXPECT_EQ(settings.CollapseTrigger(level), trigger) << level;
    EXPECT_EQ(settings.CollapseInterval(level), interval) << level;
    EXPECT_TRUE(settings.CollapseEnable(level)) << level;
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

TEST_F(SettingsTest, ImagesFolderAndIconsFollowTheSystem) {
  Settings settings = Load();
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

class PeriodsTest : public testing::Test {
 protected:
  PeriodsTest() { clock_.now = At("2007-05-31T13:20:30"); }

  text::DateTime At(const char* iso) const { return locale_.ReadDateTime(iso).value(); }

  void ExpectRange(std::string text, const char* start, const char* end, int sample_minutes,
                   std::string_view sample_size) const {
    const PeriodRange range = periods_.Parse(text);
    EXPECT_EQ(range.start, At(start)) << text;
    EXPECT_EQ(range.end, At(end)) << text;
    EXPECT_EQ(range.sample_minutes, sample_minutes) << text;
    EXPECT_EQ(range.sample_size, sample_size) << text;
  }

  text::UserLocale locale_{"C"};
  test::FixedClock clock_;
  Periods periods_{clock_, locale_};
};

TEST_F(PeriodsTest, PeriodsAreFoundByPositionNameAndAlias) {
  EXPECT_EQ(periods_.Item("last 2 hours"), periods_.Item(2));
  EXPECT_EQ(periods_.GetPeriod("Past 2 Hours"), periods_.Item(2));
  for (const char* text : {"Last  Hour", "", "TODAY,YESTERDAY", ","}) {
    EXPECT_EQ(periods_.GetPeriod(text), nullptr) << text;
  }
  periods_.Remove("Today");
  EXPECT_EQ(periods_.Count(), 12);
  periods_.Refresh();
  EXPECT_EQ(periods_.Count(), 13);
  EXPECT_EQ(periods_.Item(14), nullptr);
}

TEST_F(PeriodsTest, EveryBuiltInPeriodHasItsRangeUnderEveryAlias) {
  struct Row {
    const char *name, *start, *end;
    int minutes;
    const char* sample_size;
  } const rows[] = {
      {"Last Hour", "2007-05-31 12:20:30", "2007-05-31 13:21:30", 10, "10M"},
      {"Last 2 Hours", "2007-05-31 11:20:30", "2007-05-31 13:21:30", 10, "10M"},
      {"Last 24 Hours", "2007-05-30 13:20:30", "2007-05-31 13:21:30", 30, "30M"},
      {"Today", "2007-05-31", "2007-06-01", 30, "30M"},
      {"Yesterday", "2007-05-30", "2007-05-30 23:59:59", 30, "30M"},
      {"Last 7 Days", "2007-05-24", "2007-05-31 14:00:00", 60, "1H"},
      {"This Month", "2007-05-01", "2007-06-01", 60, "1H"},
      {"Last Month", "2007-04-01", "2007-04-30 23:59:59", 1440, "1D"},
      {"Last 30 Days", "2007-05-01", "2007-06-01", 1440, "1D"},
      {"Last 3 Months", "2007-02-28", "2007-06-01", 1440, "1D"},
      {"This Year", "2007-01-01", "2007-06-01", 1440, "1D"},
      {"Last 12 Months", "2006-05-31", "2007-06-01", 1440, "1D"},
  };
  int position = 0;
  for (const Row& row : rows) {
    const Period* period = periods_.Item(++position);
    EXPECT_EQ(period->Name(), row.name);
    ExpectRange(row.name, row.start, row.end, row.minutes, row.sample_size);
    std::istringstream aliases{std::string(period->Aliases())};
    for (std::string alias; std::getline(aliases, alias, ',');) {
      ExpectRange(" " + text::FoldCase(alias), row.start, row.end, row.minutes, row.sample_size);
    }
  }
  clock_.now = At("2008-01-15T23:30:00");
  ExpectRange("last month", "2007-12-01 00:00:00", "2007-12-31 23:59:59", 1440, "1D");
  ExpectRange("this week", "2008-01-08 00:00:00", "2008-01-16 00:00:00", 60, "1H");
}

TEST_F(PeriodsTest, CustomRangesAreReadFromOneOrTwoExpressions) {
  std::string text = "  ";
  EXPECT_EQ(periods_.Parse(text).start, At("2007-05-31"));
  EXPECT_EQ(text, "Today");
  ExpectRange("-2 H~now", "2007-05-31 11:20:30", "2007-05-31 13:20:30", 60, "1H");
  ExpectRange("5/1/2007~5/2/2007 6:30 PM", "2007-05-01 00:00:00", "2007-05-02 18:30:00", 60, "1H");
  ExpectRange("custom~-1", "1899-12-30 00:00:00", "2007-05-30 13:20:30", 60, "1H");
}

TEST_F(PeriodsTest, DateExpressionsAreReadOrGiveTheZeroDate) {
  const std::pair<const char*, const char*> rows[] = {
      {" NOW ", "2007-05-31T13:20:30"},  {"-30 M", "2007-05-31T12:50:30"},
      {"-1 n", "2007-05-31T13:19:30"},   {"-30 seconds", "2007-05-31T13:20:00"},
      {"-1 d", "2007-05-30T13:20:30"},   {"-7 W", "2007-05-24T13:20:30"},
      {"-365 Y", "2006-05-31T13:20:30"}, {"-1 q", "2007-02-28T13:20:30"},
      {"-.5 D", "2007-05-31T13:20:30"},  {"-1.5 H", "2007-05-31T11:20:30"},
      {"-1.5", "2007-05-29T13:20:30"},   {"6/1/2007", "2007-06-01"},
  };
  for (const auto& [text, value] : rows) {
    EXPECT_EQ(periods_.Period2DateTime(text), At(value)) << text;
  }
  for (const char* text :
       {"", "-1 X", "-2  H", "-9e999", "-800000", "-2000000000 Q", "2/30/2007", "-", "--5"}) {
    EXPECT_EQ(periods_.Period2DateTime(text), text::kZeroDate) << text;
  }
}

}  // namespace
}  // namespace quillan
