#pragma once

#include <QLabel>
#include <QScrollBar>

#include "dialog/settings_page.h"
#include "platform/text/user_locale.h"
#include "settings/settings.h"

namespace quillan {

/// How long flow statistics are retained, in days.
class RetentionPage final : public SettingsPage {
  Q_OBJECT

 public:
  RetentionPage(Settings& settings, const text::UserLocale& locale, QWidget* parent);

  bool Reachable() const override { return false; }
  QWidget* FirstControl() const override { return days_; }
  void LoadOptions() override;
  SaveResult SaveOptions() override;

 private:
  void ShowTexts(int days);

  Settings& settings_;
  const text::UserLocale& locale_;
  QScrollBar* days_;
  QLabel* retain_data_;
  QLabel* description_;
};

}  // namespace quillan
