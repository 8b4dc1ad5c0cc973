#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "lists/editable_list.h"
#include "lists/flow_regrouping.h"
#include "lists/new_group.h"
#include "settings/settings.h"

namespace quillan {

/// The named IPv4 ranges into which endpoints are classified, over the table IPAddressGroups.
/// Saving also reassigns the endpoints already seen, and leaves the grid without any row.
class AddressGroupList final : public EditableList {
 public:
  /// Asks the user for a new group, which may not nest with a row of the grid; nothing when the
  /// user cancels.
  using AddNewAddressGroup = std::function<std::optional<NewGroup>(const Grid& grid)>;

  /// `settings` keeps the direction of the address sort (SortToggle).
  AddressGroupList(const ListServices& services, Settings& settings,
                   AddNewAddressGroup add_new_group);

  /// The address columns sort by value, in a direction that alternates with every request and
  /// serves both of them.
  bool OnSortRequest(int column) override;

  ImportPlan PlanImport(std::string_view bytes, ImportMode mode) override;

  /// Which group gets the address that the filter looks for, and why.
  std::string FilterNote(const ListFilter& filter, bool ask_database) override;

  std::string Key(const Grid& grid, int row) const override;
  std::string RowName(const Grid& grid, int row) const override;
  /// How many endpoints have been seen in the row's range; nothing if it has none or if the
  /// database cannot be read.
  std::optional<std::int64_t> CountEndpoints(int row) const;
  std::string RowNote(int row) const override;

 protected:
  void Add() override;
  void OnRowLoaded(ado::Recordset& rows, Grid& grid, int row) override;
  void OnSyncBegins() override;
  void OnSyncEnds() override;
  std::string Statement(int row) const override;
  void Write(int row) override;
  bool IsNested(int row, const Grid& stored, int stored_row) const override;

 private:
  static GroupRange RangeOf(const Grid& grid, int row);
  std::optional<std::int32_t> StoredIdentifier(int row) const;
  bool HasRange(int row) const { return Table().RowData(row).has_range; }
  std::string Condition(int row) const;

  Settings& settings_;
  AddNewAddressGroup add_new_group_;
  std::optional<FlowRegrouping> regrouping_;  // While a save runs.
};

}  // namespace quillan
