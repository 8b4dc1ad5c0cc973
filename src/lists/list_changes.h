#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/grid/grid.h"

namespace quillan {

/// What became of a row since it was loaded; the grid keeps it with the row.
enum class RowState : std::int8_t { kDeleted = -1, kUnchanged = 0, kChanged = 1, kNew = 2 };

/// A value of a pending row that will be written.
struct PendingValue {
  std::string column;  ///< The column's header.
  std::string from;    ///< Empty for a new row.
  std::string to;      ///< Empty for a row to be deleted.
};

/// A row that the next save will write.
struct PendingRow {
  int row;           ///< Its number in the grid; 0 while the list waits to be read again.
  RowState state;    ///< Never kUnchanged.
  std::string name;  ///< Names the row to the user: "80", "10.0.0.0 - 10.0.0.255".
  std::vector<PendingValue> values;  ///< Of a changed row, those that differ.
};

/// What a save made of a list's pending rows.
struct SaveOutcome {
  int total = 0;    ///< The rows that were pending.
  int written = 0;  ///< Every statement of the row succeeded.
  int failed = 0;
  bool stopped = false;  ///< The rows that were not reached are still pending.
};

/// A row that could not be saved, and why.
struct SaveFailure {
  std::string name;  ///< Of the row, or of the setting, as it is shown to the user.
  std::string message;
};

enum class ConflictKind {
  kChanged,  ///< The stored row no longer has the values that were loaded.
  kGone,     ///< The changed row is not stored any more.
  kTaken,    ///< The key of a new row is stored by now.
  kNested,   ///< A new group would be nested with one that somebody else has added.
};

/// A pending row of which the database holds something else than when it was loaded.
struct Conflict {
  ConflictKind kind;
  int row;  ///< In the grid.
  std::string name;
  std::string loaded;       ///< The values as they were loaded; empty for a new row.
  std::string theirs;       ///< As they are stored now; empty for a row that is gone.
  std::string ours;         ///< As they would be written; "to be deleted" for a row to be deleted.
  GridRowData stored;       ///< Of the stored row, with its check state as the loaded one.
  std::string stored_text;  ///< The stored row's editable text.
};

enum class ConflictAnswer {
  kOverwrite,   ///< Write ours: a row that is gone becomes new, a taken key changed.
  kKeepTheirs,  ///< Take the stored rows into the list.
  kCancel,      ///< Write nothing; every edit stays.
};

/// A pending row that was set aside while the list is read again.
struct KeptRow {
  std::string key;
  std::string name;
  RowState state;
  CheckState check;
  std::vector<std::string> texts;  ///< By column.
  GridRowData data;
  std::string loaded_text;
  bool outcome_unknown = false;  ///< Its statement, the only one of the row, may have been run.
};

}  // namespace quillan
