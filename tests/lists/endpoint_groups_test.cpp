#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "lists/group_edits.h"

namespace quillan {
namespace {

using test::Dotted;
using test::Group;
using test::Packed;

int Distance(std::string_view dotted) {
  int parts[3] = {};
  EXPECT_EQ(sscanf(std::string(dotted).c_str(), "10.%d.%d.%d", &parts[0], &parts[1], &parts[2]), 3);
  return (parts[0] * 256 + parts[1]) * 256 + parts[2];
}

/// Endpoints and what becomes of them, beside a plain model of the rule: of the enabled groups that
/// hold an address the one with the fewest addresses gets it, of equal ones the largest identifier.
class EndpointsTest : public test::GroupEditsTest {
 protected:
  void Begin(const std::vector<Group>& groups, int endpoints, int step = 1) {
    groups_ = groups;
    Store(groups);
    std::string rows = "Begin;";
    for (int i = 0; i < endpoints; ++i) {
      endpoints_.push_back({i * step, Winner(i * step)});
      rows += "Insert Into FlowCorrelation Values (''," + Packed(i * step) + ",NULL," +
              std::to_string(endpoints_.back().group) + ");";
    }
    program_.suite.Run(rows + "Commit");
    for (const Group& group : groups) next_id_ = std::max(next_id_, group.id + 1);
  }

  /// The group that gets the address, of all groups or of those that overlap a range; 0: none.
  int Winner(int address, int from = 0, int to = 1 << 24) const {
    const Group* winner = nullptr;
    for (const Group& group : groups_) {
      if (group.Overlaps(address, address) && group.Overlaps(from, to) &&
          (winner == nullptr || group.Beats(*winner))) {
        winner = &group;
      }
    }
    return winner != nullptr ? winner->id : 0;
  }

  /// Saves the list and compares every endpoint with what `Expect` says of the saved rows.
  void SaveAndCompare() {
    overlap_seen_ = false;
    for (int row = 1; row < list_.Table().Rows(); ++row) Expect(row);
    SaveAndLoad();
    const auto stored =
        program_.suite.Rows("Select IPAddressGroupID From FlowCorrelation Order By IPAddressSort");
    ASSERT_EQ(stored.size(), endpoints_.size());
    for (size_t i = 0; i < stored.size(); ++i) {
      const Endpoint& endpoint = endpoints_[i];
      ASSERT_EQ(stored[i], std::to_string(endpoint.group)) << Dotted(endpoint.address);
      ++(endpoint.group == Winner(endpoint.address) ? by_rule_ : deviating_);
    }
  }

  /// A saved row leaves each address of its range with its winner and touches no other address, but
  /// for the two deviations, which have tests of their own below.
  void Expect(int row) {
    const Grid& grid = list_.Table();
    const auto state = static_cast<RowState>(grid.RowData(row).state);
    if (state == RowState::kUnchanged) return;
    const int start = Distance(grid.Text(row, 1));
    const int end = Distance(grid.Text(row, 2));
    const bool checked = grid.Check(row, 0) == CheckState::kChecked;
    const auto stored = std::ranges::find_if(
        groups_, [&](const Group& group) { return group.id == grid.RowData(row).id; });
    const int id = stored != groups_.end() ? stored->id : -1;
    overlap_seen_ |= std::ranges::count_if(groups_, [&](const Group& group) {
                       return group.Overlaps(start, end);
                     }) > (checked || state == RowState::kNew ? 0 : 1);
    if (state == RowState::kNew) {
      groups_.push_back({next_id_++, start, end, checked});
    } else if (id < 0) {
      if (checked) return;  // Neither stored nor known.
    } else if (state == RowState::kDeleted) {
      groups_.erase(stored);
    } else {
      stored->enabled = checked;
    }
    for (auto& [address, group] : endpoints_) {
      const bool within = start <= address && address <= end;
      if (overlap_seen_) {
        // Outside the range only the neighbours compete: a deviation where another one would win.
        const int winner = Winner(address, start, end);
        if (within || winner != 0) group = winner;
      } else if (state == RowState::kDeleted) {
        if (group == id) group = 0;
      } else if (within) {
        // An unchecked row clears its range: a deviation where it was not enabled before.
        group = checked ? Winner(address) : 0;
      }
    }
  }

  std::string GroupOf(int address) {
    return program_.suite
        .Rows("Select IPAddressGroupID From FlowCorrelation Where IPAddressSort=" + Packed(address))
        .at(0);
  }

