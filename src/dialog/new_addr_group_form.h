#pragma once

#include "dialog/entry_form.h"
#include "lists/new_group.h"

namespace quillan {

/// Asks for a new address group, and refuses invalid addresses and ranges that would nest with
/// another group. A range in the start box, "10.0.0.0/8" or "10.0.0.0-10.0.3.255", fills both
/// boxes when the user leaves the box or presses OK.
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
  void ShowRange(const QString& note);
  // Shows the range that is being typed into the start box.
  void OnStartChanged();
  // Replaces a range in the start box by its two addresses.
  void TakeRange();

  const Grid* grid_;
  FlowDatabase& database_;
  QLineEdit* start_;
  QLineEdit* end_;
  QLabel* range_note_;
  QLineEdit* description_;
};

}  // namespace quillan
