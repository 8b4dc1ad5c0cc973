#include "registry/registry.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>

#include "registry/atomic_file.h"
#include "registry/registry_file.h"
#include "registry/registry_store.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

constexpr std::string_view kKey = "HKEY_LOCAL_MACHINE\\A";

TEST(RegistryStoreTest, ExportsInOtherEncodingsAreReadAndRewrittenAsUtf8) {
  const test::TemporaryFolder folder;
  const std::string utf8 = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\A]\n\"x\"=\"é\"\n\"y\"=\"1\"\n";
  const std::string latin1 = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\A]\n\"x\"=\"\xE9\"\n\"y\"=\"1\"\n";
  std::string utf16 = "\xFF\xFE";
  for (const char c : latin1) utf16 += {c, '\0'};
  for (const std::string& bytes : {utf16, latin1, "\xEF\xBB\xBF" + utf8, utf16.substr(2)}) {
    RegistryStore store(folder.Write("registry.reg", bytes));
    EXPECT_EQ(store.ReadString(kKey, "x"), "é");
    EXPECT_TRUE(store.WriteString(kKey, "y", "1"));
    EXPECT_EQ(folder.Read("registry.reg"), bytes) << "nothing changed";
    EXPECT_TRUE(store.WriteString(kKey, "y", "2"));
    EXPECT_EQ(folder.Read("registry.reg").substr(0, utf8.size() - 3) + "1\"\n", utf8);
  }
  // Half a character of UTF-16: this is no text that a value could be added to.
  RegistryStore half(folder.Write("registry.reg", utf16.substr(2, 9)));
  EXPECT_FALSE(half.WriteString(kKey, "y", "2"));
  EXPECT_EQ(folder.Read("registry.reg"), utf16.substr(2, 9));
  // Cut inside the second of two characters, the first one must not change.
  RegistryStore cut(folder.Write("registry.reg", utf8 + "\"z\"=\"\xE2\x82"));
  EXPECT_EQ(cut.ReadString(kKey, "x"), "é");
}

// A user who belongs to the file's group but does not own it can keep the group alone.
TEST(RegistryStoreTest, PermissionsGroupAndSymbolicLinksOutlastAWrite) {
  constexpr uid_t kUser = 65534;
  constexpr gid_t kGroup = 4242;
  if (geteuid() != 0) GTEST_SKIP() << "only root can act as two users";
  const test::TemporaryFolder folder;
  const auto file = folder.Write("registry.reg", "REGEDIT4\n");
  std::filesystem::create_symlink("registry.reg", folder / "link.reg");
  ASSERT_EQ(chmod(folder.path().c_str(), 0777) + chmod(file.c_str(), 0664), 0);
  ASSERT_EQ(chown(file.c_str(), 0, kGroup), 0);
  const pid_t writer = fork();
  if (writer == 0) {
    const bool ready = setgroups(1, &kGroup) == 0 && setgid(kUser) == 0 && setuid(kUser) == 0;
    _exit(ready && RegistryStore(folder / "link.reg").WriteString(kKey, "x", "1") ? 0 : 1);
  }
  int result = -1;
  waitpid(writer, &result, 0);
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.reg"));
  EXPECT_EQ(RegistryStore(file).ReadString(kKey, "x"), "1");
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0664U);
  EXPECT_EQ(status.st_gid, kGroup);
}

