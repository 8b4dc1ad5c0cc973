#pragma once

#include "db/flow_database.h"
#include "photographer.h"
#include "platform/printers.h"
#include "platform/qt/qt_printers.h"

namespace quillan {

/// The printers of the computer, or none.
class DemoPrinters final : public Printers {
 public:
  bool AnyInstalled() const override { return installed; }
  bool Print(const PrintJob& job) override { return printers_.Print(job); }

  bool installed = false;

 private:
  QtPrinters printers_;
};

/// Every page, and what can be opened on a list. Nothing is saved.
void TakeLists(Photographer& photographer, DemoPrinters& printers);
/// Every state of a save; `other` is the session of another user.
void TakeSaves(Photographer& photographer, FlowDatabase& other);

}  // namespace quillan
