#pragma once

#include <QLabel>
#include <QScrollBar>
#include <QWidget>

#include "platform/text/user_locale.h"
#include "settings/settings.h"

namespace quillan {

/// How long flow statistics are retained, in days.
class RetentionPage final : public QWidget {
  Q_OBJECT

 public:
  RetentionPage(const text::UserLocale& locale, QWidget* parent);

  /// Shows what `settings` hold, and puts what is shown into them.
  void Load(const Settings& settings);
  void Save(Settings& settings) const;

  /// What the page gives the focus to.
  QWidget* FirstControl() const { return days_; }

 private:
  void ShowTexts(int days);

  const text::UserLocale& locale_;
  QScrollBar* days_;
  QLabel* retain_data_;
  QLabel* description_;
};

}  // namespace quillan
