#pragma once

#include <optional>

#include <QDialog>
#include <QLineEdit>

#include "lists/new_group.h"
#include "platform/message_box.h"

namespace quillan {

/// Asks for a new address group, and refuses addresses that are none and ranges that would nest
/// with another group.
class NewAddrGroupForm final : public QDialog {
  Q_OBJECT

 public:
  /// Shows the dialog modally over `parent`; `grid`, the rows of the calling list, may be null.
  /// Nothing when the user cancels.
  static std::optional<NewGroup> AddNewAddressGroup(const Grid* grid, FlowDatabase& database,
                                                    MessageBox& messages, QWidget* parent);

 private:
  NewAddrGroupForm(const Grid* grid, FlowDatabase& database, MessageBox& messages, QWidget* parent);
  void OnOk();

  const Grid* grid_;
  FlowDatabase& database_;
  MessageBox& messages_;
  QLineEdit* start_;
  QLineEdit* end_;
  QLineEdit* description_;
};

}  // namespace quillan
