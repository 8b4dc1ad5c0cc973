#pragma once

#include <QLabel>
#include <QLineEdit>

#include "dialog/settings_page.h"
#include "platform/message_box.h"
#include "settings/settings.h"

namespace quillan {

/// The UDP port on which this computer's NetFlow receiver listens.
class ServicePage final : public SettingsPage {
  Q_OBJECT

 public:
  ServicePage(Settings& settings, MessageBox& messages, QWidget* parent);

  bool OpensFirst() const override { return true; }
  QWidget* FirstControl() const override { return listen_port_; }
  int PendingCount() const override { return listen_port_->text() == loaded_text_ ? 0 : 1; }
  std::vector<PendingRow> Pending() const override;
  void Revert(const std::vector<int>& rows) override;
  void LoadOptions() override;
  /// Takes the number that the text begins with; refuses one that does not fit 32 bits.
  SaveResult SaveOptions() override;

 private:
  void ShowNote();

  Settings& settings_;
  MessageBox& messages_;
  QLineEdit* listen_port_;
  QLabel* note_;
  QString loaded_text_;
};

}  // namespace quillan
