#pragma once

#include <QPushButton>
#include <QWidget>

#include "dialog/page_sequence.h"
#include "dialog/save_progress.h"
#include "dialog/save_status.h"
#include "platform/clock.h"
#include "platform/qt/announcement.h"

namespace quillan {

/// The place beside the dialog's buttons for what concerns saving: the status line, "Stop" while a
/// save or load takes long, and "Details" after one in which something failed.
class SaveBar final : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    FlowDatabase& database;
    MessageBox& messages;
    const Clock& clock;
    const text::UserLocale& locale;
  };
  /// `window` is the one that saves and loads.
  SaveBar(const Services& services, QWidget& window);

  SaveProgress& Progress() { return progress_; }
  /// The number of changes that are not saved.
  void ShowNote(const QString& text) { status_->ShowNote(text); }
  void ShowPending(int count);
  /// What became of a save.
  void ShowReport(const SaveReport& report);

 signals:
  /// The user wants to see what is not saved.
  void ReviewRequested();

 private:
  void ShowDetails();

  Services services_;
  SaveStatus* status_;
  Announcement* announcement_;  // Of what became of a save; the focus is not in the status line.
  QPushButton* details_;
  QPushButton* stop_;
  SaveProgress progress_;
  SaveReport report_;
};

}  // namespace quillan
