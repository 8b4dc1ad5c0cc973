// Pictures of the pages, and of what can be opened on a list.

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>

#include "dialog/coverage_strip.h"
#include "dialog/filter_bar.h"
#include "dialog/find_replace_form.h"
#include "subjects.h"

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

void TakePages(Photographer& photographer) {
  QTabWidget& tabs = photographer.Tabs();
  for (int tab = 0; tab < tabs.count(); ++tab) {
    const bool hidden = !tabs.isTabVisible(tab);
    tabs.setTabVisible(tab, true);
    tabs.tabBar()->setTabEnabled(tab, true);
    tabs.setCurrentIndex(tab);
    photographer.Take(photographer.Form(), PictureName(tab, tabs.tabText(tab)));
    tabs.setTabVisible(tab, !hidden);
    tabs.tabBar()->setTabEnabled(tab, !hidden);
  }
}

QMenu& ListMenuOf(const QTabWidget& tabs) {
  return *tabs.currentWidget()->findChild<QMenu*>(QStringLiteral("ListMenu"));
}

// Over a selected port, with something to paste.
void TakeMenu(Photographer& photographer) {
  QApplication::clipboard()->setText(QStringLiteral("80\tweb"));
  GridView& table = photographer.ShowList(0);
  table.selectRow(7);
  const QModelIndex description = table.currentIndex().siblingAtColumn(2);
  QMenu& menu = ListMenuOf(photographer.Tabs());
  menu.popup(table.viewport()->mapToGlobal(table.visualRect(description).center()));
  photographer.TakeTogether({&photographer.Form(), &menu}, QStringLiteral("30-list-menu"));
  auto* exports = menu.findChild<QMenu*>(QStringLiteral("mnuExport"));
  menu.setActiveAction(exports->menuAction());
  exports->popup(menu.mapToGlobal(menu.actionGeometry(exports->menuAction()).topRight()));
  photographer.TakeTogether({&photographer.Form(), &menu, exports},
                            QStringLiteral("31-list-menu-export"));
  exports->hide();
  menu.hide();
  table.setCurrentIndex(description);
  static_cast<QAbstractItemView&>(table).edit(description);
  photographer.Take(photographer.Form(), QStringLiteral("42-editing"));
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(QApplication::focusWidget(), &escape);
}

void TakeFiles(Photographer& photographer, DemoPrinters& printers) {
  photographer.ShowList(1);
  const auto export_as = [&](const QString& way) {
    const auto* exports =
        ListMenuOf(photographer.Tabs()).findChild<QMenu*>(QStringLiteral("mnuExport"));
    for (QAction* action : exports->actions()) {
      if (action->text() == way) action->trigger();
    }
  };
  photographer.TakeModal(QStringLiteral("43-import-file"), nullptr,
                         [&] { photographer.Choose("mnuImport"); });
  photographer.TakeModal(QStringLiteral("44-export-file"), nullptr,
                         [&] { export_as(QStringLiteral("CSV file")); });
  photographer.TakeMessage(QStringLiteral("45-no-printer"),
                           [&] { export_as(QStringLiteral("Printer")); });
  printers.installed = true;
  photographer.TakeModal(QStringLiteral("46-print"), nullptr,
                         [&] { export_as(QStringLiteral("Printer")); });
  photographer.TakeModal(QStringLiteral("47-print-preview"), nullptr,
                         [&] { export_as(QStringLiteral("Print preview")); });
}

// Groups with every verdict; a file that replaces the list shows what it deletes and keeps.
void TakeImport(Photographer& photographer) {
  const GridView& table = photographer.ShowList(1);
  const auto cell = [&table](int row, int column) {
    return table.model()->index(row, column).data().toString();
  };
  QString lines;
  for (int row = 0; row < 2; ++row) {
    lines += cell(row, 1) + QLatin1Char('\t') + cell(row, 2) + QLatin1Char('\t') +
             (row == 0 ? cell(row, 3) : QStringLiteral("renamed in the file")) + QLatin1Char('\n');
  }
  lines += QStringLiteral("198.18.0.0/24\tnew offices\n198.18.0.7\tinside them\n198.18.1.0/24\t") +
           QString(300, QLatin1Char('x')) + QStringLiteral("\n198.18.2.999\tnot an address\n");
  QApplication::clipboard()->setText(lines);
  const auto paste = [&] { photographer.Choose("mnuPaste"); };
  photographer.TakeModal(QStringLiteral("32-import"), "cmdCancel", paste);
  photographer.TakeModal(
      QStringLiteral("33-import-replacing"), "cmdCancel", paste, [](QWidget& window) {
        window.findChild<QCheckBox*>(QStringLiteral("Replace"))->setChecked(true);
      });
}

