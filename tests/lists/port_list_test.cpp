#include "lists/port_list.h"

#include <string>
#include <vector>

#include "lists/list_fixture.h"
#include "lists/new_port.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kLastUpdate =
    "exec tbsp_netflowSetGlobalSetting 'LastServicePortUpdate', '6/1/2007 1:05:09 PM'";

class PortListTest : public test::ListTest {
 protected:
  // Rows 1 and 2 are the system's.
  PortListTest() { Fill(); }

  void Fill() {
    program_.suite.Run(
        "Delete From ServicePorts;"
        "Insert Into ServicePorts Values (443,'https',1,1), (80,'http',1,0), (8080,'proxy',0,1), "
        "(5000,NULL,0,0)");
    list_.Refresh();
  }
  // A changed box and text, a deletion and a new row.
  void EditRows() {
    list_.OnClick(1, 0);
    EXPECT_TRUE(Edit(list_, 2, 2, "It's séc"));
    Select(list_, {4});
    Press(list_, "cmdDeletePort");
    entered_ = NewPort{50, "o'new"};
    Press(list_, "cmdAddPort");
  }

  std::optional<NewPort> entered_;
  PortList list_{Services(), [this] { return entered_; }};
};

TEST_F(PortListTest, ServicePortsAreListedInPortOrderAndOnlyAChangedNameTurnsRed) {
  EXPECT_THAT(Rows(list_),
              ElementsAre("-|80|http|0", "x|443|https|0", "-|5000||0", "x|8080|proxy|0"));
  EXPECT_FALSE(list_.Table().Bold(1, 1)) << "a system port";
  EXPECT_TRUE(list_.Table().Bold(3, 1)) << "a port of the user's";
  EXPECT_EQ(list_.MaxLength(1), 0) << "a number has no limit";
  EXPECT_FALSE(Edit(list_, 1, 1, "81")) << "the number cannot be edited";
  EXPECT_TRUE(Edit(list_, 1, 2, "http"));  // Changed, but not red.
  EXPECT_TRUE(Edit(list_, 2, 2, "HTTPS"));
  EXPECT_EQ(list_.Table().RowData(1).state, 1);
  EXPECT_EQ(list_.Table().ForeColor(1, 2), 0U);
  EXPECT_EQ(list_.Table().ForeColor(2, 2), Rgb(255, 0, 0));
}

TEST_F(PortListTest, ASaveWritesChangedRowsAsTheyAreDisplayed) {
  EditRows();
  list_.OnKeyPress('-');
  EXPECT_THAT(Rows(list_), ElementsAre("-|50|o'new|2", "x|80|http|1", "x|443|It's séc|1",
                                       "-|5000||0", "|8080|proxy|-1"));
  list_.Table().Sort(1, SortDirection::kDescending);
  EXPECT_THAT(
      Saved(list_),
      ElementsAre("Delete From ServicePorts Where Port=8080",
                  "Update ServicePorts Set ServiceName=N'It''s séc', Enabled=1 Where Port=443",
                  "Update ServicePorts Set ServiceName='http', Enabled=1 Where Port=80",
                  "Insert Into ServicePorts (Port, ServiceName, System, Enabled) Values "
                  "(50,'o''new',0,0)",
                  kLastUpdate));
  EXPECT_THAT(program_.suite.Rows("Select * From ServicePorts"),
              ElementsAre("50|o'new|0|0", "80|http|1|1", "443|It's séc|1|1", "5000|NULL|0|0"));
  EXPECT_EQ(host_.busy_shown, 1);
  EXPECT_FALSE(host_.busy);
  list_.Refresh();
  EXPECT_THAT(Saved(list_), IsEmpty());
}

