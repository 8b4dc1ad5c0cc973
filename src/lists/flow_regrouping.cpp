#include "lists/flow_regrouping.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "ip/ip_functions.h"
#include "ip/ip_groups.h"
#include "platform/ado/error.h"
#include "platform/program.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr double kLargeRange = 50000;
constexpr std::int32_t kNoGroup = 0;

double AddressCount(double start, double end) {
  return SortValueToAddressNumber(end) - SortValueToAddressNumber(start) + 1;
}

// Whether the value is a packed number whose four parts are 0 to 255.
bool IsAddress(const ado::Value& value) {
  if (ado::IsNull(value)) return false;
  const double number = ado::ToNumber(value);
  constexpr double kLast = 255255255255;
  if (!(number >= 0 && number <= kLast) || number != std::floor(number)) return false;
  for (auto rest = static_cast<std::int64_t>(number); rest > 0; rest /= 1000) {
    if (rest % 1000 > 255) return false;
  }
  return true;
}

}  // namespace

bool HoldsRange(const ado::Value& start, const ado::Value& end) {
  return IsAddress(start) && IsAddress(end) && ado::ToNumber(start) <= ado::ToNumber(end);
}

void FlowRegrouping::BeforeChange(const GroupRange& group, bool counted) {
  // An enabled group that changed was perhaps disabled in the table until now, so any count tells
  // of another one; a stored enabled group counts itself, and takes the overlapping path for
  // nothing.
  NoteOverlap(group, group.enabled || !counted ? 0 : 1);
}

void FlowRegrouping::BeforeDelete(const GroupRange& group, bool stored) {
  NoteOverlap(group, stored ? 1 : 0);
}

void FlowRegrouping::BeforeInsert(const GroupRange& group) { NoteOverlap(group, 0); }

void FlowRegrouping::AfterChange(const GroupRange& group) {
  if (group.enabled && !group.id) return;
  WarnLargeRegroup(group, overlap_seen_);
  if (!group.enabled) AssignRange(group, kNoGroup);
  if (overlap_seen_) {
    RegroupRange(group);
  } else if (group.enabled) {
    AssignRange(group, *group.id);
  }
}

void FlowRegrouping::AfterDelete(const GroupRange& group) {
  WarnLargeRegroup(group, overlap_seen_);
  database_.Execute("Update FlowCorrelation Set IPAddressGroupID = 0 WHERE IPAddressGroupID = " +
                    std::to_string(group.id.value_or(kNoGroup)));
  if (overlap_seen_) RegroupRange(group);
}

void FlowRegrouping::AfterInsert(const GroupRange& group) {
  WarnLargeRegroup(group, overlap_seen_);
  if (overlap_seen_) {
    RegroupRange(group);
  } else {
    AssignRange(group, group.enabled ? group.id.value_or(kNoGroup) : kNoGroup);
  }
}

void FlowRegrouping::NoteOverlap(const GroupRange& group, int groups_of_its_own) {
  if (CountOverlappingGroups(group) > groups_of_its_own) overlap_seen_ = true;
}

int FlowRegrouping::CountOverlappingGroups(const GroupRange& range) {
  const std::string start = text::FormatDigits(range.start);
  const std::string end = text::FormatDigits(range.end);
  const auto rows = database_.OpenRecordset(
      "Select count(*) as IPCount From IPAddressGroups Where ((IPRangeStart >=" + start +
      " and IPRangeStart <=" + end + ") OR (IPRangeEnd >=" + start + " and IPRangeEnd <=" + end +
      ")) and ENABLED=1");
  if (!rows || rows->Eof()) return 0;
  return static_cast<int>(ado::ToWhole(rows->Fields("IPCount").Value()));
}

void FlowRegrouping::WarnLargeRegroup(const GroupRange& range, bool overlapping) {
  if (AddressCount(range.start, range.end) <= kLargeRange) return;
  messages_.Show(
      overlapping
          ? "You've selected a group operation that impacts a significant number of IP "
            "addresses\r\n"
            "that are in overlapping groups. Please be patient as these IP addresses are assigned "
            "to the proper groups."
          : "You've selected a group operation that impacts a significant number of IP "
            "addresses.\r\nPlease be patient as these IP addresses are assigned to the proper "
            "group.",
      kDisplayName, MessageButtons::kOk, MessageIcon::kNone);
}

void FlowRegrouping::AssignRange(const GroupRange& range, std::int32_t id) {
  database_.Execute("Update FlowCorrelation Set IPAddressGroupID=" + std::to_string(id) +
                    " WHERE IPAddressSort >=" + text::FormatDigits(range.start) +
                    " and IPAddressSort <=" + text::FormatDigits(range.end));
}

void FlowRegrouping::RegroupRange(const GroupRange& range) {
  const std::string between =
      " between " + text::FormatDigits(range.start) + " AND " + text::FormatDigits(range.end);
  const auto rows = database_.OpenRecordset(
      "Select IPAddressGroupID, IPRangeStart as dbStartIPRange, IPRangeEnd as dbEndIPRange from "
      "IPAddressGroups Where ((IPRangeStart" +
      between + ") OR  (IPRangeEnd" + between +
      ")) AND Enabled = 1 Group by IPAddressGroupID, IPRangeStart, IPRangeEnd "
      "Order by IPAddressGroupID, IPRangeStart, IPRangeEnd ");
  if (!rows) return;
  IPGroups groups;
  for (; !rows->Eof(); rows->MoveNext()) {
    const ado::Value start = rows->Fields("dbStartIPRange").Value();
    const ado::Value end = rows->Fields("dbEndIPRange").Value();
    if (!HoldsRange(start, end)) continue;
    const auto group = std::make_shared<IPGroup>();
    group->GroupID =
        static_cast<std::int32_t>(ado::ToWhole(rows->Fields("IPAddressGroupID").Value()));
    group->StartRange = ado::ToNumber(start);
    group->EndRange = ado::ToNumber(end);
    group->RangeValue = AddressCount(group->StartRange, group->EndRange);
    try {
      groups.Add(group);
    } catch (const std::invalid_argument&) {
      // A second row of the same identifier is passed over.
    }
  }
  for (const auto& group : groups) {
    database_.Execute(
        "Update FlowCorrelation SET IPAddressGroupID=" + std::to_string(group->GroupID) +
        " WHERE IPAddressSort >= " + text::FormatDigits(group->StartRange) +
        " AND IPAddressSort <= " + text::FormatDigits(group->EndRange));
  }
}

}  // namespace quillan