void TakeSearch(Photographer& photographer) {
  photographer.ShowList(1);
  photographer.PressShortcut(Qt::CTRL | Qt::Key_H);
  auto* search = photographer.Tabs().currentWidget()->findChild<FindReplaceForm*>();
  Type("FindText", QStringLiteral("private"), *search);
  Press("cmdFindNext", *search);
  photographer.Take(*search, QStringLiteral("34-find"));
  Type("ReplaceText", QStringLiteral("Site"), *search);
  Press("cmdReplaceAll", *search);
  photographer.Take(*search, QStringLiteral("35-replaced"));
  photographer.Take(photographer.Form(), QStringLiteral("36-replaced-rows"));
  search->reject();
  photographer.PressShortcut(Qt::CTRL | Qt::Key_Z);
}

void TakeNewGroup(Photographer& photographer) {
  // The first range is still being typed.
  const char* const typed[] = {"10.134.5.1/16", "10.134.0.0 - 10.134.3.255", "10.134.0.0/33"};
  for (size_t i = 0; i < std::size(typed); ++i) {
    photographer.TakeModal(
        QStringLiteral("%1-new-group").arg(37 + i), "cmdCancel",
        [&] { Press("cmdAddGroup", photographer.Form()); },
        [&](QWidget& window) {
          Type("StartIPAddress", QLatin1String(typed[i]), window);
          QApplication::processEvents();
          if (i > 0) window.findChild<QLineEdit*>(QStringLiteral("Description"))->setFocus();
        });
  }
}

void TakeStrip(Photographer& photographer) {
  GridView& table = photographer.ShowList(1);
  table.clearSelection();
  photographer.PressShortcut(Qt::CTRL | Qt::Key_M);
  photographer.Take(photographer.Form(), QStringLiteral("40-coverage"));
  table.selectRow(6);
  auto* strip = photographer.Tabs().currentWidget()->findChild<CoverageStrip*>();
  const QPoint place = strip->rect().center();
  QHelpEvent pointed(QEvent::ToolTip, place, strip->mapToGlobal(place));
  QApplication::sendEvent(strip, &pointed);
  std::vector<QWidget*> windows = {&photographer.Form()};
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->windowType() == Qt::ToolTip && window->isVisible()) windows.push_back(window);
  }
  photographer.TakeTogether(windows, QStringLiteral("41-coverage-of-the-selected-group"));
  photographer.PressShortcut(Qt::CTRL | Qt::Key_M);
}

void TakeFilter(Photographer& photographer) {
  photographer.ShowList(1);
  auto* bar = photographer.Tabs().currentWidget()->findChild<FilterBar*>();
  bar->Open();
  auto* text = bar->findChild<QLineEdit*>();
  text->setText(QStringLiteral("10.0.0.7"));
  photographer.Take(photographer.Form(), QStringLiteral("14-filter"));
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(text, &escape);
}

void TakeAddForms(Photographer& photographer) {
  photographer.ShowList(0);
  photographer.TakeModal(
      QStringLiteral("15-new-port"), "cmdCancel", [&] { Press("cmdAddPort", photographer.Form()); },
      [&](QWidget& window) {
        Type("PortNumber", QStringLiteral("80"), window);
        Type("Description", QStringLiteral("Intranet"), window);
        photographer.TakeMessage(QStringLiteral("16-new-port-refused"),
                                 [&] { Press("cmdOK", window); });
      });
  photographer.ShowList(1);
  photographer.TakeModal(
      QStringLiteral("17-new-group"), "cmdCancel",
      [&] { Press("cmdAddGroup", photographer.Form()); },
      [&](QWidget& window) {
        Type("StartIPAddress", QStringLiteral("10.0.0"), window);
        photographer.TakeMessage(QStringLiteral("18-new-group-refused"),
                                 [&] { Press("cmdOK", window); });
        Type("StartIPAddress", QStringLiteral("10.0.3.0/24"), window);
      });
}

void TakeSystemRows(Photographer& photographer) {
  GridView& table = photographer.ShowList(0);
  const auto remove = [&] { Press("cmdDeletePort", photographer.Form()); };
  const auto warned = [&](const QString& name) {
    return [&photographer, name] { photographer.TakeMessage(name, [] {}); };
  };
  table.setCurrentIndex(table.model()->index(0, 1));
  photographer.TakeMessage(QStringLiteral("26-delete-system-port"), remove, QMessageBox::Yes,
                           warned(QStringLiteral("26-system-port-stays")));
  table.selectRow(0);
  table.selectionModel()->select(table.model()->index(1, 0),
                                 QItemSelectionModel::Select | QItemSelectionModel::Rows);
  photographer.TakeMessage(QStringLiteral("26-delete-system-ports"), remove, QMessageBox::Yes,
                           warned(QStringLiteral("26-system-ports-stay")));
}

}  // namespace

void TakeLists(Photographer& photographer, DemoPrinters& printers) {
  TakePages(photographer);
  TakeMenu(photographer);
  TakeFiles(photographer, printers);
  TakeImport(photographer);
  TakeSearch(photographer);
  TakeNewGroup(photographer);
  TakeStrip(photographer);
  TakeFilter(photographer);
  TakeAddForms(photographer);
  TakeSystemRows(photographer);
}

}  // namespace quillan
