#pragma once

#include <string>

#include <QMenu>

#include "dialog/import_preview_form.h"
#include "dialog/list_exporter.h"
#include "lists/editable_list.h"
#include "platform/qt/grid_view.h"

namespace quillan {

/// The context menu of a list, and the keys of the clipboard: copies the selected rows, takes rows
/// from the clipboard or a file after a preview, and exports what the list shows. A list to which
/// rows cannot be added is only copied and exported.
class ListMenu final : public QMenu {
  Q_OBJECT

 public:
  struct Services {
    ListExporter& exporter;
    MessageBox& messages;
    const text::UserLocale& locale;
  };
  /// `list`, its view `table` and what `services` names outlive the menu; `title` is the list's.
  ListMenu(CheckableList& list, GridView& table, const QString& title, const Services& services,
           QWidget* parent);

  /// Makes the menu that of `area`, which shows the list or what stands in its place.
  void AddTo(QWidget& area);

 private:
  QAction* AddAction(const char* name, const QString& caption, void (ListMenu::*run)(),
                     QKeySequence::StandardKey key = QKeySequence::UnknownKey);
  void AddExports();
  void EnableActions();
  void Copy();
  void Paste();
  void Import();
  void Preview(std::string bytes, const QString& source);

  CheckableList& list_;
  EditableList* editable_;  // The same list; null if rows cannot be added to it.
  GridView& table_;
  QString title_;
  Services services_;
  QAction* copy_;
  QAction* paste_ = nullptr;
  QAction* import_ = nullptr;
  QMenu* exports_;
};

}  // namespace quillan
