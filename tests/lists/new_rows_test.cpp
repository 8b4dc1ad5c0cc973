#include <string>

#include "lists/list_fixture.h"
#include "lists/new_group.h"
#include "lists/new_port.h"

namespace quillan {
namespace {

class NewGroupTest : public test::GroupListTest {
 protected:
  // Two rows that are listed only, and two groups that are stored only.
  NewGroupTest() {
    for (const auto& group : {NewGroup{"10.0.0.128", "10.0.1.127", "listed"},
                              NewGroup{"10.0.8.0", "10.0.8.255", "deleted"}}) {
      entered_ = group;
      Press(list_, "cmdAddGroup");
    }
    Press(list_, "cmdDeleteGroup");
    program_.suite.Run(
        "Insert Into IPAddressGroups Values (1,20000000000,20000000255,'stored',0,0), "
        "(2,21000000000,NULL,'endless',0,1)");
  }
  /// Why the range is refused, with the field to mend and "*" where it is to be selected.
  std::string Refused(std::string_view start, std::string_view end) {
    const auto refusal = RefuseNewGroup(start, end, &list_.Table(), program_.database);
    if (!refusal) return "";
    return refusal->field + (refusal->select_text ? "*: " : ": ") + refusal->message;
  }
};

TEST_F(NewGroupTest, AnEntryIsRefusedForItsFirstFault) {
  const std::string start = "StartIPAddress: Please enter a valid starting IP Address.";
  const std::string end = "EndIPAddress: Please enter a valid ending IP Address.";
  const std::string reversed =
      "EndIPAddress: The ENDING IP Address cannot be less than the STARTING IP Address.\r\n"
      "Please change one of the IP Addresses.";
  const auto nested = [](const std::string& field, const std::string& which) {
    return field +
           ": IP address groups may overlap but cannot be nested within another group.\r\n"
           "An IP address group (" +
           which +
           "that is nested with\r\nthe IP address range you are attempting to add.\r\n\r\n"
           "Please change the starting or ending IP Addresses you are adding.";
  };
  const std::string listed = nested("StartIPAddress", "listed) already exists in your list ");
  const std::string deleted = nested("StartIPAddress", "deleted) already exists in your list ");
  const std::string stored = nested("StartIPAddress*", "stored) already exists ");
  const std::string entries[][3] = {
      {"256.0.0.1", "x", start},
      {"1e1.0.0.0", "10.0.0.1", start},
      {"10.0.0.1", "10.0.0", end},
      {"10.0.0.5", "10.0.0.1", reversed},
      {"9.0.0.5", "9.0.0.5", ""},
      {"10.0.0.0", "10.0.0.255", ""},
      {"10.0.1.127", "10.0.1.128", ""},
      {"10.0.0.128", "10.0.1.127", listed},
      {"10.0.0.128", "10.0.1.128", listed},
      {"10.0.8.1", "10.0.8.2", deleted},
      {"19.0.0.0", "20.0.0.255", stored},
      {"20.0.0.1", "20.0.1.0", ""},
      {"21.0.0.0", "21.0.0.1", ""},
  };
  for (const auto& [first, last, refusal] : entries) {
    EXPECT_EQ(Refused(first, last), refusal) << first << " to " << last;
  }
  EXPECT_FALSE(RefuseNewGroup("10.0.8.1", "10.0.8.2", nullptr, program_.database));
  EXPECT_EQ(script_.statements.back(),
            "Select * From IPAddressGroups Where (IPRangeStart >=10000008001 and IPRangeEnd "
            "<=10000008002) OR (IPRangeStart <=10000008001 and IPRangeEnd >=10000008002)");
}

TEST_F(NewGroupTest, ADatabaseThatCannotBeAskedRefuses) {
  TakeDatabaseAway();
  EXPECT_THAT(Refused("9.0.0.0", "9.0.0.1"),
              testing::AllOf(testing::StartsWith("StartIPAddress: Could not check whether"),
                             testing::HasSubstr("suite.db")));
}

class NewPortTest : public test::ListTest {
 protected:
  /// The port that the text names; else the refusal, with "*" where the text is to be selected.
  std::string Validated(std::string_view text, std::string_view description = " It's ") {
    const auto result = ValidateNewPort(text, description, program_.database);
    if (const auto* port = std::get_if<NewPort>(&result)) {
      return std::to_string(port->number) + port->description;
    }
    const auto& refusal = std::get<Refusal>(result);
    EXPECT_EQ(refusal.field,
              refusal.message.starts_with("The desc") ? "Description" : "PortNumber");
    return refusal.message + (refusal.select_text ? "*" : "");
  }
};

TEST_F(NewPortTest, ThePortIsTheNumberAtTheStartOfItsText) {
  for (const char* text : {"65537", "0", "-5", "", "port 80", "0.5", "4294967376", "65536.6"}) {
    EXPECT_EQ(Validated(text), "Please enter a Port Number from 1 to 65536.") << text;
  }
  for (const auto& [text, number] : {std::pair("1", "1"),
                                     {"  80abc", "80"},
                                     {"81.5", "82"},
                                     {"8 0", "80"},
                                     {"1e3", "1000"},
                                     {"65536.5", "65536"}}) {
    EXPECT_EQ(Validated(text), number + std::string(" It's ")) << text;
  }
}

TEST_F(NewPortTest, APortIsRefusedThatTheTableHasOrDoesNotTakeOrThatCannotBeLookedUp) {
  program_.suite.Run("Insert Into ServicePorts Values (80,'wéb',1,0)");
  EXPECT_EQ(Validated("80x"), "Port number 80 already exists as wéb*");
  // The column takes 255 UTF-16 units.
  const std::string text(254, 'x');
  EXPECT_EQ(Validated("81", text + "é"), "81" + text + "é");
  EXPECT_EQ(Validated("81", text + "\U0001F600"),
            "The description has 256 characters; the database takes 255.");
  TakeDatabaseAway();
  EXPECT_THAT(Validated("81"),
              testing::AllOf(testing::StartsWith("Could not check whether port 81 already exists."),
                             testing::HasSubstr("suite.db")));
}

}  // namespace
}  // namespace quillan
