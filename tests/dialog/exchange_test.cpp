#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>

#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// What a list exchanges with the clipboard, files and printers.
class ExchangeTest : public test::DialogTest {
 protected:
  ExchangeTest() {
    program_.suite.Run(
        "insert into ServicePorts values (80, 'http', 1, 1), (443, 'https', 0, 0), (8080, 'proxy', "
        "0, 1)");
  }
  void OpenPage(int page, const char* list) {
    Open();
    SelectPage(page);
    list_ = Find<ListControl>(list);
    table_ = Table(list);
    menu_ = Find<ListMenu>("ListMenu", list_);
  }
  void Filter(const char* words) {
    QTest::keyClick(form_.get(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(Find<QLineEdit>("FilterText", list_), QLatin1String(words));
    table_->setFocus();
  }
  // The entries of the menu that a key opens, those that are grayed in brackets.
  std::vector<std::string> Entries(QWidget* focus) {
    focus->setFocus();
    QTest::keyClick(focus, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(menu_->isVisible());
    std::vector<std::string> entries;
    for (const QAction* action : menu_->actions()) {
      const std::string text = action->text().toStdString();
      if (!text.empty()) entries.push_back(action->isEnabled() ? text : "(" + text + ")");
    }
    menu_->hide();
    return entries;
  }
  void Export(const char* method) {
    for (QAction* action : Find<QMenu>("mnuExport", menu_)->actions()) {
      if (action->data().toString() == QLatin1String(method)) return action->trigger();
    }
    FAIL() << method;
  }
  // Types `file` into the next file dialog, and does `then` in the dialog that follows it.
  void ChooseFile(const std::string& file, const std::function<void(QDialog*)>& then = {}) {
    InNextDialog([this, file, then](QDialog* dialog) {
      Find<QLineEdit>("fileNameEdit", dialog)
          ->setText(QString::fromStdString((program_.folder / file).string()));
      if (then) InNextDialog(then);
      dialog->accept();
    });
  }
  // Presses Ctrl+V and does `act` in the preview.
  void Paste(const std::function<void(QDialog*)>& act) {
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    InNextDialog(act);
    QTest::keyClick(table_, Qt::Key_V, Qt::ControlModifier);
  }
  // The rows of the database after Apply.
  std::vector<std::string> Saved() {
    Click("CmdApply");
    return StoredPorts();
  }

  ListControl* list_ = nullptr;
  GridView* table_ = nullptr;
  ListMenu* menu_ = nullptr;
};

TEST_F(ExchangeTest, CopiedRowsArePastedAfterAPreview) {
  OpenPage(1, "PortList");
  Filter("http");
  QTest::keyClick(table_, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(table_, Qt::Key_C, Qt::ControlModifier);
  QClipboard& clipboard = *QApplication::clipboard();
  EXPECT_EQ(clipboard.text().toStdString(), "yes\t80\thttp\r\nno\t443\thttps\r\n");

  clipboard.setText(clipboard.text() + QStringLiteral("yes\t8080\tnew\nno\t90\tx\nno\t0\tz\n"));
  Paste([&](QDialog* preview) {
    EXPECT_THAT(Lines(preview),
                ElementsAre("1|Unchanged|80|http|yes|", "2|Unchanged|443|https|no|",
                            "3|Changed|8080|new|yes|Description was \"proxy\".", "4|New|90|x|no|",
                            "5|Refused|0|z||\"0\" is not a port number from 1 to 65536."));
    EXPECT_EQ(Find<QPushButton>("cmdAdd", preview)->text(), QStringLiteral("Add 2"));
    Find<QCheckBox>("RefusedOnly", preview)->click();
    EXPECT_THAT(Lines(preview), ElementsAre(StartsWith("5|")));
    // Enter presses the button that has the focus.
    Find<QPushButton>("cmdCancel", preview)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  });
  EXPECT_EQ(table_->model()->rowCount(), 2);
  Paste([](QDialog*) { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); });
  EXPECT_THAT(Saved(), ElementsAre("80|http|1", "90|x|0", "443|https|0", "8080|new|1"));
}

TEST_F(ExchangeTest, AFileReplacesTheListOrIsRefusedWithItsLine) {
  OpenPage(1, "PortList");
  auto* import = Find<QAction>("mnuImport", menu_);
  program_.folder.Write("broken.csv", "81,a\n82,\"" + std::string(1 << 20, 'b') + "\n");
  ChooseFile("broken.csv");
  import->trigger();
  EXPECT_THAT(messages_.messages.back().text, StartsWith("broken.csv: Line 2: "));
  program_.folder.Write("all.csv", "Description;Port\nhttp;80\n");
  ChooseFile("all.csv", [&](QDialog* preview) {
    EXPECT_FALSE(Find<QPushButton>("cmdAdd", preview)->isEnabled()) << "nothing would change";
    Find<QCheckBox>("Replace", preview)->click();
    EXPECT_THAT(Lines(preview),
                ElementsAre("2|Unchanged|80|http|yes|", StartsWith("|To be deleted|443|https|no|"),
                            StartsWith("|To be deleted|8080|")));
    Click("cmdAdd", preview);
  });
  import->trigger();
  EXPECT_THAT(Saved(), ElementsAre("80|http|1"));
}

TEST_F(ExchangeTest, WhatTheListShowsIsExportedAndPrinted) {
  OpenPage(1, "PortList");
  Filter("http");
  ChooseFile("ports.csv");
  Export("CSV");
  EXPECT_EQ(ReadFile(program_.folder / "ports.csv"),
            "Monitored,Port,Description\r\nyes,80,http\r\nno,443,https\r\n");
  ChooseFile("missing/ports.csv");
  Export("CSV");
  EXPECT_THAT(messages_.messages.back().text, HasSubstr("missing/ports.csv"));
  Export("PREVIEW");
  const PrintJob& job = printers_.jobs.at(0);
  EXPECT_EQ(job.title, "Application & Service Ports");
  EXPECT_TRUE(job.preview);
  EXPECT_THAT(job.html,
              testing::AllOf(HasSubstr("<td>https</td>"), testing::Not(HasSubstr("proxy"))));
  printers_.installed = false;
  Export("PRINTER");
  EXPECT_EQ(printers_.jobs.size(), 1U);
  EXPECT_THAT(messages_.messages.back().text, StartsWith("You do not have a Printer installed."));
  EXPECT_EQ(messages_.messages.back().icon, MessageIcon::kCritical);
}

TEST_F(ExchangeTest, TheMenuOffersWhatIsPossible) {
  QApplication::clipboard()->setText(QStringLiteral("x"));
  OpenPage(1, "PortList");
  EXPECT_THAT(Entries(table_), ElementsAre("(Copy)", "Paste", "Import...", "Export"));
  ClickCell(table_, 1, 1);
  QApplication::clipboard()->clear();
  EXPECT_THAT(Entries(table_), ElementsAre("Copy", "(Paste)", "Import...", "Export"));
  OpenPage(6, "InterfacesList");
  EXPECT_THAT(Entries(table_), ElementsAre("(Copy)", "Export"));
  program_.suite.Run("drop table ServicePorts");
  OpenPage(1, "PortList");
  EXPECT_THAT(Entries(Find<QPushButton>("cmdRetry", list_)),
              ElementsAre("(Copy)", "(Paste)", "(Import...)", "(Export)"));
}

}  // namespace
}  // namespace quillan