  struct Endpoint {
    int address;
    int group;
  };
  std::vector<Group> groups_;
  std::vector<Endpoint> endpoints_;
  int next_id_ = 1;
  bool overlap_seen_ = false;
  int by_rule_ = 0;    // Compared endpoints that the rule gives the same group,
  int deviating_ = 0;  // and the others.
};

TEST_F(EndpointsTest, GeneratedEditsLeaveEveryEndpointWithItsGroup) {
  constexpr int kEndpoints = 20000;
  constexpr int kSaves = 50;
  Begin({}, kEndpoints);
  std::mt19937 random(20070601);  // The same sequence everywhere: no distribution is used.
  const auto pick = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  const auto add = [&] {  // Where the range nests with no other.
    const int start = pick(kEndpoints);
    const int end = start + 1500 + pick(1500);
    for (int row = 1; row < list_.Table().Rows(); ++row) {
      const int from = Distance(list_.Table().Text(row, 1)) - start;
      const int to = Distance(list_.Table().Text(row, 2)) - end;
      if (from == 0 || to == 0 || (from < 0) != (to < 0)) return;
    }
    Add(start, end);
    if (pick(5) == 0) list_.OnKeyPress('-');
  };
  for (int save = 0; save < kSaves; ++save) {
    for (int edits = 1 + pick(4); edits > 0; --edits) {
      const int rows = list_.Table().Rows() - 1;
      const int start = rows > 0 ? Distance(list_.Table().Text(1 + pick(rows), 1)) : 0;
      const int edit = rows < 12 ? 9 : pick(10);
      if (edit == 0) list_.Table().RequestSort(1);
      if (edit == 1) Delete(start);
      if (edit == 2 || edit == 3) Rename(start);
      if (edit > 3 && edit < 7) Toggle(start);
      if (edit >= 7) add();
    }
    ASSERT_NO_FATAL_FAILURE(SaveAndCompare()) << "save " << save;
  }
  EXPECT_GT(by_rule_, kSaves * kEndpoints * 9 / 10);
  EXPECT_GT(deviating_, 0);
}

// Where the statements leave an address elsewhere than the rule would.

TEST_F(EndpointsTest, ADisabledGroupThatIsSavedClearsWhatItSharesWithOneGroup) {
  Begin({{1, 0, 99, true}, {2, 50, 149, false}}, 300);
  Rename(50);  // The one enabled group that it counts is not itself.
  SaveAndCompare();
  EXPECT_EQ(GroupOf(49), "1");
  EXPECT_EQ(GroupOf(50), "0");
  EXPECT_EQ(deviating_, 50);
  Rename(0);  // Saving the other group mends it.
  SaveAndCompare();
  EXPECT_EQ(deviating_, 50);

  Add(90, 120);  // The same for a new group that was deleted and then kept unchecked.
  Delete(90);
  list_.Table().SelectOnly(RowAt(90), 1);
  list_.OnKeyPress('-');
  SaveAndCompare();
  EXPECT_EQ(GroupOf(90), "0");
  EXPECT_EQ(deviating_, 50 + 10);

  Add(95, 160);  // Beside two groups it is regrouped as it should be.
  SaveAndCompare();
  Rename(50);
  SaveAndCompare();
  EXPECT_EQ(GroupOf(50), "1");
}

TEST_F(EndpointsTest, ALargerNeighbourIsWrittenOverASmallerGroupBeyondTheSavedRange) {
  Begin({{1, 0, 299, true}, {2, 250, 449, true}, {3, 440, 469, true}}, 500);
  Rename(0);  // Regroups 1 and 2, the latter over all of its own range.
  SaveAndCompare();
  EXPECT_EQ(GroupOf(439), "2");
  EXPECT_EQ(GroupOf(440), "2");
  EXPECT_EQ(deviating_, 10);
  Rename(440);  // Saving the smaller group mends it.
  SaveAndCompare();
  EXPECT_EQ(GroupOf(440), "3");
  Delete(0);  // A deleted group's neighbour does the same.
  SaveAndCompare();
  EXPECT_EQ(deviating_, 10 + 10);
}

TEST_F(EndpointsTest, AGroupStoredWithinAnotherLeavesItsAddressesToNone) {
  Begin({{1, 0, 199, true}, {2, 50, 99, true}, {3, 120, 149, true}}, 300);
  Toggle(50);
  Delete(120);
  SaveAndLoad();
  for (const int inner : {50, 120}) {
    EXPECT_EQ(GroupOf(inner), "0");  // By the rule the outer group's.
    EXPECT_EQ(GroupOf(inner - 1), "1");
  }
  Toggle(50);  // Taking the addresses from the outer group needs no count of it.
  SaveAndLoad();
  EXPECT_EQ(GroupOf(50), "2");
}

}  // namespace
}  // namespace quillan
