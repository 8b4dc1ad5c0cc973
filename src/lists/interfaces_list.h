#pragma once

#include <functional>
#include <string_view>

#include "lists/checkable_list.h"

namespace quillan {

/// One row of the list, with views that are valid during the call.
struct InterfaceRow {
  bool monitored;
  std::string_view node;
  std::string_view name;
  std::string_view id;
};

/// Reads the list's rows without keeping them, and stops where `on_row` returns false. False, with
/// the reason in the session's `LastError`, if they cannot be read.
bool ForEachInterface(FlowDatabase& database,
                      const std::function<bool(const InterfaceRow& row)>& on_row);

/// Where the rows of the list hold the node's name and the interface's identifier.
inline constexpr int kSourceNodeColumn = 1;
inline constexpr int kSourceIdColumn = 3;

/// Every interface of every monitored node; a checked one is a NetFlow source, with a row in the
/// table NetFlowSources. A failing statement stops `Sync` with `ado::Error` at that row, the rows
/// before it written.
class InterfacesList final : public CheckableList {
 public:
  explicit InterfacesList(const ListServices& services);

  std::vector<ListCommand> Commands() override;

  std::string Key(const Grid& grid, int row) const override;
  std::string RowName(const Grid& grid, int row) const override;

 protected:
  std::string Statement(int row) const override;

 private:
  void SetAllChecked(bool checked);
};

}  // namespace quillan
