#pragma once

#include <utility>
#include <vector>

#include <QLabel>

#include "dialog/settings_page.h"
#include "dialog/table_dialog.h"

namespace quillan {

/// Lists every change that is not saved, over all pages, and reverts those that are selected.
class ReviewForm final : public TableDialog {
  Q_OBJECT

 public:
  /// The pages outlive the window.
  ReviewForm(std::vector<SettingsPage*> pages, QWidget* parent);

  /// The page and the row that the user wants to go to; null when there is none.
  std::pair<SettingsPage*, int> Target() const { return target_; }

 private:
  void Refresh();
  void ShowSelected();
  void Revert();
  void GoToRow();

  std::vector<SettingsPage*> pages_;
  std::vector<std::pair<SettingsPage*, int>> rows_;  // Of each line of the table.
  std::pair<SettingsPage*, int> target_{nullptr, 0};
  QPushButton* revert_;
  QPushButton* go_;
  QLabel* note_;
};

}  // namespace quillan
