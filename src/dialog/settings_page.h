#pragma once

#include <QWidget>

namespace quillan {

/// How a save, or one page's part of it, ended.
enum class SaveResult {
  kDone,
  kCancelled,  ///< By the user, at a question.
  kFailed,     ///< The user has been told why.
};

/// A tab of the settings dialog. It owns what it shows.
///
/// The dialog loads and saves in phases. Each phase goes over all pages, in the order of their
/// tabs, before the next one begins; a page takes part in those that concern it.
class SettingsPage : public QWidget {
  Q_OBJECT

 public:
  /// `caption` is the tab's; a doubled ampersand in it shows as one.
  SettingsPage(const char* name, const QString& caption, QWidget* parent)
      : QWidget(parent), caption_(caption) {
    setObjectName(QLatin1String(name));
  }

  const QString& Caption() const { return caption_; }
  /// Whether the user can reach the page. It loads and saves in any case.
  virtual bool Reachable() const { return true; }
  /// Whether the dialog opens with this page.
  virtual bool OpensFirst() const { return false; }
  /// What the focus goes to when the tab is selected.
  virtual QWidget* FirstControl() const = 0;

  /// The number of changes that a save would write.
  virtual int PendingCount() const { return 0; }

  // The phases of a load.

  /// Shows the options that the settings hold.
  virtual void LoadOptions() {}
  /// Shows the rows that the database holds.
  virtual void LoadRows() {}

  // The phases of a save.

  /// Finishes the edit of a cell, if one is open.
  virtual void CommitEdit() {}
  /// Puts the options that are shown into the settings; anything but kDone stops the save.
  virtual SaveResult SaveOptions() { return SaveResult::kDone; }
  /// Writes the user's changes of rows to the database. `ado::Error` stops the save.
  virtual void SaveRows() {}

 signals:
  /// The page shows something that the user is to correct.
  void NeedsAttention();

 private:
  QString caption_;
};

}  // namespace quillan
