#include "dialog/page_sequence.h"

#include <exception>

#include "dialog/failures.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

QString Tr(const char* text) { return SettingsPage::tr(text); }

// Runs one step of a sequence in which a failing step is skipped.
template <typename Step>
void Attempt(Step step) {
  try {
    step();
  } catch (const std::exception&) {
    // The steps that follow do not depend on this one.
  }
}

}  // namespace

void PageSequence::Load() {
  const SaveProgress::Work work(services_.progress);
  Read([&] { services_.settings.RefreshDatabaseSettings(); });
  for (SettingsPage* page : pages_) {
    Attempt([&] { page->LoadOptions(); });
  }
  for (SettingsPage* page : pages_) {
    if (page->List() == nullptr) continue;
    Attempt([&] { ReadRows(*page, &CheckableList::Refresh); });
  }
}

// After an expired time-out the user is asked whether to go on.
void PageSequence::Read(const std::function<void()>& step) {
  services_.database.BeginReport();
  Attempt(step);
  for (const StatementFailure& failure : services_.database.EndReport().failures) {
    if (failure.error.IsTimeout()) services_.progress.OnTimeout(failure.error.what());
  }
}

void PageSequence::Reload(SettingsPage& page) {
  const SaveProgress::Work work(services_.progress);
  ReadRows(page, &CheckableList::Reload);
}

void PageSequence::ReadRows(SettingsPage& page, bool (CheckableList::*read)()) {
  services_.progress.ShowStep(Tr("Loading %1").arg(page.RowsName()));
  // While the rows are exchanged there is nothing consistent to paint.
  page.setUpdatesEnabled(false);
  Read([&] { (page.List()->*read)(); });
  page.setUpdatesEnabled(true);
  page.ShowRows(ToQString(page.List()->LoadError()));
}

SaveResult PageSequence::Save() {
  const SaveProgress::Work work(services_.progress);
  report_ = {};
  for (SettingsPage* page : pages_) page->CommitEdit();
  const SaveResult options = SaveOptions();
  if (options != SaveResult::kDone) return options;
  if (!CheckStoredRows()) return SaveResult::kFailed;
  return SaveRows();
}

SaveResult PageSequence::SaveOptions() {
  for (SettingsPage* page : pages_) {
    const SaveResult result = page->SaveOptions();
    if (result != SaveResult::kDone) return result;
  }
  return SaveResult::kDone;
}

// Reads before anything is written: a session that was lost while idle is opened again, and what
// others have changed since the load comes to light. False ends the save.
bool PageSequence::CheckStoredRows() {
  std::vector<std::pair<SettingsPage*, std::vector<Conflict>>> found;
  std::vector<PageConflict> conflicts;
  bool read = false;
  std::string reason;
  for (SettingsPage* page : pages_) {
    CheckableList* list = page->List();
    if (list == nullptr || !list->NeedsConflictCheck()) continue;
    services_.progress.ShowStep(Tr("Checking %1").arg(page->RowsName()));
    auto& of_page = found.emplace_back(page, std::vector<Conflict>()).second;
    const bool unread = !list->LoadError().empty();
    read = list->FindConflicts(of_page);
    reason = list->ConflictError();
    if (unread) page->ShowRows(ToQString(list->LoadError()));
    if (!read) break;
    for (const Conflict& conflict : of_page) conflicts.push_back({page->Title(), conflict});
  }
  if (found.empty()) {
    read = services_.settings.QueryListenPort();
    reason = services_.database.LastError();
  }
  if (!read && services_.progress.Stopped()) {
    report_.total = PendingCount();
    report_.stopped = true;
    return false;
  }
  if (!read) {
    ShowFailure(services_.messages,
                "Nothing has been saved: the database cannot be read.\r\n\r\n" + reason);
    return false;
  }
  if (conflicts.empty()) return true;
  const ConflictAnswer answer = services_.ask_about_conflicts(conflicts);
  for (const auto& [page, of_page] : found) page->List()->Resolve(of_page, answer);
  return answer != ConflictAnswer::kCancel;
}

SaveResult PageSequence::SaveRows() {
  const int unwritten = NoteUnwrittenOptions();
  const int total = PendingCount() + unwritten;
  std::vector<SettingsPage*> begun;
  bool complete = true;
  bool rows_done = false;
  QString port_failure;
  try {
    for (SettingsPage* page : pages_) {
      if (page->List() == nullptr) continue;
      complete = !services_.progress.Stopped();
      if (!complete) break;
      begun.push_back(page);
      complete = SaveRowsOf(*page);
      if (!complete) break;
    }
    rows_done = complete;
    if (complete) services_.settings.SaveDatabaseSettings();
  } catch (const std::exception& failure) {
    complete = false;
    if (rows_done) port_failure = ToQString(failure.what());
    ShowFailure(services_.messages, failure.what());
  }
  report_.total = total;
  report_.stopped = !complete;
  if (complete && report_.failures.empty()) {
    report_.written = total;
    return SaveResult::kDone;
  }
  // What was written must not be written again; the rest stays as it is.
  services_.progress.Resume();
  if (complete) {
    Attempt([&] { services_.settings.RefreshDatabaseSettings(); });
    for (SettingsPage* page : pages_) page->LoadOptions();
  }
  report_.failures.clear();
  NoteUnwrittenOptions();
  for (SettingsPage* page : begun) {
    Attempt([&] { ReadRows(*page, &CheckableList::Reload); });
    NoteFailures(*page);
  }
  if (!port_failure.isEmpty()) {
    report_.failures.push_back({Tr("NetFlow Service"), Tr("Listening port"), port_failure});
  }
  report_.written = total - PendingCount() - unwritten;
  return complete && report_.failures.empty() ? SaveResult::kDone : SaveResult::kFailed;
}

// False when the user stopped it.
bool PageSequence::SaveRowsOf(SettingsPage& page) {
  CheckableList& list = *page.List();
  services_.progress.ShowStep(Tr("Saving %1").arg(page.RowsName()));
  const SaveOutcome outcome = list.Sync();
  NoteFailures(page);
  return !outcome.stopped;
}

// How many options the registry refused.
int PageSequence::NoteUnwrittenOptions() {
  const auto& unwritten = services_.settings.UnwrittenOptions();
  for (const std::string& name : unwritten) {
    report_.failures.push_back(
        {Tr("Options"), ToQString(name), Tr("The file registry.reg could not be written.")});
  }
  return static_cast<int>(unwritten.size());
}

void PageSequence::NoteFailures(const SettingsPage& page) {
  for (const SaveFailure& failure : page.List()->Failures()) {
    report_.failures.push_back({page.Title(), ToQString(failure.name), ToQString(failure.message)});
  }
}

int PageSequence::PendingCount() const {
  int count = 0;
  for (const SettingsPage* page : pages_) count += page->PendingCount();
  return count;
}

}  // namespace quillan
