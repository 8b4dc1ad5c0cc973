#include "dialog/list_menu.h"

#include <memory>
#include <stdexcept>
#include <utility>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QShortcut>

#include "dialog/failures.h"
#include "lists/list_import.h"
#include "platform/files.h"
#include "platform/qt/menu_items.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

// A table of all ports or of tens of thousands of groups takes a few megabytes; a larger file was
// chosen by mistake and might not fit into the memory.
constexpr qint64 kLargestFile = qint64{64} << 20;

std::string ReadTable(const QString& file) {
  const std::string path = ToUtf8(file);
  std::string reason = "The file does not exist.";
  try {
    if (QFileInfo(file).size() > kLargestFile) throw FileError("The file is larger than 64 MB.");
    if (auto bytes = ReadFile(path)) return std::move(*bytes);
  } catch (const FileError& error) {
    reason = error.what();
  }
  throw std::runtime_error("Cannot read " + path + ": " + reason);
}

// Opens the context menu of what has the focus, as the Menu key does, which many keyboards lack.
void OpenByKey() {
  QWidget* focus = QApplication::focusWidget();
  const QPoint place = focus->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, place, focus->mapToGlobal(place));
  QApplication::sendEvent(focus, &event);
}

}  // namespace

ListMenu::ListMenu(CheckableList& list, GridView& table, const QString& title,
                   const Services& services, QWidget* parent)
    : QMenu(parent),
      list_(list),
      editable_(dynamic_cast<EditableList*>(&list)),
      table_(table),
      title_(title),
      services_(services),
      copy_(AddAction("mnuCopy", tr("Copy"), &ListMenu::Copy, QKeySequence::Copy)),
      exports_(new QMenu(tr("Export"), this)) {
  setObjectName(QStringLiteral("ListMenu"));
  if (editable_ != nullptr) {
    paste_ = AddAction("mnuPaste", tr("Paste"), &ListMenu::Paste, QKeySequence::Paste);
    addSeparator();
    import_ = AddAction("mnuImport", tr("Import..."), &ListMenu::Import);
  } else {
    addSeparator();
  }
  AddExports();
  connect(this, &QMenu::aboutToShow, this, &ListMenu::EnableActions);
  AddTo(table);
}

void ListMenu::AddTo(QWidget& area) {
  area.setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&area, &QWidget::customContextMenuRequested, this, [this, &area](const QPoint& place) {
    // A scroll area gives the place in its viewport.
    const auto* scrolls = qobject_cast<QAbstractScrollArea*>(&area);
    popup((scrolls != nullptr ? scrolls->viewport() : &area)->mapToGlobal(place));
  });
  auto* key = new QShortcut(Qt::SHIFT | Qt::Key_F10, &area);
  key->setContext(Qt::WidgetWithChildrenShortcut);
  connect(key, &QShortcut::activated, this, &OpenByKey);
}

QAction* ListMenu::AddAction(const char* name, const QString& caption, void (ListMenu::*run)(),
                             QKeySequence::StandardKey key) {
  QAction* action = addAction(caption);
  action->setObjectName(QLatin1String(name));
  connect(action, &QAction::triggered, this, [this, run] {
    RunGuarded(services_.messages, [this, run] {
      table_.CommitEdit();
      (this->*run)();
    });
  });
  if (key == QKeySequence::UnknownKey) return action;
  // The menu shows the key, which works in the table alone: an open editor has its own clipboard
  // keys.
  action->setShortcut(key);
  action->setShortcutVisibleInContextMenu(true);
  auto* shortcut = new QShortcut(QKeySequence(key), &table_);
  shortcut->setContext(Qt::WidgetShortcut);
  connect(shortcut, &QShortcut::activated, this, [this, action] {
    EnableActions();
    action->trigger();
  });
  return action;
}

void ListMenu::AddExports() {
  exports_->setObjectName(QStringLiteral("mnuExport"));
  addMenu(exports_);
  services_.exporter.FillMenu(
      std::make_shared<MenuItems>(exports_, [this](const std::string& method) {
        RunGuarded(services_.messages, [this, &method] {
          table_.CommitEdit();
          services_.exporter.Export(list_, title_, method);
        });
      }));
}

// While a save runs the window takes no input, so that neither the menu nor the keys work.
void ListMenu::EnableActions() {
  const bool readable = list_.LoadError().empty();
  copy_->setEnabled(readable && !list_.Table().SelectedRows().empty());
  exports_->setEnabled(readable);
  if (editable_ == nullptr) return;
  import_->setEnabled(readable);
  const QMimeData* content = QApplication::clipboard()->mimeData();
  paste_->setEnabled(readable && content != nullptr && content->hasText());
}

void ListMenu::Copy() {
  QApplication::clipboard()->setText(ToQString(SelectedRowsText(list_.Table())));
}

void ListMenu::Paste() { Preview(ToUtf8(QApplication::clipboard()->text()), tr("the clipboard")); }

void ListMenu::Import() {
  const QString file = QFileDialog::getOpenFileName(
      table_.window(), tr("Import"), {}, tr("Tables (*.csv *.tsv *.tab *.txt);;All files (*)"));
  if (!file.isEmpty()) Preview(ReadTable(file), QFileInfo(file).fileName());
}

void ListMenu::Preview(std::string bytes, const QString& source) {
  ImportPreviewForm form(*editable_, std::move(bytes), source,
                         {services_.messages, services_.locale}, table_.window());
  if (!form.Plan().error.empty()) {
    ShowFailure(services_.messages, ToUtf8(source) + ": " + form.Plan().error);
  } else if (form.exec() == QDialog::Accepted) {
    editable_->ApplyImport(form.Plan());
  }
}

}  // namespace quillan
