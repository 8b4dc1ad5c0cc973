#include "dialog/list_exporter.h"

#include <memory>

#include <QFileDialog>
#include <QVersionNumber>

#include "lists/list_import.h"
#include "platform/program.h"
#include "platform/qt/qt_text.h"
#include "suite/grid_table.h"

namespace quillan {
namespace {

ProgramInfo ThisProgram() {
  const auto version = QVersionNumber::fromString(ToQString(Version()));
  return {.file_description = std::string(kDisplayName),
          .major_version = version.majorVersion(),
          .minor_version = version.minorVersion(),
          .revision = version.microVersion(),
          .folder = ProgramFolder()};
}

}  // namespace

ListExporter::ListExporter(Printers& printers, MessageBox& messages, QWidget& window)
    : window_(window),
      server_(printers, [this](const auto& suggestion) { return ChooseFile(suggestion); }),
      engine_(server_, printers, messages, ThisProgram()) {}

void ListExporter::Export(const CheckableList& list, const QString& title,
                          const std::string& method) {
  const bool preview = method == "PREVIEW";
  const bool prints = preview || method == "PRINTER";
  if (prints && engine_.NoPrinters()) return;
  const auto table = std::make_shared<GridTable>(list.Table(), &CheckWord);
  engine_.Reset();  // The last file's name is not this one's.
  engine_.Title = ToUtf8(title);
  if (prints) {
    engine_.PrintTable(table, preview);
  } else {
    engine_.ExportTable(table, method);
  }
}

std::filesystem::path ListExporter::ChooseFile(const std::filesystem::path& suggestion) const {
  const QString extension = ToQString(suggestion.extension().string()).mid(1);
  QFileDialog dialog(
      &window_, QFileDialog::tr("Export"), {},
      QFileDialog::tr("%1 files (*.%2);;All files (*)").arg(extension.toUpper(), extension));
  dialog.setObjectName(QStringLiteral("ExportFile"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(extension);
  dialog.selectFile(ToQString(suggestion.string()));
  if (dialog.exec() != QDialog::Accepted) return {};
  return ToUtf8(dialog.selectedFiles().constFirst());
}

}  // namespace quillan
