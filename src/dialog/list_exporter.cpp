#include "dialog/list_exporter.h"

#include <memory>

#include <QFileDialog>
#include <QLocale>
#include <QVersionNumber>

#include "dialog/failures.h"
#include "lists/list_import.h"
#include "platform/program.h"
#include "platform/qt/qt_text.h"
#include "suite/grid_table.h"

namespace quillan {
namespace {

// Qt lays a table out in two to four milliseconds a row, while the window waits.
constexpr int kMostPrintedRows = 5000;

ProgramInfo ThisProgram() {
  const auto version = QVersionNumber::fromString(ToQString(Version()));
  return {.file_description = std::string(kDisplayName),
          .major_version = version.majorVersion(),
          .minor_version = version.minorVersion(),
          .revision = version.microVersion(),
          .folder = ProgramFolder()};
}

}  // namespace

ListExporter::ListExporter(Printers& printers, MessageBox& messages, ListHost& host,
                           QWidget& window)
    : messages_(messages),
      host_(host),
      window_(window),
      server_(printers, [this](const auto& suggestion) { return ChooseFile(suggestion); }),
      engine_(server_, printers, messages, ThisProgram()) {}

void ListExporter::Export(const CheckableList& list, const QString& title,
                          const std::string& method) {
  const auto table = std::make_shared<GridTable>(list.Table(), &CheckWord);
  engine_.Reset();  // The last file's name is not this one's.
  engine_.Title = ToUtf8(title);
  const bool preview = method == "PREVIEW";
  if (preview || method == "PRINTER") {
    Print(table, list.Table().ShownRows(), preview);
  } else {
    std::optional<BusyPointer> writing;
    writing_ = &writing;
    engine_.ExportTable(table, method);
  }
}

void ListExporter::Print(const automation::ObjectRef& table, int rows, bool preview) {
  if (rows > kMostPrintedRows) {
    const QLocale locale;
    ShowFailure(messages_,
                ToUtf8(QFileDialog::tr("The list shows %1 rows, and at most %2 can be "
                                       "printed. Filter the list, or export a web page "
                                       "and print that.")
                           .arg(locale.toString(rows), locale.toString(kMostPrintedRows))));
  } else if (!engine_.NoPrinters()) {
    engine_.PrintTable(table, preview);
  }
}

std::filesystem::path ListExporter::ChooseFile(const std::filesystem::path& suggestion) {
  const QString extension = ToQString(suggestion.extension().string()).mid(1);
  QFileDialog dialog(
      &window_, QFileDialog::tr("Export"), {},
      QFileDialog::tr("%1 files (*.%2);;All files (*)").arg(extension.toUpper(), extension));
  dialog.setObjectName(QStringLiteral("ExportFile"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(extension);
  dialog.selectFile(ToQString(suggestion.string()));
  if (dialog.exec() != QDialog::Accepted) return {};
  writing_->emplace(host_);
  return ToUtf8(dialog.selectedFiles().constFirst());
}

}  // namespace quillan
