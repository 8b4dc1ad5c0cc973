#pragma once

#include <optional>

#include <QDialog>
#include <QLineEdit>

#include "lists/new_port.h"
#include "platform/message_box.h"

namespace quillan {

/// Asks for a new port and its description, and refuses a number that cannot be added.
class NewPortForm final : public QDialog {
  Q_OBJECT

 public:
  /// Shows the dialog modally over `parent`; nothing when the user cancels.
  static std::optional<NewPort> AddNewPort(FlowDatabase& database, MessageBox& messages,
                                           QWidget* parent);

 private:
  NewPortForm(FlowDatabase& database, MessageBox& messages, QWidget* parent);
  void OnOk();

  FlowDatabase& database_;
  MessageBox& messages_;
  QLineEdit* port_number_;
  QLineEdit* description_;
  std::optional<NewPort> accepted_;
};

}  // namespace quillan
