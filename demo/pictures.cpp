// Writes a picture of every page of the settings dialog, the two hidden ones too, of what can be
// opened on them, of every state of a save, and of every message of the dialog.
//
// Usage: quillan_pictures <program folder> <output folder> light|dark|high-contrast
// The demonstration in the program folder is changed.

#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <string_view>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include "app/start_up.h"
#include "dialog/filter_bar.h"
#include "dialog/find_replace_form.h"
#include "dialog/save_bar.h"
#include "dialog/settings_form.h"
#include "platform/ado/drivers.h"
#include "platform/qt/appearance.h"
#include "platform/qt/color_scheme.h"
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
  Photographer(SettingsForm& form, FlowDatabase& other, Registry& registry,
               std::filesystem::path folder)
      : form_(form), other_(other), registry_(registry), folder_(std::move(folder)) {}

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
    TakeFilter();
    TakeAddForms();
    TakeQuestions();
    TakeProgress();
    TakeUnreadable();
    TakeFailures();
    TakeSystemRows();
    TakeRegrouping();
    TakeStart();
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
  // Takes the message that `action` shows and answers it, by default with the most cautious answer.
  void TakeMessage(const QString& name, const std::function<void()>& action,
                   QMessageBox::StandardButton answer = QMessageBox::NoButton,
                   const std::function<void()>& before_the_next = {}) {
    QTimer::singleShot(0, &form_, [this, name, answer, before_the_next] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) {
        std::cerr << "No message for " << ToUtf8(name) << '\n';
        good_ = false;
        return;
      }
      Take(*box, name);
      if (before_the_next) before_the_next();
      if (answer == QMessageBox::NoButton) {
        box->close();
      } else {
        box->button(answer)->click();
      }
    });
    action();
  }
  void Type(const char* box, const QString& text, QWidget& window) {
    window.findChild<QLineEdit*>(QLatin1String(box))->setText(text);
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
    TakeTogether({&form_, menu}, QStringLiteral("30-list-menu"));
    auto* exports = menu->findChild<QMenu*>(QStringLiteral("mnuExport"));
    menu->setActiveAction(exports->menuAction());
    exports->popup(menu->mapToGlobal(menu->actionGeometry(exports->menuAction()).topRight()));
    TakeTogether({&form_, menu, exports}, QStringLiteral("31-list-menu-export"));
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
    TakeModal(QStringLiteral("32-import"), "cmdCancel", paste);
    TakeModal(QStringLiteral("33-import-replacing"), "cmdCancel", paste, [](QWidget& window) {
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
    Take(*search, QStringLiteral("34-find"));
    search->findChild<QLineEdit*>(QStringLiteral("ReplaceText"))->setText(QStringLiteral("Site"));
    Press("cmdReplaceAll", *search);
    Take(*search, QStringLiteral("35-replaced"));
    Take(form_, QStringLiteral("36-replaced-rows"));
    search->reject();
    PressShortcut(Qt::CTRL | Qt::Key_Z);
  }

  void TakeNewGroup() {
    // The first range is still being typed.
    const char* const typed[] = {"10.134.5.1/16", "10.134.0.0 - 10.134.3.255", "10.134.0.0/33"};
    for (size_t i = 0; i < std::size(typed); ++i) {
      TakeModal(
          QStringLiteral("%1-new-group").arg(37 + i), "cmdCancel",
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
    Take(form_, QStringLiteral("40-coverage"));
    table->selectRow(6);
    Take(form_, QStringLiteral("41-coverage-of-the-selected-group"));
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
    auto* groups = Tabs().currentWidget()->findChild<GridView*>();
    groups->setCurrentIndex(groups->model()->index(7, 1));
    TakeMessage(
        QStringLiteral("19-delete-question"), [&] { Press("cmdDeleteGroup", form_); },
        QMessageBox::Yes);
    groups->setCurrentIndex(groups->model()->index(9, 1));
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

  void TakeFilter() {
    Tabs().setCurrentIndex(1);
    auto* bar = Tabs().currentWidget()->findChild<FilterBar*>();
    bar->Open();
    auto* text = bar->findChild<QLineEdit*>();
    text->setText(QStringLiteral("10.0.0.7"));
    Take(form_, QStringLiteral("14-filter"));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(text, &escape);
  }

  void TakeAddForms() {
    Tabs().setCurrentIndex(0);
    TakeModal(
        QStringLiteral("15-new-port"), "cmdCancel", [&] { Press("cmdAddPort", form_); },
        [&](QWidget& window) {
          Type("PortNumber", QStringLiteral("80"), window);
          Type("Description", QStringLiteral("Intranet"), window);
          TakeMessage(QStringLiteral("16-new-port-refused"), [&] { Press("cmdOK", window); });
        });
    Tabs().setCurrentIndex(1);
    TakeModal(
        QStringLiteral("17-new-group"), "cmdCancel", [&] { Press("cmdAddGroup", form_); },
        [&](QWidget& window) {
          Type("StartIPAddress", QStringLiteral("10.0.0"), window);
          TakeMessage(QStringLiteral("18-new-group-refused"), [&] { Press("cmdOK", window); });
          Type("StartIPAddress", QStringLiteral("10.0.3.0/24"), window);
        });
  }

  void TakeQuestions() {
    Tabs().setCurrentIndex(0);
    Toggle(0, 5, 5);
    TakeMessage(QStringLiteral("20-close-question"), [&] { form_.close(); });
    auto* level = form_.findChild<QCheckBox*>(QStringLiteral("CollapseEnable(2)"));
    level->setChecked(false);
    TakeMessage(QStringLiteral("21-collapse-warning"), [&] { Press("cmdOK", form_); });
    level->setChecked(true);
    Press("CmdApply", form_);
  }

  void TakeFailures() {
    Tabs().setCurrentIndex(4);
    Type("ListenPort", QStringLiteral("99999999999"), form_);
    TakeMessage(QStringLiteral("24-port-refused"), [&] { Press("CmdApply", form_); });
    Type("ListenPort", QStringLiteral("2055"), form_);
    other_.Execute("ALTER TABLE FlowEngines RENAME TO Elsewhere");
    TakeMessage(QStringLiteral("25-not-saved"), [&] { Press("CmdApply", form_); });
    other_.Execute("ALTER TABLE Elsewhere RENAME TO FlowEngines");
  }

  void TakeSystemRows() {
    Press("CmdApply", form_);
    Tabs().setCurrentIndex(0);
    auto* table = Tabs().currentWidget()->findChild<GridView*>();
    table->setCurrentIndex(table->model()->index(0, 1));
    const auto warning = QStringLiteral("26-system-port-stays");
    TakeMessage(
        QStringLiteral("26-delete-system-port"), [&] { Press("cmdDeletePort", form_); },
        QMessageBox::Yes, [&] { TakeMessage(warning, [] {}); });
  }

  void TakeRegrouping() {
    Toggle(1, 0, 0);
    TakeMessage(QStringLiteral("27-regrouping"), [&] { Press("CmdApply", form_); });
  }

  // What a start shows that fails: without a wizard, and without a connection file.
  void TakeStart() {
    const std::filesystem::path nowhere = folder_ / "nowhere";
    const DiskFiles files;
    FlowDatabase database(files, nowhere, ado::InstalledDrivers(nowhere));
    Registry empty(nowhere, nowhere, RegistryAccess::kReadOnly);
    const SystemClock clock;
    const auto locale = text::UserLocale::FromEnvironment();
    QtDesktop desktop;
    QtMessageBox messages;
    for (Registry* registry : {&empty, &registry_}) {
      const Settings settings(*registry, database, desktop, clock, locale);
      TakeMessage(registry == &empty ? QStringLiteral("28-no-wizard")
                                     : QStringLiteral("29-no-connection-file"),
                  [&] {
                    StartUp({nowhere, *registry, settings, database, files, desktop, messages,
                             [](const auto&) {}, [] {}, [](std::string_view) {}});
                  });
    }
  }

  void TakeProgress() {
    SaveProgress& progress = form_.findChild<SaveBar*>()->Progress();
    const SaveProgress::Work work(progress);
    progress.ShowStep(QStringLiteral("Saving groups"));
    progress.OnProgress(120, 3000);
    auto* stop = form_.findChild<QPushButton*>(QStringLiteral("cmdStop"));
    while (!stop->isVisible()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    Take(form_, QStringLiteral("22-progress"));
  }

  void TakeUnreadable() {
    other_.Execute("ALTER TABLE ServicePorts RENAME TO Elsewhere");
    Press("CmdApply", form_);
    Take(form_, QStringLiteral("23-not-readable"));
    other_.Execute("ALTER TABLE Elsewhere RENAME TO ServicePorts");
  }

  SettingsForm& form_;
  FlowDatabase& other_;
  Registry& registry_;
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
      {settings, registry, database, files, desktop, messages, printers, clock, locale, {}, [] {}});
  form.show();
  std::filesystem::create_directories(folder);
  return Photographer(form, other, registry, folder).TakeAll() ? 0 : 1;
}

}  // namespace
}  // namespace quillan

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const std::map<std::string_view, quillan::ColorScheme> schemes = {
      {"light", quillan::ColorScheme::kLight},
      {"dark", quillan::ColorScheme::kDark},
      {"high-contrast", quillan::ColorScheme::kHighContrastDark}};
  if (argc != 4 || !schemes.contains(argv[3])) {
    std::cerr << "Usage: quillan_pictures <program folder> <output folder> "
                 "light|dark|high-contrast\n";
    return 2;
  }
  quillan::InstallAppearance();
  quillan::SetColorScheme(schemes.at(argv[3]));
  return quillan::Run(argv[1], argv[2]);
}
