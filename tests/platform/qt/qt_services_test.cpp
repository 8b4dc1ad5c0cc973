#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPrinter>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_message_box.h"
#include "platform/qt/qt_printers.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

TEST(PrintDocumentTest, TextIsLargeEnoughToBeRead) {
  const test::TemporaryFolder folder;
  QFile pages(QString::fromStdString((folder.path() / "pages.pdf").string()));
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(pages.fileName());
  PrintJob job;
  for (int i = 0; i < 100; ++i) job.html += "<p style='margin:0'>A line</p>";
  PrintDocument(job, printer);
  ASSERT_TRUE(pages.open(QIODevice::ReadOnly));
  EXPECT_EQ(pages.readAll().count("/Type /Page\n"), 2) << "of 70 lines";
}

TEST(QtMessageBoxTest, ShowsEveryKindOfMessage) {
  QWidget window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  QWidget tooltip(nullptr, Qt::ToolTip);
  tooltip.show();
  using enum MessageButtons;
  const struct {
    MessageButtons buttons;
    MessageIcon icon;
    QMessageBox::Icon shown_icon;
    QMessageBox::StandardButtons shown_buttons;
    MessageAnswer on_enter, on_escape;
  } rows[] = {
      {kOk, MessageIcon::kNone, QMessageBox::NoIcon, QMessageBox::Ok, MessageAnswer::kOk,
       MessageAnswer::kOk},
      {kOk, MessageIcon::kCritical, QMessageBox::Critical, QMessageBox::Ok, MessageAnswer::kOk,
       MessageAnswer::kOk},
      {kYesNo, MessageIcon::kQuestion, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
       MessageAnswer::kYes, MessageAnswer::kNo},
      {kYesNoCancel, MessageIcon::kExclamation, QMessageBox::Warning,
       QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, MessageAnswer::kYes,
       MessageAnswer::kCancel},
  };
  const std::string line = "<b>A line</b> " + std::string(70, 'x') + " of a long message.";
  QtMessageBox boxes;
  for (const auto& row : rows) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
      QTimer::singleShot(0, &window, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->parentWidget(), &window);
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Title"));
        EXPECT_EQ(box->text().toStdString(), line + "\n\nEnd");
        EXPECT_EQ(box->icon(), row.shown_icon);
        EXPECT_EQ(box->standardButtons(), row.shown_buttons);
        for (const QAbstractButton* button : box->buttons()) {
          EXPECT_TRUE(button->icon().isNull());
        }
        const auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        EXPECT_GE(label->width(), label->fontMetrics().size(0, label->text()).width());
        QTest::keyClick(box, key);
      });
      EXPECT_EQ(boxes.Show(line + "\r\rEnd", "Title", row.buttons, row.icon),
                key == Qt::Key_Return ? row.on_enter : row.on_escape);
    }
  }
}

TEST(QtDesktopTest, OpensAPageWithTheFirstOpenerOnTheSearchPath) {
  const test::TemporaryFolder folder;
  const auto make = [&](const char* name, const std::string& script) {
    const auto program = folder.Write(name, script);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  };
  const auto pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string path = getenv("PATH");
  setenv("PATH", (folder / "bin").c_str(), 1);
  signal(SIGCHLD, SIG_IGN);  // Some parents leave it ignored.
  QtDesktop desktop;
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
  make("bin/firefox", "\x01\x02");
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNotOpened);
  // The opener goes on as the browser.
  make("bin/xdg-open", "#!/bin/sh\nexec /bin/sh -c '/bin/sleep 1.2; echo \"$@\" >" + pipe.string() +
                           "' browser \"$@\"\n");
  EXPECT_EQ(desktop.OpenUrl("http://a/?b=c d"), OpenUrlResult::kOpened);
  EXPECT_EQ(folder.Read("pipe"), "http://a/?b=c d\n");
  EXPECT_EQ(desktop.OpenUrl("--help"), OpenUrlResult::kNotOpened);
  make("bin/xdg-open", "#!/bin/sh\nexit 3\n");
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNoBrowser);
  make("bin/xdg-open", "#!/bin/sh\nexit 4\n");
  EXPECT_EQ(desktop.OpenUrl("http://a/"), OpenUrlResult::kNotOpened);
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace quillan