TEST_F(PortListTest, EveryEditIsListedWithItsValuesAndCanBeReverted) {
  int reported = -1;
  list_.OnPendingChanged([&] { reported = list_.PendingCount(); });
  const auto loaded = Rows(list_);
  EditRows();
  std::vector<std::string> pending;
  for (const PendingRow& row : list_.Pending()) {
    std::string text = row.name + " " + std::to_string(static_cast<int>(row.state));
    for (const auto& [column, from, to] : row.values) {
      text += ", " + column + " " + from + ">" + to;
    }
    pending.push_back(text);
  }
  EXPECT_THAT(pending, ElementsAre("50 2, Monitored >yes, Port >50, Description >o'new",
                                   "80 1, Monitored no>yes", "443 1, Description https>It's séc",
                                   "8080 -1, Monitored yes>, Port 8080>, Description proxy>"));
  EXPECT_EQ(reported, 4);
  list_.Table().Sort(2, SortDirection::kDescending);
  list_.Revert({1, 2, 3, 4, 5});
  list_.Table().Sort(1, SortDirection::kAscending);
  EXPECT_EQ(Rows(list_), loaded);
  EXPECT_EQ(list_.Table().ForeColor(2, 2), 0U);
  EXPECT_EQ(reported, 0);
  EXPECT_THAT(Saved(list_), IsEmpty());
}

TEST_F(PortListTest, ALoadThatEndsHalfwayShowsNoRowAndKeepsTheEdits) {
  program_.suite.Run(
      "With n(i) As (Select 10000 Union All Select i+1 From n Where i<20000) "
      "Insert Into ServicePorts Select i,'',0,1 From n");
  list_.Refresh();
  EditRows();
  const auto edited = Rows(list_);
  const std::pair<bool (*)(), const char*> ends[] = {
      {[] { return false; }, "The rows were not read: loading was stopped."},
      {[]() -> bool { throw std::bad_alloc(); }, "std::bad_alloc"}};
  for (const auto& [end, reason] : ends) {
    std::vector<Conflict> conflicts;
    host_.goes_on_reading = end;
    EXPECT_FALSE(list_.FindConflicts(conflicts));
    EXPECT_EQ(list_.ConflictError(), reason);
    EXPECT_FALSE(list_.Reload());
    EXPECT_EQ(list_.LoadError(), reason);
    EXPECT_THAT(Rows(list_), IsEmpty());
    EXPECT_EQ(list_.PendingCount(), 4);
    host_.goes_on_reading = [] { return true; };
    EXPECT_TRUE(list_.FindConflicts(conflicts)) << "it loads the rows first";
    list_.Table().Sort(1, SortDirection::kAscending);  // The new row came last.
    EXPECT_EQ(Rows(list_), edited);
  }
}

TEST_F(PortListTest, WhatIsStoredWhileEditsWaitForTheRowsIsAConflictToo) {
  EditRows();
  host_.stopped = true;
  EXPECT_FALSE(list_.Reload());
  host_.stopped = false;
  program_.suite.Run(
      "Update ServicePorts Set ServiceName='theirs' Where Port=80;"
      "Insert Into ServicePorts Values (50,'theirs',0,1)");
  for (const bool found : {true, false}) {
    std::vector<Conflict> conflicts;
    EXPECT_TRUE(list_.FindConflicts(conflicts));
    std::string names;
    for (const Conflict& conflict : conflicts)
      names += conflict.name + " " + conflict.theirs + "\n";
    EXPECT_EQ(names, found ? "50 yes, theirs\n80 no, theirs\n" : "");
    list_.Resolve(conflicts, ConflictAnswer::kOverwrite);
  }
  EXPECT_EQ(list_.Sync().written, 4);
}

TEST_F(PortListTest, ALoadThatIsStoppedAfterASaveLeavesNothingPendingThatWasWritten) {
  EditRows();
  list_.Sync();
  host_.stopped = true;
  script_.statements.clear();
  EXPECT_FALSE(list_.Refresh());
  EXPECT_THAT(script_.statements, IsEmpty());
  EXPECT_EQ(list_.PendingCount(), 0);
}

