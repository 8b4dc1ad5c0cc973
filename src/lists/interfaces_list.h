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

 protected:
  void WriteChanged(int row) override;
  // Rows can be neither added nor deleted here.
  void WriteNew(int /*row*/) override {}
  void WriteDeleted(int /*row*/) override {}

 private:
  void SetAllChecked(bool checked);
};

}  // namespace quillan
