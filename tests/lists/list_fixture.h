#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

}  // namespace quillan::test
