#include "lists/new_port.h"

#include <map>
#include <string>

#include "lists/list_fixture.h"

namespace quillan {
namespace {

class NewPortTest : public test::ListTest {
 protected:
  /// The port that the text names; else the refusal, with "*" where the text is to be selected.
  std::string Validated(std::string_view text) {
    const auto result = ValidateNewPort(text, " It's ", program_.database);
    if (const auto* port = std::get_if<NewPort>(&result)) {
      return std::to_string(port->number) + port->description;
    }
    const auto& refusal = std::get<Refusal>(result);
    EXPECT_EQ(refusal.field, "PortNumber");
    return refusal.message + (refusal.select_text ? "*" : "");
  }
};

TEST_F(NewPortTest, ThePortIsTheNumberAtTheStartOfItsText) {
  for (const char* text : {"65537", "0", "-5", "", "port 80", "0.5", "4294967376", "65536.6"}) {
    EXPECT_EQ(Validated(text), "Please enter a Port Number from 1 to 65536.") << text;
  }
  const std::map<std::string, std::string> numbers = {{"1", "1"},      {"  80abc", "80"},
                                                      {"81.5", "82"},  {"8 0", "80"},
                                                      {"1e3", "1000"}, {"65536.5", "65536"}};
  for (const auto& [text, number] : numbers) {
    EXPECT_EQ(Validated(text), number + " It's ") << text;
  }
}

TEST_F(NewPortTest, ADescriptionHasAtMostAsManyUtf16UnitsAsItsColumn) {
  const auto refused = [&](const std::string& description) {
    const auto result = ValidateNewPort("80", description, program_.database);
    return std::holds_alternative<Refusal>(result) ? std::get<Refusal>(result).message : "";
  };
  std::string text(254, 'x');
  EXPECT_EQ(refused(text + "\u00e9"), "");
  EXPECT_EQ(refused(text + "\U0001F600"),
            "The description has 256 characters; the database takes 255.");
}

TEST_F(NewPortTest, APortOfTheTableOrOfATableOutOfReachIsRefused) {
  program_.suite.Run("Insert Into ServicePorts Values (80,'wéb',1,0)");
  EXPECT_EQ(Validated("80x"), "Port number 80 already exists as wéb*");
  EXPECT_EQ(script_.statements.back(), "Select * From ServicePorts Where Port=80");
  TakeDatabaseAway();
  EXPECT_THAT(Validated("81"),
              testing::AllOf(testing::StartsWith("Could not check whether port 81 already exists."),
                             testing::HasSubstr("suite.db")));
}

}  // namespace
}  // namespace quillan
