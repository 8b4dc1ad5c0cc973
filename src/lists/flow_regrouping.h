#pragma once

#include <cstdint>
#include <optional>

#include "db/flow_database.h"
#include "platform/message_box.h"

namespace quillan {

/// One row of the address-group list, as the regrouping sees it.
struct GroupRange {
  double start;  ///< Packed address (see IPAddressToSortValue); at most `end`.
  double end;
  bool enabled;
  std::optional<std::int32_t> id;  ///< Nothing while the group's identifier is not known.
};

/// Whether two stored values are a range of addresses: neither Null, each exactly an address, in
/// order. A group without one is kept, but no endpoint belongs to it.
bool HoldsRange(const ado::Value& start, const ado::Value& end);

/// Brings the group of every endpoint already seen up to date while the list saves its rows: of the
/// enabled groups that hold an address the one with the fewest addresses wins, of equally large
/// ones that with the largest identifier. One object serves one save: once a row overlaps another
/// group, every later row of the save is regrouped in full. A statement or query that fails is
/// passed over.
class FlowRegrouping {
 public:
  FlowRegrouping(FlowDatabase& database, MessageBox& messages)
      : database_(database), messages_(messages) {}

  // Before the row's own statement. `counted`: a group to be disabled may still be enabled in the
  // table. `stored`: the group to be deleted still is.
  void BeforeChange(const GroupRange& group, bool counted = true);
  void BeforeDelete(const GroupRange& group, bool stored);
  void BeforeInsert(const GroupRange& group);

  // After the row's own statement. An inserted group's `id` is that under which it was stored.
  void AfterChange(const GroupRange& group);
  void AfterDelete(const GroupRange& group);
  void AfterInsert(const GroupRange& group);

 private:
  int CountOverlappingGroups(const GroupRange& range);
  void WarnLargeRegroup(const GroupRange& range, bool overlapping);
  void RegroupRange(const GroupRange& range);

  void NoteOverlap(const GroupRange& group, int groups_of_its_own);
  // Gives every endpoint in the range to the group `id`.
  void AssignRange(const GroupRange& range, std::int32_t id);

  FlowDatabase& database_;
  MessageBox& messages_;
  bool overlap_seen_ = false;
};

}  // namespace quillan
