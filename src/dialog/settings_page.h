#pragma once

#include <vector>

#include <QWidget>

#include "lists/checkable_list.h"

namespace quillan {

/// How a save, or one page's part of it, ended.
enum class SaveResult {
  kDone,
  kCancelled,  ///< By the user, at a question.
  kFailed,     ///< The user has been told why.
};

/// A tab of the settings dialog. It owns what it shows. It takes part in those phases of a load and
/// of a save (see `PageSequence`) that concern it.
class SettingsPage : public QWidget {
  Q_OBJECT

 public:
  /// `caption` is the tab's; a doubled ampersand in it shows as one.
  SettingsPage(const char* name, const QString& caption, QWidget* parent)
      : QWidget(parent), caption_(caption) {
    setObjectName(QLatin1String(name));
    setAccessibleName(Title());
  }

  const QString& Caption() const { return caption_; }
  /// The caption as it is shown.
  QString Title() const {
    return QString(caption_).replace(QLatin1String("&&"), QLatin1String("&"));
  }
  /// Whether the user can reach the page. It loads and saves in any case.
  virtual bool Reachable() const { return true; }
  /// Whether the dialog opens with this page.
  virtual bool OpensFirst() const { return false; }
  /// What the focus goes to when the tab is selected.
  virtual QWidget* FirstControl() const = 0;

  // Options, which are kept in the settings.

  /// Shows the options that the settings hold.
  virtual void LoadOptions() {}
  /// Puts the options that are shown into the settings; anything but kDone stops the save.
  virtual SaveResult SaveOptions() { return SaveResult::kDone; }

  // Rows, which are kept in a table of the database.

  /// The list that the page shows, if any.
  virtual CheckableList* List() const { return nullptr; }
  /// What the list's rows are called: "ports".
  virtual QString RowsName() const { return {}; }
  /// Finishes the edit of a cell, if one is open.
  virtual void CommitEdit() {}
  /// Shows the rows of the list, or in their place why they could not be read.
  virtual void ShowRows(const QString& /*error*/) {}

  // Changes that are not saved.

  virtual int PendingCount() const { return 0; }
  virtual std::vector<PendingRow> Pending() const { return {}; }
  /// Undoes the changes of rows, in ascending order.
  virtual void Revert(const std::vector<int>& /*rows*/) {}
  /// Makes the row the current one.
  virtual void GoTo(int /*row*/) {}
  /// What else is to be known about a row before it is saved.
  virtual QString RowNote(int /*row*/) const { return {}; }

 signals:
  /// The page shows something that the user is to correct.
  void NeedsAttention();
  /// `PendingCount` may have changed.
  void PendingChanged();
  /// The user wants the rows to be read again.
  void RetryRequested();

 private:
  QString caption_;
};

}  // namespace quillan
