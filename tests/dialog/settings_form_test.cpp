#include "dialog/settings_form.h"

#include <array>

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTabBar>

#include "dialog/dialog_fixture.h"
#include "platform/qt/color_scheme.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using SettingsFormTest = test::DialogTest;

TEST_F(SettingsFormTest, SavesTheListeningPortOfThisComputerAndPointsOutAnUnusualOrUnreadOne) {
  const std::array<const char*, 3> cases[] = {
      {"20 55", "2055", "It will be saved as 2055."},
      {"abc", "1", "Not a number from 1 to 65535. It will be saved as 1."},
      {"70000", "70000", "Not a number from 1 to 65535."},
      {" 080 ", "80", ""},
  };
  program_.suite.Run("insert into FlowEngines values ('other', 7)");
  for (const auto& [typed, stored, note] : cases) {
    Open();
    auto* port = Find<QLineEdit>("ListenPort");
    port->selectAll();
    QTest::keyClick(port, Qt::Key_Delete);
    QTest::keyClicks(port, QLatin1String(typed));
    EXPECT_THAT(Find<QLabel>("ListenPortNote")->text().toStdString(), StartsWith(note)) << typed;
    Click("CmdApply");
    EXPECT_EQ(port->text(), QLatin1String(stored)) << typed;
    EXPECT_THAT(program_.suite.Rows("select * from FlowEngines order by ServerName"),
                ElementsAre(std::string("collector|") + stored, "other|7"));
    EXPECT_TRUE(form_->isVisible());
  }
  Find<QLineEdit>("ListenPort")->setText(QString(40000, QLatin1Char('9')));
  EXPECT_EQ(Find<QLabel>("ListenPortNote")->text().toStdString(), "Not a number from 1 to 65535.");
  SelectPage(1);
  for (const char* typed : {"99999999999", "-99999999999"}) {
    Find<QLineEdit>("ListenPort")->setText(QLatin1String(typed));
    Click("cmdOK");
    EXPECT_TRUE(form_->isVisible());
    EXPECT_THAT(messages_.messages.back().text, HasSubstr(typed));
    EXPECT_TRUE(Find<QLineEdit>("ListenPort")->hasFocus());
  }
  EXPECT_THAT(program_.suite.Rows("select NetFlowPort from FlowEngines order by ServerName"),
              ElementsAre("80", "7"));
  program_.suite.Run("alter table FlowEngines rename to Elsewhere");
  Open();
  EXPECT_THAT(Find<QLabel>("ListenPortNote")->text().toStdString(), HasSubstr("could not be read"));
  QTest::keyClick(Find<QLineEdit>("ListenPort"), '9');
  EXPECT_EQ(Find<QLabel>("ListenPortNote")->text(), QString());
}

TEST_F(SettingsFormTest, EscAndTheCloseBoxAskBeforeChangesAreLostAndCancelDoesNot) {
  const std::pair<std::function<void()>, bool> ways[] = {
      {[&] { Click("cmdCancel"); }, false},
      {[&] { QTest::keyClick(form_.get(), Qt::Key_Escape); }, true},
      {[&] { form_->close(); }, true}};
  for (const auto& [leave, asks] : ways) {
    Open();
    leave();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_THAT(messages_.messages, IsEmpty());

    Open();
    Find<QLineEdit>("ListenPort")->setText(QStringLiteral("1234"));
    messages_.answers = {MessageAnswer::kNo, MessageAnswer::kYes};
    leave();
    EXPECT_EQ(form_->isVisible(), asks);
    if (asks) leave();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(messages_.messages.size(), asks ? 2U : 0U);
    messages_.messages.clear();
    messages_.answers.clear();
  }
  EXPECT_EQ(ended_, 6);
  EXPECT_THAT(program_.suite.Rows("select * from FlowEngines"), IsEmpty());
}

TEST_F(SettingsFormTest, LoadsAndSavesInOneFixedOrder) {
  FillEveryPage();
  Open();
  EXPECT_THAT(script_.statements,
              ElementsAre(testing::_,  // The isolation level.
                          "Select * From FlowEngines Where ServerName='collector'",
                          "Select * From ServicePorts Order By Port",
                          "Select * From IPAddressGroups Order By IPRangeStart",
                          HasSubstr("FROM Interfaces i")));
  Find<QLineEdit>("ListenPort")->setText(QStringLiteral("9996"));
  for (const auto& [page, list] :
       {std::pair{6, "InterfacesList"}, {2, "AddressGroupList"}, {1, "PortList"}}) {
    SelectPage(page);
    ClickCell(Table(list), 1, 0);
  }
  script_.statements.clear();
  Click("CmdApply");
  std::string written;
  for (const std::string& statement : script_.statements) written += statement;
  EXPECT_THAT(written, testing::ContainsRegex("Update ServicePorts.*Update IPAddressGroups.*"
                                              "into NetFlowSources.*into FlowEngines"));
  ExpectEveryPageSaved();
}

