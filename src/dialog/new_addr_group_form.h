#pragma once

#include "dialog/entry_form.h"
#include "lists/new_group.h"

namespace quillan {

/// Asks for a new address group, and refuses invalid addresses and ranges that would nest with
/// another group.
class NewAddrGroupForm final : public EntryForm {
  Q_OBJECT

 public:
  /// Shows the dialog modally over `parent`; `grid`, the rows of the calling list, may be null.
  /// Nothing when the user cancels.
  static std::optional<NewGroup> AddNewAddressGroup(const Grid* grid, FlowDatabase& database,
                                                    MessageBox& messages, QWidget* parent);

 private:
  NewAddrGroupForm(const Grid* grid, FlowDatabase& database, MessageBox& messages, QWidget* parent);
  std::optional<Refusal> Refuse() override;

  const Grid* grid_;
  FlowDatabase& database_;
  QLineEdit* start_;
  QLineEdit* end_;
  QLineEdit* description_;
};

}  // namespace quillan
