#pragma once

#include <functional>
#include <optional>

#include "lists/editable_list.h"
#include "lists/new_port.h"

namespace quillan {

/// The well-known application ports by which traffic is named, over the table ServicePorts.
class PortList final : public EditableList {
 public:
  /// Asks the user for a new port; nothing when the user cancels.
  using AddNewPort = std::function<std::optional<NewPort>()>;

  PortList(const ListServices& services, AddNewPort add_new_port);

  ImportPlan PlanImport(std::string_view bytes, ImportMode mode) override;

  std::string Key(const Grid& grid, int row) const override;
  std::string RowName(const Grid& grid, int row) const override { return Key(grid, row); }

 protected:
  void Add() override;
  void OnImported() override;
  std::string Statement(int row) const override;

 private:
  AddNewPort add_new_port_;
};

}  // namespace quillan
