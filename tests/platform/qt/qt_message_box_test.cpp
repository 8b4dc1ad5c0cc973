#include "platform/qt/qt_message_box.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace quillan {
namespace {

using testing::ElementsAreArray;

/// A message box as the user sees it.
struct Seen {
  QMessageBox::Icon icon;
  std::string title;
  std::string text;
  std::vector<std::string> buttons;
  std::string default_button;
  QWidget* parent;
  bool lines_fit;
  bool has_button_icons;
};

// Reads the message box on screen and leaves it by `key`.
Seen Read(Qt::Key key) {
  auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  EXPECT_NE(box, nullptr);
  Seen seen{box->icon(),
            box->windowTitle().toStdString(),
            box->text().toStdString(),
            {},
            {},
            box->parentWidget(),
            false,
            false};
  QList<QAbstractButton*> buttons = box->buttons();
  std::sort(buttons.begin(), buttons.end(),
            [](const auto* left, const auto* right) { return left->x() < right->x(); });
  for (const QAbstractButton* button : buttons) {
    seen.buttons.push_back(button->text().remove(QLatin1Char('&')).toStdString());
    seen.has_button_icons = seen.has_button_icons || !button->icon().isNull();
  }
  seen.default_button = box->defaultButton()->text().remove(QLatin1Char('&')).toStdString();
  const auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  seen.lines_fit = label->width() >= label->fontMetrics().size(0, label->text()).width();
  QTest::keyClick(box, key);
  return seen;
}

TEST(QtMessageBoxTest, ShowsEveryKindOfMessage) {
  QWidget window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  QWidget tooltip(nullptr, Qt::ToolTip);
  tooltip.show();
  using enum MessageButtons;
  struct Case {
    MessageButtons buttons;
    MessageIcon icon;
    QMessageBox::Icon shown_icon;
    std::vector<std::string> shown_buttons;
    MessageAnswer on_enter;
    MessageAnswer on_escape;
  };
  const Case cases[] = {{kOk,
                         MessageIcon::kNone,
                         QMessageBox::NoIcon,
                         {"OK"},
                         MessageAnswer::kOk,
                         MessageAnswer::kOk},
                        {kOk,
                         MessageIcon::kCritical,
                         QMessageBox::Critical,
                         {"OK"},
                         MessageAnswer::kOk,
                         MessageAnswer::kOk},
                        {kYesNo,
                         MessageIcon::kQuestion,
                         QMessageBox::Question,
                         {"Yes", "No"},
                         MessageAnswer::kYes,
                         MessageAnswer::kNo},
                        {kYesNoCancel,
                         MessageIcon::kExclamation,
                         QMessageBox::Warning,
                         {"Yes", "No", "Cancel"},
                         MessageAnswer::kYes,
                         MessageAnswer::kCancel}};
  const std::string text = "<b>A line</b> " + std::string(70, 'x') + " of a long message.\r\rEnd";
  QtMessageBox boxes;
  for (const Case& expected : cases) {
    for (const auto& [key, answer] : {std::pair{Qt::Key_Return, expected.on_enter},
                                      std::pair{Qt::Key_Escape, expected.on_escape}}) {
      Seen seen;
      QTimer::singleShot(0, &window, [&, leave = key] { seen = Read(leave); });
      EXPECT_EQ(boxes.Show(text, "Title", expected.buttons, expected.icon), answer);
      EXPECT_EQ(seen.icon, expected.shown_icon);
      EXPECT_EQ(seen.title, "Title");
      EXPECT_EQ(seen.text, "<b>A line</b> " + std::string(70, 'x') + " of a long message.\n\nEnd");
      EXPECT_THAT(seen.buttons, ElementsAreArray(expected.shown_buttons));
      EXPECT_EQ(seen.default_button, expected.shown_buttons[0]);
      EXPECT_EQ(seen.parent, &window);
      EXPECT_TRUE(seen.lines_fit);
      EXPECT_FALSE(seen.has_button_icons);
    }
  }
}

}  // namespace
}  // namespace quillan
