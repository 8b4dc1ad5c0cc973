#pragma once

#include <QTabWidget>
#include <QTimer>

#include "dialog/settings_page.h"

namespace quillan {

/// The tabs of the settings dialog. A page that is selected gives its first control the focus; a
/// page with changes that are not saved has a dot as the icon of its tab.
class PageTabs final : public QTabWidget {
  Q_OBJECT

 public:
  explicit PageTabs(QWidget* parent);

  /// Adds a tab right of the others.
  void AddPage(SettingsPage* page);
  /// Gives the focus to the first control of the current page.
  void FocusPage();
  /// Selects the next tab, or with -1 the previous one, of those that can be reached.
  void SelectNext(int step);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  // The dot has the colours of the desktop.
  void changeEvent(QEvent* event) override;

 private:
  void ShowPending(int tab);
  void TellFocus();

  QTimer focus_;  // Until Qt has made its own report.
};

}  // namespace quillan
