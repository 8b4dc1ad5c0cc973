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

 protected:
  void Add() override;
  void OnImported() override;
  void WriteChanged(int row) override;
  void WriteNew(int row) override;
  void WriteDeleted(int row) override;

 private:
  AddNewPort add_new_port_;
};

}  // namespace quillan
