// Writes a picture of every page of the settings dialog, the two hidden ones too, of what can be
// opened on them, and of every state of a save.
//
// Usage: quillan_pictures <program folder> <output folder>
// The demonstration in the program folder is changed.

#include <filesystem>
#include <functional>
#include <iostream>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include "dialog/find_replace_form.h"
#include "dialog/save_bar.h"
#include "dialog/settings_form.h"
#include "platform/ado/drivers.h"
#include "platform/qt/appearance.h"
#include "platform/qt/grid_view.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_message_box.h"
#include "platform/qt/qt_printers.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

// "2-ip-address-groups" for the second tab.
QString PictureName(int tab, const QString& caption) {
  QString name = QString::number(tab + 1);
  for (const QString& word : caption.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    if (word.front().isLetter()) name += QLatin1Char('-') + word.toLower();
  }
  return name;
}

class Photographer {
 public:
  Photographer(SettingsForm& form, FlowDatabase& other, std::filesystem::path folder)
      : form_(form), other_(other), folder_(std::move(folder)) {}

  // False when a picture could not be written.
  bool TakeAll() {
    TakePages();
    TakeMenu();
    TakeImport();
    TakeSearch();
    TakeNewGroup();
    TakeStrip();
    TakePending();
    TakeConflict();
    TakeReport();
    TakeProgress();
    TakeUnreadable();
    return good_;
  }

 private:
  void Take(QWidget& window, const QString& name) {
    QApplication::processEvents();
    Save(window.grab(), name);
  }

  void Save(const QPixmap& picture, const QString& name) {
    const std::filesystem::path file = folder_ / ToUtf8(name + QStringLiteral(".png"));
    if (picture.save(ToQString(file.string()))) return;
    std::cerr << "Cannot write " << file.string() << '\n';
    good_ = false;
  }

  // Takes windows as they lie on the screen, the later ones above.
  void TakeTogether(const std::vector<QWidget*>& windows, const QString& name) {
    QApplication::processEvents();
    QPixmap picture = windows.front()->grab();
    QPainter painter(&picture);
    const QPoint origin = windows.front()->mapToGlobal(QPoint());
    for (QWidget* window : windows) {
      painter.drawPixmap(window->mapToGlobal(QPoint()) - origin, window->grab());
    }
    painter.end();
    Save(picture, name);
  }

  // Takes the modal window that `action` opens, after `prepare` if any, and presses one of its
  // buttons.
  void TakeModal(const QString& name, const char* button, const std::function<void()>& action,
                 const std::function<void(QWidget&)>& prepare = {}) {
    QTimer::singleShot(0, &form_, [&] {
      QWidget* window = QApplication::activeModalWidget();
      if (window == nullptr) {
        std::cerr << "No window for " << ToUtf8(name) << '\n';
        good_ = false;
        return;
      }
      if (auto* table = window->findChild<QTableWidget*>()) table->selectRow(0);
      if (prepare) prepare(*window);
      Take(*window, name);
      Press(button, *window);
    });
    action();
  }

