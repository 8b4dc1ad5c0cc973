#pragma once

#include <array>

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include "dialog/settings_page.h"
#include "platform/message_box.h"
#include "settings/settings.h"

namespace quillan {

/// How older statistics are grouped into coarser intervals, in three levels of which the first
/// cannot be switched off.
class CollapsePage final : public SettingsPage {
  Q_OBJECT

 public:
  CollapsePage(Settings& settings, MessageBox& messages, QWidget* parent);

  bool Reachable() const override { return false; }
  QWidget* FirstControl() const override { return Level(1).enable; }
  void LoadOptions() override;
  /// Asks first about a level that is switched off, whereby the user may cancel the save.
  SaveResult SaveOptions() override;

 private:
  struct LevelControls {
    QCheckBox* enable;
    QFrame* frame;
    QScrollBar* trigger;
    QLabel* text;
  };
  static constexpr int kLevels = 3;

  const LevelControls& Level(int level) const { return levels_[static_cast<size_t>(level - 1)]; }
  void AddLevel(int level, QWidget* parent, QVBoxLayout* layout);
  void ShowText(int level, int trigger);
  void OnEnableToggled(int level, bool checked);
  void RestoreDefaults();
  bool ConfirmSave();

  Settings& settings_;
  MessageBox& messages_;
  std::array<LevelControls, kLevels> levels_{};
};

}  // namespace quillan