TEST(RegistryStoreTest, WhatIsNoRegularFileIsRefusedWithoutWaiting) {
  const test::TemporaryFolder folder;
  std::filesystem::create_directory(folder / "folder");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo((folder / "locked.lock").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/zero", folder / "device");
  for (const char* name : {"folder", "pipe", "device", "locked"}) {
    RegistryStore store(folder / name);
    EXPECT_FALSE(store.WriteString(kKey, "x", "1")) << name;
    EXPECT_EQ(store.ReadString(kKey, "x"), std::nullopt) << name;
    EXPECT_EQ(store.read_error().empty(), std::string_view(name) == "locked") << name;
  }
}

TEST(RegistryStoreTest, AfterAFailedReadingNothingIsWrittenUntilOneSucceeds) {
  const test::TemporaryFolder folder;
  RegistryStore store(folder.Write("registry.reg", "[HKEY_LOCAL_MACHINE\\A]\n\"x\"=\"old\"\n"));
  // A folder cannot be read either. A sanitizer looks at the types on this way here, since it needs
  // descriptors for that.
  EXPECT_EQ(RegistryStore(folder.path()).ReadString(kKey, "x"), std::nullopt);
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none{0, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_EQ(store.ReadString(kKey, "x"), std::nullopt);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_EQ(store.read_error(),
            "Cannot read " + (folder / "registry.reg").string() + ": Too many open files");
  EXPECT_FALSE(store.WriteString(kKey, "x", "default"));
  EXPECT_EQ(store.ReadString(kKey, "x"), "old");
  EXPECT_TRUE(store.WriteString(kKey, "x", "new"));
}

TEST(RegistryStoreTest, ALockThatIsNeverReleasedDelaysAllWritesTogetherByLessThanTwoSeconds) {
  const test::TemporaryFolder folder;
  RegistryStore store(folder / "registry.reg");
  const auto start = std::chrono::steady_clock::now();
  {
    const FileLock lock(folder / "registry.reg", std::chrono::seconds{0});
    for (const char* name : {"a", "b", "c"}) EXPECT_FALSE(store.WriteString(kKey, name, "1"));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds{2});
  EXPECT_TRUE(store.WriteString(kKey, "a", "1"));
}

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

const std::string kSettings = "HKEY_LOCAL_MACHINE\\Software\\Tarrowby.Net\\Quillan\\Settings";
const std::string kHeading = "[" + kSettings + "]\n";

std::optional<std::string> Read(const std::string& lines, std::string_view name = "x") {
  return RegistryFile("REGEDIT4\n\n" + kHeading + lines).StringValue(kSettings, name);
}

TEST(RegistryFileTest, StringValuesAreReadInEveryForm) {
  EXPECT_EQ(Read("\"x\"=\"C:\\\\Web \\\"Root\\\"\""), "C:\\Web \"Root\"");
  EXPECT_EQ(Read("  \"X\" = \"y\"  ; comment\n"), "y");
  EXPECT_EQ(Read("\"x\"=\"two\r\nlines\"\r\n\"z\"=\"1\"\r\n"), "two\r\nlines");
  EXPECT_EQ(Read("@=\"own\"\n", ""), "own");
  EXPECT_EQ(Read("\"a \\\\ \\\"b\\\"\"=\"1\"\n", "A \\ \"B\""), "1");
  EXPECT_EQ(Read("\"x\"=\"1\"\n\"X\"=\"2\"\n"), "2");
  // Values that are not strings are absent.
  for (const char* lines :
       {"", "\"x\"=dword:000000fa\n", "\"x\"=hex(2):25,00,\\\n  31,00\n", "\"x\"=\n", "\"x\"\n",
        "\"x\"=\"1\"\n\"x\"=-\n", "\"x\"=\"1\"\n[-HKEY_LOCAL_MACHINE\\software]\n",
        ";\"x\"=\"1\"\n", "[HKEY_LOCAL_MACHINE\\Other]\n\"x\"=\"1\"\n",
        "[cut sho\n\"x\"=\"1\"\n"}) {
    EXPECT_EQ(Read(lines), std::nullopt) << lines;
  }
  // A missing quote hides no more than its own line.
  EXPECT_EQ(Read("\"a\"=\"open\n\"x\"=\"1\"\n"), "1");
  EXPECT_EQ(Read("\"x\"=\"1\"\n\"a\"=\"two\nlines, open"), "1");
  EXPECT_EQ(Read("\"a\"=hex:01,\\\n\"x\"=\"1\"\n"), "1");
}

TEST(RegistryFileTest, AnEditChangesNothingButItsOwnValue) {
  const std::string before =
      "Windows Registry Editor Version 5.00\r\n\r\n; kept\r\n[HKEY_LOCAL_MACHINE\\A]\r\n"
      "\"n\"=dword:00000001\r\n\"Path\"=hex(2):25,00,\\\r\n  31,00\r\n garbage \r\n"
      "\"max\"=\"5\" ; why  \r\n\"twice\"=\"1\"\r\n\"twice\"=\"2\"\r\n\"gone\"=-\r\n\r\n"
      "[-HKEY_LOCAL_MACHINE\\B]\r\n\r\n[HKEY_LOCAL_MACHINE\\C]\r\n@=\"c\"\r\n";
  const auto edited = [&](std::string_view from, std::string_view to) {
    std::string text = before;
    return text.replace(text.find(from), from.size(), to);
  };
  const std::array<std::string, 3> rows[] = {
      {"hkey_local_machine\\a", "Max", edited("\"5\"", "\"v\"")},
      {"HKEY_LOCAL_MACHINE\\A", "twice", edited("\"2\"", "\"v\"")},
      {"HKEY_LOCAL_MACHINE\\A", "path", edited("hex(2):25,00,\\\r\n  31,00", "\"v\"")},
      {"HKEY_LOCAL_MACHINE\\A", "gone", edited("=-", "=-\r\n\"gone\"=\"v\"")},
      {"HKEY_LOCAL_MACHINE\\B", "b", before + "\r\n[HKEY_LOCAL_MACHINE\\B]\r\n\"b\"=\"v\"\r\n"},
  };
  for (const auto& [key, name, expected] : rows) {
    RegistryFile file(before);
    EXPECT_TRUE(file.SetStringValue(key, name, "v"));
    EXPECT_EQ(file.text(), expected) << name;
    EXPECT_EQ(file.StringValue(key, name), "v");
  }
}

// Wherever a file ends, a new value can be read back and no byte of the file is lost.
TEST(RegistryFileTest, AFileCutShortAnywhereTakesNewValues) {
  const std::string whole = "REGEDIT4\r\n\r\n[" + kSettings +
                            "]\r\n\"a\"=\"1\\\\2\"\r\n\"h\"=hex:25,00,\\\r\n  31,00\r\n"
                            "\"two\"=\"first\r\nsecond\"\r\n\"z\"=\"\\\"\"\r\n";
  for (size_t length = 0; length <= whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    RegistryFile file(cut);
    ASSERT_TRUE(file.SetStringValue(kSettings, "new", "a \"b\" \\ \r\nc"));
    const RegistryFile again(file.text());
    EXPECT_EQ(again.StringValue(kSettings, "NEW"), "a \"b\" \\ \r\nc") << file.text();
    if (length > whole.find("\"h\"")) {
      EXPECT_EQ(again.StringValue(kSettings, "a"), "1\\2");
    }
    size_t kept = 0;  // The cut text is a subsequence of the new one.
    for (const char c : file.text()) kept += kept < cut.size() && c == cut[kept] ? 1 : 0;
    EXPECT_EQ(kept, cut.size());
  }
}

TEST(RegistryFileTest, WhatCouldNotBeReadBackIsRefusedAndChangesNothing) {
  const std::string open_quote = kHeading + "\"a\"=\"open";
  const std::array<std::string, 4> rows[] = {
      {open_quote, kSettings, "", "\nx"},  // The quote before it would close in it.
      {kHeading, kSettings, "x", std::string("a\0b", 3)},
      {kHeading, kSettings, "x", "a\xFF"},  // In another encoding the whole file would change.
      {kHeading, kSettings, "a\nb", "1"},
      {kHeading, "HKEY_LOCAL_MACHINE\\\xFF", "x", "1"},
      {kHeading, "-HKEY_LOCAL_MACHINE", "x", "1"},
      {kHeading, "a];b", "x", "1"},
  };
  for (const auto& [before, key, name, value] : rows) {
    RegistryFile file(before);
    EXPECT_FALSE(file.SetStringValue(key, name, value)) << name << value;
    EXPECT_EQ(file.text(), before);
    EXPECT_EQ(file.StringValue(key, name), std::nullopt);
  }
}

}  // namespace
}  // namespace quillan
