#pragma once

#include <array>

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWidget>

#include "platform/message_box.h"
#include "settings/settings.h"

namespace quillan {

/// How older statistics are grouped into coarser intervals, in three levels of which the first
/// cannot be switched off.
class CollapsePage final : public QWidget {
  Q_OBJECT

 public:
  /// `settings` tell the interval lengths that the texts name.
  CollapsePage(const Settings& settings, MessageBox& messages, QWidget* parent);

  /// Shows what `settings` hold, and puts what is shown into them.
  void Load(const Settings& settings);
  void Save(Settings& settings) const;

  /// Asks once about the first level that is switched off: false when the user cancels the save.
  bool ConfirmSave();

  /// What the page gives the focus to.
  QWidget* FirstControl() const { return Level(1).enable; }

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

  const Settings& settings_;
  MessageBox& messages_;
  std::array<LevelControls, kLevels> levels_{};
};

}  // namespace quillan