TEST_F(PortListTest, SystemPortsAreNeverDeleted) {
  using enum MessageAnswer;
  Select(list_, {1, 3});
  messages_.answers = {kNo};
  Press(list_, "cmdDeletePort");
  ASSERT_THAT(messages_.messages, SizeIs(1));
  EXPECT_EQ(messages_.messages[0].text, "Delete the selected ports ?");
  Select(list_, {1});
  Press(list_, "cmdDeletePort");
  EXPECT_THAT(messages_.messages.back().text,
              testing::HasSubstr("(80) is a system-defined port and cannot be deleted."));
  EXPECT_EQ(messages_.messages.back().buttons, MessageButtons::kOk);
  EXPECT_THAT(Saved(list_), IsEmpty());
  for (const MessageAnswer go_on : {kYes, kNo}) {
    messages_.messages.clear();
    messages_.answers = {kYes, go_on};
    Select(list_, {1, 2, 3});
    Press(list_, "cmdDeletePort");
    ASSERT_THAT(messages_.messages, SizeIs(go_on == kYes ? 3 : 2));
  }
  EXPECT_THAT(Saved(list_), ElementsAre("Delete From ServicePorts Where Port=5000", kLastUpdate));
}

TEST_F(PortListTest, ADeletedPortComesBackWhenItIsCheckedOrEdited) {
  Select(list_, {3, 4});
  Press(list_, "cmdDeletePort");
  list_.OnClick(3, 0);
  Edit(list_, 4, 2, "proxy");
  entered_ = NewPort{9001, "new"};  // A new port that was deleted is never inserted.
  Press(list_, "cmdAddPort");
  Press(list_, "cmdDeletePort");
  EXPECT_THAT(Saved(list_),
              ElementsAre("Update ServicePorts Set ServiceName='', Enabled=1 Where Port=5000",
                          "Update ServicePorts Set ServiceName='proxy', Enabled=0 Where Port=8080",
                          "Delete From ServicePorts Where Port=9001", kLastUpdate));
  EXPECT_THAT(program_.suite.Rows("Select * From ServicePorts"), SizeIs(4));
}

TEST_F(PortListTest, AKeyThatIsNoNumberNeverBecomesSql) {
  program_.suite.Run(
      "Drop Table ServicePorts;"
      "Create Table ServicePorts (Port TEXT, ServiceName TEXT, System INTEGER, Enabled INTEGER);"
      "Insert Into ServicePorts Values ('1 or 1=1','a',0,1), ('x','b',0,1), ('80','c',0,1)");
  ASSERT_TRUE(list_.Refresh());
  Select(list_, {1, 2, 3});
  list_.OnKeyPress('-');
  Select(list_, {3});
  Press(list_, "cmdDeletePort");
  EXPECT_THAT(Saved(list_),
              ElementsAre("Update ServicePorts Set ServiceName='a', Enabled=0 Where Port=1",
                          "Update ServicePorts Set ServiceName='c', Enabled=0 Where Port=80",
                          "Delete From ServicePorts Where Port=0", kLastUpdate));
  EXPECT_THAT(program_.suite.Rows("Select * From ServicePorts"),
              ElementsAre("1 or 1=1|a|0|1", "x|b|0|1", "80|c|0|0"));
}

TEST_F(PortListTest, KeysAndButtonsActOnEverySelectedRowAndClicksOnTheirOwn) {
  const auto boxes = [&] {
    std::string states;
    for (const std::string& row : Rows(list_)) states += row[0];
    return states;
  };
  Select(list_, {1, 2});  // Row 1 is unchecked, row 2 checked, row 3 unchecked, row 4 checked.
  EXPECT_FALSE(list_.OnKeyPress('x'));
  for (const auto& [key, button, states] : {std::tuple(U' ', "", "x--x"),
                                            {U'=', "", "xx-x"},
                                            {U'_', "", "---x"},
                                            {U'+', "", "xx-x"},
                                            {U'\0', "cmdToggle", "---x"},
                                            {U'\0', "cmdCheck", "xx-x"},
                                            {U'\0', "cmdUncheck", "---x"}}) {
    if (key == U'\0') Press(list_, button);
    EXPECT_EQ(list_.OnKeyPress(key), key != U'\0');
    EXPECT_EQ(boxes(), states) << button << static_cast<char>(key);
  }
  list_.OnClick(3, 0);
  EXPECT_EQ(boxes(), "--xx");
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
