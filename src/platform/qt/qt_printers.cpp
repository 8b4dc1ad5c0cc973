#include "platform/qt/qt_printers.h"

#include <QApplication>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTextDocument>

#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

constexpr int kPoints = 9;

}  // namespace

bool QtPrinters::AnyInstalled() const { return !QPrinterInfo::availablePrinterNames().isEmpty(); }

bool QtPrinters::Print(const PrintJob& job) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(job.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
  printer.setDocName(ToQString(job.title));
  if (!job.printer.empty()) printer.setPrinterName(ToQString(job.printer));
  QWidget* parent = QApplication::activeWindow();
  if (job.preview) {
    QPrintPreviewDialog preview(&printer, parent);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested,
                     [&job](QPrinter* pages) { PrintDocument(job, *pages); });
    return preview.exec() == QDialog::Accepted;
  }
  if (job.printer.empty() && QPrintDialog(&printer, parent).exec() != QDialog::Accepted) {
    return false;
  }
  if (!printer.isValid()) return false;
  PrintDocument(job, printer);
  return printer.printerState() != QPrinter::Error;
}

void PrintDocument(const PrintJob& job, QPrinter& printer) {
  QTextDocument document;
  // The font of the windows has its size in pixels, of which a printer has far more to the inch.
  QFont font = document.defaultFont();
  font.setPointSize(kPoints);
  document.setDefaultFont(font);
  document.setHtml(ToQString(job.html));
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  document.print(&printer);
  QGuiApplication::restoreOverrideCursor();
}

}  // namespace quillan
