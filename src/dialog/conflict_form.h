#pragma once

#include <vector>

#include <QWidget>

#include "lists/list_changes.h"

namespace quillan {

/// A conflict and the title of the page on which it is.
struct PageConflict {
  QString page;
  Conflict conflict;
};

/// Asks what is to become of rows that somebody else has changed since they were loaded. Closing
/// the window answers kCancel.
ConflictAnswer AskAboutConflicts(const std::vector<PageConflict>& conflicts, QWidget* parent);

}  // namespace quillan
