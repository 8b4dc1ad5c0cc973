#pragma once

#include <functional>
#include <string>
#include <vector>

#include "dialog/conflict_form.h"
#include "dialog/save_progress.h"
#include "dialog/settings_page.h"
#include "settings/settings.h"

namespace quillan {

/// What became of the changes that a save was to write.
struct SaveReport {
  struct Failure {
    QString page;
    QString row;
    QString message;
  };
  int total = 0;
  int written = 0;
  bool stopped = false;  ///< By the user or by a failure: the rest was not tried.
  std::vector<Failure> failures;
};

/// The pages of the settings dialog, in the order of their tabs. Loads and saves them in phases:
/// each phase goes over all pages before the next one begins.
class PageSequence {
 public:
  struct Services {
    Settings& settings;
    FlowDatabase& database;
    MessageBox& messages;
    SaveProgress& progress;
    std::function<ConflictAnswer(const std::vector<PageConflict>&)> ask_about_conflicts;
  };
  PageSequence(std::vector<SettingsPage*> pages, const Services& services)
      : pages_(std::move(pages)), services_(services) {}

  const std::vector<SettingsPage*>& Pages() const { return pages_; }

  /// Loads every page from the settings and the database; a step that fails is skipped.
  void Load();
  /// Reads the rows of one page; what is not saved stays.
  void Reload(SettingsPage& page);
  /// Writes every page to the settings and the database. Unless all of it was written, what was
  /// written is loaded again and the rest stays as the user left it.
  SaveResult Save();
  /// What became of the last save.
  const SaveReport& Report() const { return report_; }

  /// The number of changes that a save would write.
  int PendingCount() const;

 private:
  void ReadRows(SettingsPage& page, bool (CheckableList::*read)());
  SaveResult SaveOptions();
  bool CheckStoredRows();
  SaveResult SaveRows();
  void Read(const std::function<void()>& step);
  bool SaveRowsOf(SettingsPage& page);
  int NoteUnwrittenOptions();
  void NoteFailures(const SettingsPage& page);

  std::vector<SettingsPage*> pages_;
  Services services_;
  SaveReport report_;
};

}  // namespace quillan
