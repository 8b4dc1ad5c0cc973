#pragma once

#include "dialog/entry_form.h"
#include "lists/new_port.h"

namespace quillan {

/// Asks for a new port and its description, and refuses a number that cannot be added.
class NewPortForm final : public EntryForm {
  Q_OBJECT

 public:
  /// Shows the dialog modally over `parent`; nothing when the user cancels.
  static std::optional<NewPort> AddNewPort(FlowDatabase& database, MessageBox& messages,
                                           QWidget* parent);

 private:
  NewPortForm(FlowDatabase& database, MessageBox& messages, QWidget* parent);
  std::optional<Refusal> Refuse() override;

  FlowDatabase& database_;
  QLineEdit* port_number_;
  QLineEdit* description_;
  std::optional<NewPort> accepted_;
};

}  // namespace quillan
