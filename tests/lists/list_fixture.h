#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "lists/address_group_list.h"
#include "support/program_folder.h"

namespace quillan::test {

/// What a list works with: an empty suite database whose statements are written down, a scripted
/// user and window, a clock that stands.
class ListTest : public ProgramTest {
 protected:
  ListServices Services() { return {program_.database, host_, messages_, clock_, locale_}; }

  static void Press(CheckableList& list, std::string_view name) {
    for (const ListCommand& command : list.Commands()) {
      if (command.name == name) return command.run();
    }
    FAIL() << "no button " << name;
  }
  static void Select(CheckableList& list, std::initializer_list<int> rows) {
    list.Table().SelectOnly(*rows.begin(), 1);
    for (const int row : rows) list.Table().SetSelected(row, row, true);
  }
  /// Types `text` into a cell, if the list lets it be edited.
  static bool Edit(CheckableList& list, int row, int column, std::string_view text) {
    if (!list.OnBeforeEdit(row, column)) return false;
    list.Table().SetText(row, column, text);
    list.OnAfterEdit(row, column);
    return true;
  }
  /// The data rows: box ("x", "-" or nothing), texts, state, each joined by "|".
  static std::vector<std::string> Rows(const CheckableList& list) {
    const Grid& grid = list.Table();
    std::vector<std::string> rows;
    for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
      const CheckState box = grid.Check(row, 0);
      std::string text = box == CheckState::kChecked ? "x" : box == CheckState::kNone ? "" : "-";
      for (int column = 1; column < grid.Columns(); ++column) {
        text += "|" + std::string(grid.Text(row, column));
      }
      rows.push_back(text + "|" + std::to_string(grid.RowData(row).state));
    }
    return rows;
  }
  /// The statements of a save; `queries` adds what it asks.
  std::vector<std::string> Saved(CheckableList& list, bool queries = false) {
    script_.statements.clear();
    list.Sync();
    std::vector<std::string> statements;
    for (const std::string& statement : script_.statements) {
      if (queries || !statement.starts_with("Select")) statements.push_back(statement);
    }
    return statements;
  }
  void TakeDatabaseAway() {
    program_.database.CloseMainDatabase();
    std::filesystem::rename(program_.suite.path(), program_.folder / "away.db");
  }

  FakeListHost host_;
};

/// The list of address groups, whose user enters `entered_` as a new group.
class GroupListTest : public ListTest {
 protected:
  Settings settings_{registry_, program_.database, desktop_, clock_, locale_};
  std::optional<NewGroup> entered_;
  AddressGroupList list_{Services(), settings_, [this](const Grid&) { return entered_; }};
};

// Addresses are told by their distance from 10.0.0.0.
inline std::string Dotted(int address) {
  return "10." + std::to_string(address / 65536) + "." + std::to_string(address / 256 % 256) + "." +
         std::to_string(address % 256);
}
inline std::string Packed(int address) {
  return std::to_string(10000000000 + address / 65536 * std::int64_t{1000000} +
                        address / 256 % 256 * std::int64_t{1000} + address % 256);
}

/// A stored address group.
struct Group {
  int id;
  int start;
  int end;
  bool enabled;
};

/// Stores groups and does to their list what a user would; a group is named by its first address.
class GroupEditsTest : public GroupListTest {
 protected:
  void Store(const std::vector<Group>& groups) {
    for (const Group& group : groups) {
      program_.suite.Run("Insert Into IPAddressGroups Values (" + std::to_string(group.id) + "," +
                         Packed(group.start) + "," + Packed(group.end) + ",'name',0," +
                         (group.enabled ? "1)" : "0)"));
    }
    list_.Refresh();
  }
  void Add(int start, int end) {
    entered_ = NewGroup{Dotted(start), Dotted(end), "new"};
    Press(list_, "cmdAddGroup");
  }
  int RowAt(int start) const {
    int row = 1;
    while (list_.Table().Text(row, 1) != Dotted(start)) ++row;
    return row;
  }
  void Toggle(int start) { list_.OnClick(RowAt(start), 0); }
  void Rename(int start) { Edit(list_, RowAt(start), 3, "renamed"); }
  void Delete(int start) {
    Select(list_, {RowAt(start)});
    Press(list_, "cmdDeleteGroup");
    messages_.messages.clear();
  }
  void SaveAndLoad() {
    list_.Sync();
    list_.Refresh();
  }
};

}  // namespace quillan::test
