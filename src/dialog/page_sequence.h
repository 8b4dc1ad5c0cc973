#pragma once

#include <vector>

#include "dialog/settings_page.h"
#include "platform/message_box.h"
#include "settings/settings.h"

namespace quillan {

/// The pages of the settings dialog, in the order of their tabs. Loads and saves them in phases:
/// each phase goes over all pages before the next one begins.
class PageSequence {
 public:
  PageSequence(std::vector<SettingsPage*> pages, Settings& settings, MessageBox& messages)
      : pages_(std::move(pages)), settings_(settings), messages_(messages) {}

  const std::vector<SettingsPage*>& Pages() const { return pages_; }

  /// Loads every page from the settings and the database; a step that fails is skipped.
  void Load();
  /// Writes every page to the settings and the database. What was written before a failure is
  /// loaded again; the rest keeps its edits.
  SaveResult Save();
  /// The number of changes that a save would write.
  int PendingCount() const;

 private:
  SaveResult SaveOptions();
  SaveResult SaveRows();

  std::vector<SettingsPage*> pages_;
  Settings& settings_;
  MessageBox& messages_;
};

}  // namespace quillan
