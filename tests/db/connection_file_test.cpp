#include "db/connection_file.h"

#include <gtest/gtest.h>

namespace quillan {
namespace {

struct Case {
  const char* what;
  const char* text;
  const char* connection_string;
  int connection_timeout = 120;
  int command_timeout = 120;
};

TEST(ConnectionFileTest, ReadsTheKeysItKnows) {
  const Case cases[] = {
      {"blanks and case", "  connection  =  a = b  \r\n", "a = b"},
      {"the first of a key", "CONNECTION=one\rCONNECTION=two\r", "one"},
      {"comments", "#CONNECTION=1\r\n'x=1\r\n//CONNECTION=2\r\n\\\\CONNECTION=3\r\nCONNECTION=4",
       "4"},
      {"LF alone does not end a line", "CONNECTION=a\nTIMEOUT=5\n", "aTIMEOUT=5"},
      {"numbers are read from their start", "TIMEOUT=30 seconds\rCOMMANDTIMEOUT=2.5\rCONNECTION=x",
       "x", 30, 2},
      {"letters are no number", "TIMEOUT=soon\rCOMMANDTIMEOUT=-3.5e0\rCONNECTION=x", "x", 0, -4},
      {"tabs are no blanks", "CONNECTION=\tx\t", "\tx\t"},
      {"other lines", "no entry\r\nOTHER=1\r\n=5\r\n\r\n", "before"},
  };
  for (const Case& test : cases) {
    ConnectionValues values{"before", 120, 120};
    ReadConnectionFile(test.text, values);
    EXPECT_EQ(values.connection_string, test.connection_string) << test.what;
    EXPECT_EQ(values.connection_timeout, test.connection_timeout) << test.what;
    EXPECT_EQ(values.command_timeout, test.command_timeout) << test.what;
  }
  ConnectionValues values;
  EXPECT_THROW(ReadConnectionFile("TIMEOUT=2147483648", values), ConnectionFileError);
  EXPECT_THROW(ReadConnectionFile("COMMANDTIMEOUT=1e400", values), ConnectionFileError);
}

}  // namespace
}  // namespace quillan
