#pragma once

#include <QLineEdit>
#include <QWidget>

#include "settings/settings.h"

namespace quillan {

/// The UDP port on which this computer's NetFlow receiver listens.
class ServicePage final : public QWidget {
  Q_OBJECT

 public:
  explicit ServicePage(QWidget* parent);

  /// Shows the port that `settings` hold.
  void Load(const Settings& settings);
  /// Puts the number that the text begins with into `settings`. Throws std::out_of_range with a
  /// text for the user when it does not fit 32 bits.
  void Save(Settings& settings) const;

  QLineEdit* ListenPort() const { return listen_port_; }

 private:
  QLineEdit* listen_port_;
};

}  // namespace quillan
