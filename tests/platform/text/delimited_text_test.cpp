#include "platform/text/delimited_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/text/encoding.h"

namespace quillan::text {
namespace {

// The records as "line: field|field", and last the error, if any.
std::vector<std::string> Read(std::string_view text) {
  DelimitedReader reader(text);
  std::vector<std::string> records;
  for (DelimitedRecord record; reader.Next(record);) {
    std::string line = std::to_string(record.line) + ":";
    for (const std::string& field : record.fields) line += " [" + field + "]";
    records.push_back(line);
  }
  if (reader.error()) {
    records.push_back("error in line " + std::to_string(reader.error()->line));
  }
  return records;
}

TEST(DelimitedTextTest, RecordsAreReadInEveryCommonFormUpToAnError) {
  const std::string long_line = "80," + std::string(1'000'000, 'x');
  const struct {
    std::string text;
    std::vector<std::string> records;
  } cases[] = {
      {"\r\n\n", {}},
      {"80,a\r81,b\n\n\n82,c", {"1: [80] [a]", "2: [81] [b]", "5: [82] [c]"}},
      {"80;a, b\n81;c", {"1: [80] [a, b]", "2: [81] [c]"}},
      {"\"80;1\",a;b\n", {"1: [80;1] [a;b]"}},
      {"80\tsay \"a\"\n81\t\"b\tc\"\n", {"1: [80] [say \"a\"]", "2: [81] [b\tc]"}},
      {"80,\"a \"\"b\"\",\r\nc\"\r\n81,\"\"\n", {"1: [80] [a \"b\",\r\nc]", "3: [81] []"}},
      {"80,a\n81,\"b\n82,c\n", {"1: [80] [a]", "error in line 2"}},
      {"80,a\n\n81,b\"c\n", {"1: [80] [a]", "error in line 3"}},
      {"80,a\n" + long_line + "\n82,c", {"1: [80] [a]", "error in line 2"}},
      {"80,\"" + std::string(1'000'000, '\n') + "\"\n", {"error in line 1"}},
  };
  for (const auto& [text, records] : cases) EXPECT_EQ(Read(text), records) << text.substr(0, 40);
}

TEST(DelimitedTextTest, WhatIsWrittenIsReadBack) {
  const std::vector<std::string_view> fields = {"",    "a b",  " a", "a,b",
                                                "a;b", "a\tb", "\"", "é\r\n"};
  for (const char separator : {',', ';', '\t'}) {
    std::string text;
    AppendDelimitedRecord(fields, separator, text);
    DelimitedReader reader(text);
    DelimitedRecord record;
    ASSERT_TRUE(reader.Next(record)) << text;
    EXPECT_THAT(record.fields, testing::ElementsAreArray(fields)) << text;
  }
}

TEST(DelimitedTextTest, EveryUnicodeFormIsDecoded) {
  const std::string text = "80,é €\n";
  std::string little;
  std::string big;
  for (const char16_t unit : Utf8ToUtf16(text)) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    little.append({low, high});
    big.append({high, low});
  }
  for (const std::string& bytes : {text, "\xEF\xBB\xBF" + text, little, big, "\xFF\xFE" + little,
                                   "\xFE\xFF" + big, std::string("80,\xE9 \x80\n")}) {
    EXPECT_EQ(DecodeTable(bytes), text);
  }
}

}  // namespace
}  // namespace quillan::text
