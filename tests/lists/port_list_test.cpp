#include "lists/port_list.h"

#include <string>
#include <vector>

#include "lists/list_fixture.h"

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
  PortListTest() {
    program_.suite.Run(
        "Insert Into ServicePorts Values (443,'https',1,1), (80,'http',1,0), (8080,'proxy',0,1), "
        "(5000,NULL,0,0)");
    list_.Refresh();
  }

  std::optional<NewPort> entered_;
  PortList list_{Services(), [this] { return entered_; }};
};

TEST_F(PortListTest, ServicePortsAreListedInPortOrderAndOnlyAChangedNameTurnsRed) {
  EXPECT_THAT(Rows(list_),
              ElementsAre("-|80|http|0", "x|443|https|0", "-|5000||0", "x|8080|proxy|0"));
  EXPECT_FALSE(list_.Table().Bold(1, 1)) << "a system port";
  EXPECT_TRUE(list_.Table().Bold(3, 1)) << "a port of the user's";
  EXPECT_EQ(list_.MaxLength(2), 255);
  EXPECT_EQ(list_.MaxLength(1), 0) << "a number has no limit";
  EXPECT_FALSE(Edit(list_, 1, 1, "81")) << "the number cannot be edited";
  EXPECT_TRUE(Edit(list_, 1, 2, "http"));  // Changed, but not red.
  EXPECT_TRUE(Edit(list_, 2, 2, "HTTPS"));
  EXPECT_EQ(list_.Table().RowData(1).state, 1);
  EXPECT_EQ(list_.Table().ForeColor(1, 2), 0U);
  EXPECT_EQ(list_.Table().ForeColor(2, 2), Rgb(255, 0, 0));
  TakeDatabaseAway();
  list_.Refresh();
  EXPECT_EQ(list_.Table().Rows(), 1);
}

TEST_F(PortListTest, ASaveWritesChangedRowsAsTheyAreDisplayed) {
  list_.OnClick(1, 0);
  EXPECT_TRUE(Edit(list_, 2, 2, "It's séc"));
  Select(list_, {4});
  Press(list_, "cmdDeletePort");
  entered_ = NewPort{50, "o'new"};
  Press(list_, "cmdAddPort");
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
  for (const auto& [key, states] : std::initializer_list<std::pair<char32_t, const char*>>{
           {U' ', "x--x"}, {U'=', "xx-x"}, {U'_', "---x"}, {U'+', "xx-x"}}) {
    EXPECT_TRUE(list_.OnKeyPress(key));
    EXPECT_EQ(boxes(), states) << "key " << static_cast<char>(key);
  }
  EXPECT_FALSE(list_.OnKeyPress('x'));
  for (const auto& [button, states] : std::initializer_list<std::pair<const char*, const char*>>{
           {"cmdToggle", "---x"}, {"cmdCheck", "xx-x"}, {"cmdUncheck", "---x"}}) {
    Press(list_, button);
    EXPECT_EQ(boxes(), states) << button;
  }
  list_.OnClick(3, 0);
  EXPECT_EQ(boxes(), "--xx");
}

}  // namespace
}  // namespace quillan
