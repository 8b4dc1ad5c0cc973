#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <QWidget>

#include "lists/checkable_list.h"
#include "lists/list_host.h"
#include "platform/message_box.h"
#include "platform/printers.h"
#include "suite/export_engine.h"
#include "suite/rendix_server.h"

namespace quillan {

/// Exports and prints what a list shows, through the suite's export engine, which the program
/// provides itself.
class ListExporter {
 public:
  /// All of it outlives the object. The user chooses files over `window`; `host` shows the busy
  /// pointer while one is written.
  ListExporter(Printers& printers, MessageBox& messages, ListHost& host, QWidget& window);
  ListExporter(const ListExporter&) = delete;
  ListExporter& operator=(const ListExporter&) = delete;

  /// Adds an entry for each way of exporting a list to `menu` (see ExportEngine::LoadExportsMenu).
  void FillMenu(const automation::ObjectRef& menu) { engine_.LoadExportsMenu(menu); }

  /// Exports the rows that `list` shows under `title`, by the way whose key is `method`. The user
  /// chooses the file or the printer and may cancel; more than a few thousand rows are not printed,
  /// and the user is told so. Throws `automation::Error` if the file cannot
  /// be written.
  void Export(const CheckableList& list, const QString& title, const std::string& method);

 private:
  void Print(const automation::ObjectRef& table, int rows, bool preview);
  std::filesystem::path ChooseFile(const std::filesystem::path& suggestion);

  MessageBox& messages_;
  ListHost& host_;
  QWidget& window_;
  RendixServer server_;
  ExportEngine engine_;
  std::optional<BusyPointer>* writing_ = nullptr;  // Of the export under way.
};

}  // namespace quillan
