#pragma once

#include "lists/checkable_list.h"

namespace quillan {

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
