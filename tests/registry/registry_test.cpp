#include "registry/registry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/temporary_folder.h"

namespace quillan {
namespace {

class RegistryTest : public testing::Test {
 protected:
  test::TemporaryFolder program_;
  test::TemporaryFolder user_;
  Registry registry_{program_.path(), user_.path()};
};

TEST_F(RegistryTest, OptionsAreInTheFileOfTheirRootWhichTheFirstWriteCreates) {
  EXPECT_EQ(registry_.ReadRegistryString("Quillan", "Settings", "Max Events"), std::nullopt);
  registry_.SaveRegistryString("Quillan", "Settings", "Max Events", std::string("250\0x", 5));
  registry_.SaveRegistryString("Quillan", "Settings", "GUI Style", "MINIMAL",
                               RegistryRoot::kCurrentUser);
  EXPECT_EQ(program_.Read("registry.reg"),
            "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\Software\\Tarrowby.Net\\Quillan\\Settings]\n"
            "\"Max Events\"=\"250\"\n");
  EXPECT_EQ(user_.Read("tarrowby.net/registry.reg"),
            "REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Tarrowby.Net\\Quillan\\Settings]\n"
            "\"GUI Style\"=\"MINIMAL\"\n");
  EXPECT_EQ(registry_.ReadRegistryString("quillan", "SETTINGS", "max events"), "250");
  EXPECT_EQ(registry_.ReadRegistryString("Quillan", "Settings", "GUI Style"), std::nullopt);
}

TEST_F(RegistryTest, KeysAreOpenedCreatedAndClosedByHandle) {
  constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;
  RegistryKey key = 7;
  EXPECT_FALSE(registry_.RegistryOpenKey(kRoot, "Software\\A", key));
  EXPECT_EQ(key, 0U);
  EXPECT_FALSE(registry_.RegistryCreateKey(kRoot, "", key));
  ASSERT_TRUE(registry_.RegistryCreateKey(kRoot, "Software\\A", key));
  std::string text;
  EXPECT_FALSE(registry_.RegistryQueryString(key, "x", text));
  EXPECT_TRUE(registry_.RegistrySetString(key, "x", "1"));
  RegistryKey again = 0;
  ASSERT_TRUE(registry_.RegistryOpenKey(kRoot, "software\\a\\", again));
  EXPECT_TRUE(registry_.RegistryCloseKey(key));
  EXPECT_FALSE(registry_.RegistryCloseKey(key));
  EXPECT_FALSE(registry_.RegistrySetString(key, "x", "2"));
  EXPECT_TRUE(registry_.RegistryQueryString(again, "X", text));
  EXPECT_EQ(text, "1");
}

TEST(UserConfigurationFolderTest, AnAbsoluteFolderOfTheEnvironmentComesFirst) {
  setenv("HOME", "/home/somebody", 1);
  setenv("XDG_CONFIG_HOME", "/elsewhere", 1);
  EXPECT_EQ(UserConfigurationFolder(), "/elsewhere");
  setenv("XDG_CONFIG_HOME", "relative", 1);
  EXPECT_EQ(UserConfigurationFolder(), "/home/somebody/.config");
}

}  // namespace
}  // namespace quillan
