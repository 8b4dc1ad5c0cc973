#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lists/list_fixture.h"

namespace quillan::test {

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
