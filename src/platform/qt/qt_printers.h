#pragma once

#include "platform/printers.h"

class QPrinter;

namespace quillan {

/// The printers that Qt finds (CUPS on Unix), with Qt's print and preview dialogs.
class QtPrinters final : public Printers {
 public:
  bool AnyInstalled() const override;
  bool Print(const PrintJob& job) override;
};

/// Lays out the document of `job` on the pages of `printer`.
void PrintDocument(const PrintJob& job, QPrinter& printer);

}  // namespace quillan
