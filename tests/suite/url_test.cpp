#include "suite/url.h"

#include <gmock/gmock.h>

#include <array>
#include <vector>

namespace quillan {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

TEST(UrlTest, AddressesComeBackInOneForm) {
  std::vector<std::pair<std::string, std::string>> rows = {
      {" HTTP://Host:80/a b\r\n", "http://Host/a%20b"},
      {"http://me@corp:pw@host", "http://me%40corp:pw@host"},
      {"http://h/ü<>?q=ü", "http://h/%C3%BC%3C%3E?Q=%C3%BC"},
      {"https://h:443/?a=1&b", "https://h/?A=1&B="},
  };
  for (const char* same :
       {"http://www.example.com/a/b.htm?A=1&B=2", "https://me%40corp:p%3Aw:x@example.com:81/",
        "http://h/100%?Q=50%25%zz", "http://münchen.example/?Q=%C3%BC#top", "page.htm#top",
        "mailto:a@example.com?SUBJECT=x", "file://C:/dir/x", "internal:reports?ID=7"}) {
    rows.push_back({same, same});
  }
  const std::string longest = "http://h/" + std::string(1023, 'x');
  rows.push_back({longest, longest});
  for (const auto& [address, built] : rows) {
    URL url;
    url.SetURL(address);
    EXPECT_EQ(url.LastError(), "") << address;
    EXPECT_EQ(url.GetURL(), built);
  }
}

TEST(UrlTest, PartsAreReadAndChanged) {
  URL url;
  url.SetURL("https://me:pw@[::1]/p/q.htm?a=1&b&C=x=y");
  EXPECT_EQ(url.Scheme() + " " + url.UserName() + " " + url.Password(), "https me pw");
  EXPECT_EQ(url.HostName() + url.URLPath(), "[::1]/p/q.htm");
  EXPECT_EQ(url.Port(), 443);
  EXPECT_THAT(url.Parameters().Entries(),
              testing::ElementsAre(Pair("A", "1"), Pair("B", ""), Pair("C", "x=y")));
  EXPECT_EQ(url.ParameterValue("c"), "x=y");

  url.SetHostName("2001:db8::2");
  url.SetPort(8080);
  url.SetUserName("a/b@c");
  url.SetPassword("");
  url.SetURLPath("new?path");
  url.Parameters().Remove("A");
  url.Parameters().Set("B", "two words");
  url.Parameters().Set("d", "é");
  EXPECT_EQ(url.GetURL(),
            "https://a%2Fb%40c@[2001:db8::2]:8080/new%3Fpath?B=two%20words&C=x=y&d=%C3%A9");
  url.SetPort(65536);
  EXPECT_EQ(url.GetURL(), "");
  EXPECT_THAT(url.LastError(), HasSubstr("65536"));
}

TEST(UrlTest, WhatCannotBeParsedLeavesNothingOfTheLastAddress) {
  const std::pair<std::string, const char*> rows[] = {
      {" ", "empty"},
      {"http://h:65536/", "not a number from 0"},
      {"http://[::1/", "bracket"},
      {"http://h/" + std::string(1025, 'x'), "path of the address has 1026"},
  };
  for (const auto& [address, reason] : rows) {
    URL url;
    url.SetURL("internal://me:pw@host:1/path?a=1");
    url.SetURL(address);
    EXPECT_THAT(url.LastError(), HasSubstr(reason));
    EXPECT_EQ(url.HostName() + url.UserName() + url.Password() + url.URLPath() + url.Scheme(), "");
    EXPECT_THAT(url.Parameters().Entries(), IsEmpty());
    EXPECT_EQ(url.GetURL(), "");
  }
}

TEST(UrlTest, WhateverTheHostAndPathHoldTheAddressComesApartAgain) {
  const std::array<const char*, 4> rows[] = {
      {"http://h/", "a:b", "p", "http://a%3Ab/p"},
      {"http://h/", "[::1", "/", "http://%5B%3A%3A1/"},
      {"http://h/", "[a]b", "/", "http://%5Ba%5Db/"},
      {"http://h/", "::1", "/", "http://[::1]/"},
      {"file://h/", "a[:b", "/", "file://a%5B:b/"},
      {"", "", "a:b", "a%3Ab"},
  };
  for (const auto& [address, host, path, built] : rows) {
    URL url;
    url.SetURL(address);
    url.SetHostName(host);
    url.SetURLPath(path);
    EXPECT_EQ(url.GetURL(), built);
    URL again;
    again.SetURL(built);
    EXPECT_EQ(again.GetURL(), built);
  }
}

TEST(UrlTest, ANameThatOccursTwiceIsAnErrorAndAPartMayBeTheNewAddress) {
  URL url;
  url.SetURL("http://h/?tag=1&TAG=2");
  EXPECT_THAT(url.LastError(), HasSubstr("\"TAG\""));
  EXPECT_THAT(url.Parameters().Entries(), IsEmpty());
  EXPECT_EQ(url.GetURL(), "http://h/?tag=1&TAG=2");
  url.SetURL("http://h/?a b=1&a%20b=2");  // Written alike, and then the same.
  EXPECT_THAT(url.LastError(), HasSubstr("occurs twice"));
  EXPECT_EQ(url.GetURL(), "http://h/?a%20b=1&a%20b=2");
  // One of its own parts may be the new address.
  url.SetURL("http://h/login?GOTO=http://www.example.com/a/rather/long/path&X=1");
  url.SetURL(*url.Parameters().Item("GOTO"));
  EXPECT_EQ(url.GetURL(), "http://www.example.com/a/rather/long/path");
}

}  // namespace
}  // namespace quillan