  void Press(const char* button, QWidget& window) {
    window.findChild<QPushButton*>(QLatin1String(button))->click();
  }
  QTabWidget& Tabs() { return *form_.findChild<QTabWidget*>(QStringLiteral("Tabs")); }
  // Toggles the check boxes of data rows in the list of a page.
  void Toggle(int tab, int first, int last) {
    Tabs().setCurrentIndex(tab);
    auto* table = Tabs().currentWidget()->findChild<GridView*>();
    table->selectionModel()->select(
        QItemSelection(table->model()->index(first, 0), table->model()->index(last, 0)),
        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    QApplication::sendEvent(table, &space);
  }

  void TakePages() {
    for (int tab = 0; tab < Tabs().count(); ++tab) {
      const bool hidden = !Tabs().isTabVisible(tab);
      Tabs().setTabVisible(tab, true);
      Tabs().tabBar()->setTabEnabled(tab, true);
      Tabs().setCurrentIndex(tab);
      Take(form_, PictureName(tab, Tabs().tabText(tab)));
      Tabs().setTabVisible(tab, !hidden);
      Tabs().tabBar()->setTabEnabled(tab, !hidden);
    }
  }

  // Over a selected port, with something to paste.
  void TakeMenu() {
    QApplication::clipboard()->setText(QStringLiteral("80\tweb"));
    Tabs().setCurrentIndex(0);
    auto* table = Tabs().currentWidget()->findChild<GridView*>();
    table->selectRow(7);
    const QModelIndex description = table->currentIndex().siblingAtColumn(2);
    auto* menu = Tabs().currentWidget()->findChild<QMenu*>(QStringLiteral("ListMenu"));
    menu->popup(table->viewport()->mapToGlobal(table->visualRect(description).center()));
    TakeTogether({&form_, menu}, QStringLiteral("16-list-menu"));
    auto* exports = menu->findChild<QMenu*>(QStringLiteral("mnuExport"));
    menu->setActiveAction(exports->menuAction());
    exports->popup(menu->mapToGlobal(menu->actionGeometry(exports->menuAction()).topRight()));
    TakeTogether({&form_, menu, exports}, QStringLiteral("17-list-menu-export"));
    exports->hide();
    menu->hide();
  }

  // Groups with every verdict; a file that replaces the list shows what it deletes and keeps.
  void TakeImport() {
    Tabs().setCurrentIndex(1);
    auto* table = Tabs().currentWidget()->findChild<GridView*>();
    const auto cell = [table](int row, int column) {
      return table->model()->index(row, column).data().toString();
    };
    QString lines;
    for (int row = 0; row < 2; ++row) {
      lines += cell(row, 1) + QLatin1Char('\t') + cell(row, 2) + QLatin1Char('\t') +
               (row == 0 ? cell(row, 3) : QStringLiteral("renamed in the file")) +
               QLatin1Char('\n');
    }
    lines +=
        QStringLiteral("198.18.0.0/24\tnew offices\n198.18.0.7\tinside them\n198.18.1.0/24\t") +
        QString(300, QLatin1Char('x')) + QStringLiteral("\n198.18.2.999\tnot an address\n");
    QApplication::clipboard()->setText(lines);
    const auto paste = [&] {
      auto* menu = Tabs().currentWidget()->findChild<QMenu*>(QStringLiteral("ListMenu"));
      menu->findChild<QAction*>(QStringLiteral("mnuPaste"))->trigger();
    };
    TakeModal(QStringLiteral("18-import"), "cmdCancel", paste);
    TakeModal(QStringLiteral("19-import-replacing"), "cmdCancel", paste, [](QWidget& window) {
      window.findChild<QCheckBox*>(QStringLiteral("Replace"))->setChecked(true);
    });
  }

  // Does what a key of the current page does.
  void PressShortcut(const QKeySequence& key) {
    for (auto* shortcut : Tabs().currentWidget()->findChildren<QShortcut*>()) {
      if (shortcut->key() == key) emit shortcut->activated();
    }
  }

  void TakeSearch() {
    Tabs().setCurrentIndex(1);
    PressShortcut(Qt::CTRL | Qt::Key_H);
    auto* search = Tabs().currentWidget()->findChild<FindReplaceForm*>();
    search->findChild<QLineEdit*>(QStringLiteral("FindText"))->setText(QStringLiteral("private"));
    Press("cmdFindNext", *search);
    Take(*search, QStringLiteral("20-find"));
    search->findChild<QLineEdit*>(QStringLiteral("ReplaceText"))->setText(QStringLiteral("Site"));
    Press("cmdReplaceAll", *search);
    Take(*search, QStringLiteral("21-replaced"));
    Take(form_, QStringLiteral("22-replaced-rows"));
    search->reject();
    PressShortcut(Qt::CTRL | Qt::Key_Z);
  }

  void TakeNewGroup() {
    // The first range is still being typed.
    const char* const typed[] = {"10.134.5.1/16", "10.134.0.0 - 10.134.3.255", "10.134.0.0/33"};
    for (size_t i = 0; i < std::size(typed); ++i) {
      TakeModal(
          QStringLiteral("%1-new-group").arg(23 + i), "cmdCancel",
          [&] { Press("cmdAddGroup", form_); },
          [&](QWidget& window) {
            auto* start = window.findChild<QLineEdit*>(QStringLiteral("StartIPAddress"));
            start->setText(QLatin1String(typed[i]));
            QApplication::processEvents();
            if (i > 0) window.findChild<QLineEdit*>(QStringLiteral("Description"))->setFocus();
          });
    }
  }

  void TakeStrip() {
    auto* table = Tabs().currentWidget()->findChild<GridView*>();
    table->clearSelection();
    PressShortcut(Qt::CTRL | Qt::Key_M);
    Take(form_, QStringLiteral("26-coverage"));
    table->selectRow(6);
    Take(form_, QStringLiteral("27-coverage-of-the-selected-group"));
    PressShortcut(Qt::CTRL | Qt::Key_M);
  }

  void TakePending() {
    Tabs().setCurrentIndex(4);
    auto* port = form_.findChild<QLineEdit*>(QStringLiteral("ListenPort"));
    port->setText(QStringLiteral("99 96x"));
    Take(form_, QStringLiteral("7-listening-port-note"));
    port->setText(QStringLiteral("9996"));
    Toggle(0, 2, 4);
    Toggle(1, 9, 9);
    Take(form_, QStringLiteral("8-changes-not-saved"));
    TakeModal(QStringLiteral("9-review"), "cmdClose",
              [&] { form_.findChild<SaveStatus*>()->click(); });
  }

  void TakeConflict() {
    other_.Execute("Update ServicePorts Set ServiceName='renamed by someone else' Where Port < 20");
    TakeModal(QStringLiteral("10-conflict"), "cmdOverwrite", [&] { Press("CmdApply", form_); });
    Take(form_, QStringLiteral("11-saved"));
  }

  void TakeReport() {
    Toggle(0, 2, 4);
    other_.Execute(
        "CREATE TRIGGER Refuse BEFORE UPDATE ON ServicePorts WHEN NEW.Port = 11 "
        "BEGIN SELECT RAISE(ABORT, 'This row may not be changed.'); END");
    Press("CmdApply", form_);
    Take(form_, QStringLiteral("12-not-all-saved"));
    TakeModal(QStringLiteral("13-details"), "cmdClose", [&] { Press("cmdDetails", form_); });
    other_.Execute("DROP TRIGGER Refuse");
    Press("CmdApply", form_);
  }

  void TakeProgress() {
    SaveProgress& progress = form_.findChild<SaveBar*>()->Progress();
    const SaveProgress::Work work(progress);
    progress.ShowStep(QStringLiteral("Saving groups"));
    progress.OnProgress(120, 3000);
    auto* stop = form_.findChild<QPushButton*>(QStringLiteral("cmdStop"));
    while (!stop->isVisible()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    Take(form_, QStringLiteral("14-progress"));
  }

  void TakeUnreadable() {
    other_.Execute("ALTER TABLE ServicePorts RENAME TO Elsewhere");
    Press("CmdApply", form_);
    Take(form_, QStringLiteral("15-not-readable"));
    other_.Execute("ALTER TABLE Elsewhere RENAME TO ServicePorts");
  }

  SettingsForm& form_;
  FlowDatabase& other_;
  std::filesystem::path folder_;
  bool good_ = true;
};

int Run(const std::filesystem::path& program_folder, const std::filesystem::path& folder) {
  QtDesktop desktop;
  QtMessageBox messages;
  QtPrinters printers;
  const DiskFiles files;
  const SystemClock clock;
  const auto locale = text::UserLocale::FromEnvironment();
  FlowDatabase database(files, program_folder, ado::InstalledDrivers(program_folder));
  FlowDatabase other(files, program_folder, ado::InstalledDrivers(program_folder));
  if (!database.OpenDatabase() || !other.OpenDatabase()) {
    std::cerr << database.LastError() << other.LastError() << '\n';
    return 1;
  }
  Registry registry(program_folder, program_folder);
  Settings settings(registry, database, desktop, clock, locale);
  SettingsForm form(
      {settings, database, files, desktop, messages, printers, clock, locale, {}, [] {}});
  form.show();
  std::filesystem::create_directories(folder);
  return Photographer(form, other, folder).TakeAll() ? 0 : 1;
}

}  // namespace
}  // namespace quillan

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "Usage: quillan_pictures <program folder> <output folder>\n";
    return 2;
  }
  quillan::InstallAppearance();
  return quillan::Run(argv[1], argv[2]);
}
