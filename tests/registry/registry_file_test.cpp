#include "registry/registry_file.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace quillan {
namespace {

constexpr std::string_view kKey = "HKEY_LOCAL_MACHINE\\Software\\Tarrowby.Net\\Quillan\\Settings";

const std::string kHeading = "[" + std::string(kKey) + "]\n";

std::optional<std::string> Read(const std::string& lines, std::string_view name = "x") {
  return RegistryFile("REGEDIT4\n\n" + kHeading + lines).StringValue(kKey, name);
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
  struct {
    const char* key;
    const char* name;
    std::string expected;
  } const rows[] = {
      {"hkey_local_machine\\a", "Max", edited("\"5\"", "\"v\"")},
      {"HKEY_LOCAL_MACHINE\\A", "twice", edited("\"2\"", "\"v\"")},
      {"HKEY_LOCAL_MACHINE\\A", "path", edited("hex(2):25,00,\\\r\n  31,00", "\"v\"")},
      {"HKEY_LOCAL_MACHINE\\A", "gone", edited("=-", "=-\r\n\"gone\"=\"v\"")},
      {"HKEY_LOCAL_MACHINE\\B", "b", before + "\r\n[HKEY_LOCAL_MACHINE\\B]\r\n\"b\"=\"v\"\r\n"},
  };
  for (const auto& row : rows) {
    RegistryFile file(before);
    EXPECT_TRUE(file.SetStringValue(row.key, row.name, "v"));
    EXPECT_EQ(file.text(), row.expected) << row.name;
    EXPECT_EQ(file.StringValue(row.key, row.name), "v");
  }
}

// Wherever a file ends, a new value can be read back and no byte of the file is lost.
TEST(RegistryFileTest, AFileCutShortAnywhereTakesNewValues) {
  const std::string whole = "REGEDIT4\r\n\r\n[" + std::string(kKey) +
                            "]\r\n\"a\"=\"1\\\\2\"\r\n\"h\"=hex:25,00,\\\r\n  31,00\r\n"
                            "\"two\"=\"first\r\nsecond\"\r\n\"z\"=\"\\\"\"\r\n";
  for (size_t length = 0; length <= whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    RegistryFile file(cut);
    ASSERT_TRUE(file.SetStringValue(kKey, "new", "a \"b\" \\ \r\nc"));
    ASSERT_TRUE(file.SetStringValue("HKEY_LOCAL_MACHINE\\Other", "", ""));
    const RegistryFile again(file.text());
    EXPECT_EQ(again.StringValue(kKey, "NEW"), "a \"b\" \\ \r\nc") << file.text();
    EXPECT_EQ(again.StringValue("HKEY_LOCAL_MACHINE\\Other", ""), "") << file.text();
    if (length > whole.find("\"h\"")) {
      EXPECT_EQ(again.StringValue(kKey, "a"), "1\\2");
    }
    size_t kept = 0;  // The cut text is a subsequence of the new one.
    for (const char c : file.text()) kept += kept < cut.size() && c == cut[kept] ? 1 : 0;
    EXPECT_EQ(kept, cut.size());
  }
}

TEST(RegistryFileTest, WhatCouldNotBeReadBackIsRefusedAndChangesNothing) {
  const std::string open_quote = kHeading + "\"a\"=\"open";
  struct {
    std::string before;
    std::string_view key;
    std::string name;
    std::string value;
  } const rows[] = {
      {open_quote, kKey, "", "\nx"},  // The quote before it would close in it.
      {kHeading, kKey, "x", std::string("a\0b", 3)},
      {kHeading, kKey, "x", "a\xFF"},  // In another encoding the whole file would change.
      {kHeading, kKey, "a\nb", "1"},
      {kHeading, "HKEY_LOCAL_MACHINE\\\xFF", "x", "1"},
      {kHeading, "-HKEY_LOCAL_MACHINE", "x", "1"},
      {kHeading, "a];b", "x", "1"},
  };
  for (const auto& row : rows) {
    RegistryFile file(row.before);
    EXPECT_FALSE(file.SetStringValue(row.key, row.name, row.value)) << row.name << row.value;
    EXPECT_EQ(file.text(), row.before);
    EXPECT_EQ(file.StringValue(row.key, row.name), std::nullopt);
  }
}

}  // namespace
}  // namespace quillan