TEST_F(SettingsFormTest, KeepsTwoPagesOutOfReachAndFocusesEachPagesFirstControl) {
  Open();
  auto* tabs = Find<QTabWidget>("Tabs");
  EXPECT_EQ(tabs->currentIndex(), 4);
  EXPECT_TRUE(Find<QLineEdit>("ListenPort")->hasFocus());
  for (const int expected : {1, 0}) {
    QTest::keyClick(tabs->tabBar(), Qt::Key_Left);
    EXPECT_EQ(tabs->currentIndex(), expected);
  }
  EXPECT_TRUE(Table("PortList")->hasFocus());
  QTest::keyClick(Table("PortList"), Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(tabs->currentIndex(), 5);
  EXPECT_TRUE(Table("InterfacesList")->hasFocus());
  QTest::keyClick(Find<QPushButton>("cmdOK"), Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(tabs->currentIndex(), 0);
  SelectPage(5);
  EXPECT_TRUE(Find<QLineEdit>("ListenPort")->hasFocus());
  // Enter presses no button.
  QTest::keyClick(Find<QLineEdit>("ListenPort"), Qt::Key_Return);
  EXPECT_TRUE(form_->isVisible());
}

TEST_F(SettingsFormTest, PlacesItsControlsAtAnySize) {
  // Places within the parents are given in twips, and met to within a pixel of rounding.
  const auto expect = [&](const char* name, double left, double top, double width, double height) {
    const QRect place = Find<QWidget>(name)->geometry();
    EXPECT_NEAR(place.left(), left / 15, 1) << name;
    EXPECT_NEAR(place.top(), top / 15, 1) << name;
    EXPECT_NEAR(place.left() + place.width(), (left + width) / 15, 1) << name;
    EXPECT_NEAR(place.top() + place.height(), (top + height) / 15, 1) << name;
  };
  Open();
  SelectPage(1);
  for (const auto& [width, height] : {std::pair{7735, 6475}, {12240, 7980}}) {
    form_->resize(qRound(width / 15.0), qRound(height / 15.0));
    QApplication::processEvents();
    const QSize list = Find<QWidget>("PortListFrame")->size() * 15 - QSize(200, 200);
    expect("Tabs", 100, 100, width - 200, height - 675);
    expect("cmdOK", width - 4795, height - 475, 1095, 375);
    expect("CmdHelp", width - 1195, height - 475, 1095, 375);
    expect("PortList", 100, 100, list.width(), list.height());
    expect("cmdDeletePort", list.width() - 2215, list.height() - 375, 2115, 375);
    EXPECT_NEAR(Table("PortList")->width(), (list.width() - 2315) / 15, 1);
  }
}

TEST_F(SettingsFormTest, EveryCaptionFitsItsButtonInEveryFont) {
  const QFont usual = QApplication::font();
  for (const int points : {0, 9, 12, 18}) {
    QFont font = usual;
    if (points > 0) font.setPointSize(points);
    QApplication::setFont(font);
    Open();
    for (int page : {1, 2, 4, 6}) {
      Find<QTabWidget>("Tabs")->setTabVisible(page - 1, true);
      SelectPage(page);
      for (const QPushButton* button : form_->findChildren<QPushButton*>()) {
        if (!button->isVisible()) continue;
        const QSize needed = button->fontMetrics().size(0, button->text()) + QSize(8, 0);
        EXPECT_EQ(needed.boundedTo(button->size()), needed) << points << qPrintable(button->text());
      }
    }
  }
  QApplication::setFont(usual);
}

TEST_F(SettingsFormTest, TheOpenWindowFollowsAChangeOfColors) {
  Open();
  Find<QLineEdit>("ListenPort")->setText(QStringLiteral("1234"));
  const auto dot = [&] {
    const QImage icon = Find<QTabWidget>("Tabs")->tabIcon(4).pixmap(8).toImage();
    return icon.pixelColor(icon.width() / 2, icon.height() / 2);
  };
  const auto window = [&] { return form_->grab().toImage().pixelColor(1, 1); };
  const QColor light_dot = dot();
  SetColorScheme(ColorScheme::kDark);
  QApplication::processEvents();
  EXPECT_LT(window().lightness(), 100);
  EXPECT_GE(Contrast(dot(), window()), 4.5);
  SetColorScheme(ColorScheme::kLight);
  QApplication::processEvents();
  EXPECT_GT(window().lightness(), 200);
  EXPECT_EQ(dot(), light_dot);
}

TEST_F(SettingsFormTest, HelpNeedsToKnowItsServer) {
  Open();
  EXPECT_FALSE(Find<QPushButton>("CmdHelp")->isEnabled());
  EXPECT_THAT(Find<QPushButton>("CmdHelp")->toolTip().toStdString(), HasSubstr("Help Server"));
  for (const char* host : {"help.example:8080/", "http://help.example:8080//"}) {
    registry_.SaveRegistryString("Quillan", "Settings", "Help Server", host);
    Click("CmdApply");
    EXPECT_TRUE(Find<QPushButton>("CmdHelp")->toolTip().isEmpty());
    Click("CmdHelp");
    EXPECT_EQ(desktop_.opened.back(), "http://help.example:8080/Kelvora/Help/Admin/NetFlow.htm");
  }
  EXPECT_THAT(messages_.messages, IsEmpty());
  for (const auto& [result, message] :
       {std::pair{OpenUrlResult::kNoBrowser, "Could not find default Browser"},
        {OpenUrlResult::kNotOpened, "Web Page not Opened"}}) {
    desktop_.open_result = result;
    Click("CmdHelp");
    ASSERT_FALSE(messages_.messages.empty());
    EXPECT_EQ(messages_.messages.back().text, message);
  }
  // The option is read when it is used.
  registry_.SaveRegistryString("Quillan", "Settings", "Help Server", "");
  Click("CmdHelp");
  EXPECT_FALSE(Find<QPushButton>("CmdHelp")->isEnabled());
  QTest::keyClick(form_.get(), Qt::Key_F1);
  EXPECT_EQ(desktop_.opened.size(), 4U);
  const auto file = program_.folder.Write("program/Help/Tarrowby.chm", "help");
  QTest::keyClick(form_.get(), Qt::Key_F1);
  EXPECT_EQ(desktop_.opened.back(), file.string());
}

TEST_F(SettingsFormTest, DropsWhatIsClickedDuringASave) {
  program_.suite.Run("insert into ServicePorts values (80, 'http', 1, 1)");
  Open();
  auto* cancel = Find<QPushButton>("cmdCancel");
  Find<QLineEdit>("ListenPort")->setText(QStringLiteral("1234"));
  script_.before = [&](const std::string& statement) {
    if (statement.find("into FlowEngines") == std::string::npos) return;
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QCoreApplication::postEvent(
          cancel, new QMouseEvent(type, QPointF(9, 9), cancel->mapToGlobal(QPointF(9, 9)),
                                  Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    }
  };
  Click("CmdApply");
  QApplication::processEvents();
  EXPECT_TRUE(form_->isVisible());
  EXPECT_THAT(program_.suite.Rows("select NetFlowPort from FlowEngines"), ElementsAre("1234"));
}

TEST_F(SettingsFormTest, DataCollapsingGoesBackToItsDefaultsAndIsSwitchedOffOnlyAfterAQuestion) {
  Open();
  auto* interval = Find<QScrollBar>("CollapseInterval_Scroll(2)");
  interval->setValue(26);
  EXPECT_EQ(Find<QLabel>("CollapseLevel(2)")->text().toStdString(),
            "Collapse statistics older than 1 days, 2 hours into 60 minute intervals");
  Click("cmdRestoreCollapseDefaults");
  EXPECT_EQ(interval->value(), 24);

  const auto enable = [&](int level) {
    return Find<QCheckBox>(("CollapseEnable(" + std::to_string(level) + ")").c_str());
  };
  enable(1)->click();
  EXPECT_TRUE(enable(1)->isChecked());
  EXPECT_THAT(messages_.messages.back().text,
              StartsWith("Level 1 data collapsing cannot be disabled."));
  for (const int level : {2, 3}) enable(level)->click();
  EXPECT_FALSE(Find<QFrame>("CollapseFrame(3)")->isEnabled());
  Find<QScrollBar>("RetainData_Scroll")->setValue(99);
  messages_.messages.clear();
  messages_.answers = {MessageAnswer::kCancel, MessageAnswer::kYes};
  Click("cmdOK");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(settings_->RetainDays(), 99);
  EXPECT_TRUE(settings_->CollapseEnable(2));
  // Of several levels, one save asks about the first alone.
  Click("cmdOK");
  ASSERT_EQ(messages_.messages.size(), 2U);
  EXPECT_THAT(messages_.messages[1].text,
              StartsWith("You have disabled Data Collapse Level 2\r\n"));
  EXPECT_EQ(messages_.messages[1].buttons, MessageButtons::kYesNoCancel);
  EXPECT_TRUE(settings_->CollapseEnable(2));
  EXPECT_FALSE(settings_->CollapseEnable(3));
}

}  // namespace
}  // namespace quillan
