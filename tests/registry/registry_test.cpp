#include "registry/registry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/temporary_folder.h"

namespace quillan {
namespace {

TEST(RegistryTest, OptionsLieInTheFileOfTheirRootAndKeysHaveHandles) {
  const test::TemporaryFolder program;
  const test::TemporaryFolder user;
  Registry registry{program.path(), user.path()};
  registry.SaveRegistryString("Quillan", "Settings", "Max Events", std::string("250\0x", 5));
  registry.SaveRegistryString("Quillan", "Settings", "GUI Style", "MINIMAL",
                              RegistryRoot::kCurrentUser);
  EXPECT_EQ(user.Read("tarrowby.net/registry.reg"),
            "REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Tarrowby.Net\\Quillan\\Settings]\n"
            "\"GUI Style\"=\"MINIMAL\"\n");
  EXPECT_EQ(registry.ReadRegistryString("quillan", "SETTINGS", "max events"), "250");
  EXPECT_EQ(registry.ReadRegistryString("Quillan", "Settings", "GUI Style"), std::nullopt);

  constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;
  RegistryKey key = 7;
  EXPECT_FALSE(registry.RegistryOpenKey(kRoot, "Software\\A", key));
  EXPECT_EQ(key, 0U);
  EXPECT_FALSE(registry.RegistryCreateKey(kRoot, "", key));
  ASSERT_TRUE(registry.RegistryCreateKey(kRoot, "Software\\A", key));
  std::string text;
  EXPECT_FALSE(registry.RegistryQueryString(key, "x", text));
  EXPECT_TRUE(registry.RegistrySetString(key, "x", "1"));
  RegistryKey again = 0;
  ASSERT_TRUE(registry.RegistryOpenKey(kRoot, "software\\a\\", again));
  EXPECT_TRUE(registry.RegistryCloseKey(key));
  EXPECT_FALSE(registry.RegistryCloseKey(key));
  EXPECT_FALSE(registry.RegistrySetString(key, "x", "2"));
  EXPECT_TRUE(registry.RegistryQueryString(again, "X", text));
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
