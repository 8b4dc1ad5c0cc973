#include "dialog/page_sequence.h"

#include <algorithm>
#include <exception>

#include "dialog/failures.h"

namespace quillan {
namespace {

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
  Attempt([&] { settings_.RefreshDatabaseSettings(); });
  for (SettingsPage* page : pages_) {
    Attempt([&] { page->LoadOptions(); });
  }
  for (SettingsPage* page : pages_) {
    Attempt([&] { page->LoadRows(); });
  }
}

SaveResult PageSequence::Save() {
  for (SettingsPage* page : pages_) page->CommitEdit();
  const SaveResult options = SaveOptions();
  return options == SaveResult::kDone ? SaveRows() : options;
}

SaveResult PageSequence::SaveOptions() {
  for (SettingsPage* page : pages_) {
    const SaveResult result = page->SaveOptions();
    if (result != SaveResult::kDone) return result;
  }
  return SaveResult::kDone;
}

SaveResult PageSequence::SaveRows() {
  auto page = pages_.begin();
  try {
    for (; page != pages_.end(); ++page) (*page)->SaveRows();
    settings_.SaveDatabaseSettings();
    return SaveResult::kDone;
  } catch (const std::exception& failure) {
    ShowFailure(messages_, failure.what());
  }
  // What was written must not be written again; the page that failed keeps its edits.
  std::for_each(pages_.begin(), page,
                [](SettingsPage* saved) { Attempt([&] { saved->LoadRows(); }); });
  return SaveResult::kFailed;
}

int PageSequence::PendingCount() const {
  int count = 0;
  for (const SettingsPage* page : pages_) count += page->PendingCount();
  return count;
}

}  // namespace quillan
