#include <array>
#include <set>

#include "ip/address_range.h"
#include "ip/ip_functions.h"
#include "ip/nesting.h"
#include "lists/address_group_list.h"
#include "lists/import_planner.h"

namespace quillan {
namespace {

constexpr auto kStartNames = std::to_array<std::string_view>(
    {"ip start range", "iprangestart", "range", "start", "first", "prefix", "network"});
constexpr auto kEndNames =
    std::to_array<std::string_view>({"ip end range", "iprangeend", "end", "last"});
constexpr auto kNames =
    std::to_array<std::string_view>({"description", "ipaddressgroupname", "name", "group"});
constexpr auto kEnabledNames = std::to_array<std::string_view>({"managed", "enabled"});

bool IsRange(std::string_view text) {
  return std::holds_alternative<AddressRange>(ParseAddressRange(text));
}

// Digits and dots behind an address are the end of its range, if not a valid one, rather than the
// name of a group.
bool HasEnd(std::string_view key, std::string_view next) {
  return key.find_first_of("/-") == std::string_view::npos &&
         next.find('.') != std::string_view::npos &&
         next.find_first_not_of("0123456789. \t") == std::string_view::npos;
}

constexpr ImportColumns kColumns = {
    .key = kStartNames,
    .end = kEndNames,
    .name = kNames,
    .enabled = kEnabledNames,
    .looks_like_key = IsRange,
    .has_end = HasEnd,
};

std::string RangeText(const ImportKey& key) {
  return FormatAddressRange(SortValueToIPAddress(key.first), SortValueToIPAddress(key.second));
}

class GroupImport final : public ImportRules {
 public:
  GroupImport(const Grid& grid, FlowDatabase& database) : grid_(grid), database_(database) {}

  const ImportColumns& Columns() const override { return kColumns; }

  std::optional<ImportKey> KeyOf(int row) const override {
    if (!grid_.RowData(row).has_range) return std::nullopt;
    return ImportKey{IPAddressToSortValue(grid_.Text(row, kGroupStartColumn)),
                     IPAddressToSortValue(grid_.Text(row, kGroupEndColumn))};
  }

  std::optional<ImportKey> ReadKey(const ImportRecord& record, ImportLine& line) const override {
    auto parsed =
        ParseAddressRange(record.end.empty() ? record.key : record.key + "-" + record.end);
    if (const auto* reason = std::get_if<std::string>(&parsed)) {
      line.reason = *reason;
      return std::nullopt;
    }
    auto& range = std::get<AddressRange>(parsed);
    line.key = std::move(range.start);
    line.end = std::move(range.end);
    line.reason = std::move(range.note);
    return ImportKey{range.start_value, range.end_value};
  }

  std::string Prepare(const std::vector<int>& remaining,
                      const std::vector<ImportKey>& keys) override {
    std::vector<double> starts;
    starts.reserve(keys.size() + remaining.size());
    for (const ImportKey& key : keys) starts.push_back(key.first);
    for (const int row : remaining) {
      if (const auto key = KeyOf(row)) starts.push_back(key->first);
    }
    if (!ReadOtherGroups()) {
      return "The database cannot be asked which groups exist: " + database_.LastError();
    }
    for (const Stored& group : stored_) starts.push_back(group.key.first);
    index_ = NestingIndex(std::move(starts));
    for (const int row : remaining) {
      if (const auto key = KeyOf(row)) AddToIndex(*key, {.row = row});
    }
    for (const Stored& group : stored_) AddToIndex(group.key, {.stored = &group});
    return {};
  }

  std::string AddNew(const ImportKey& key, int line) override {
    if (const auto tag = index_.FindNested(key.first, key.second)) {
      return "The range is nested with " + Describe(places_[static_cast<size_t>(*tag)]) + ".";
    }
    AddToIndex(key, {.line = line});
    return {};
  }

 private:
  struct Stored {
    ImportKey key;
    std::string name;
  };
  // Where a range comes from: a row, a line of the file, or a group that the list does not show.
  struct Place {
    int row = 0;
    int line = 0;
    const Stored* stored = nullptr;
  };

  bool ReadOtherGroups() {
    const auto rows = database_.OpenRecordset(
        "Select IPRangeStart, IPRangeEnd, IPAddressGroupName From IPAddressGroups");
    if (!rows) return false;
    std::set<ImportKey> listed;
    for (int row = Grid::kFixedRows; row < grid_.Rows(); ++row) {
      if (const auto key = KeyOf(row)) listed.insert(*key);
    }
    ado::Field start = rows->Fields("IPRangeStart");
    ado::Field end = rows->Fields("IPRangeEnd");
    ado::Field name = rows->Fields("IPAddressGroupName");
    for (; !rows->Eof(); rows->MoveNext()) {
      if (!HoldsRange(start.Value(), end.Value())) continue;
      const ImportKey key{ado::ToNumber(start.Value()), ado::ToNumber(end.Value())};
      if (!listed.contains(key)) stored_.push_back({key, ado::ToText(name.Value())});
    }
    return true;
  }

  void AddToIndex(const ImportKey& key, const Place& place) {
    index_.Add(key.first, key.second, static_cast<int>(places_.size()));
    places_.push_back(place);
  }

  std::string Describe(const Place& place) const {
    if (place.line != 0) return "line " + std::to_string(place.line);
    if (place.stored != nullptr) {
      return "the group " + place.stored->name + " (" + RangeText(place.stored->key) +
             "), which the database holds and the list does not show";
    }
    return "the group " + std::string(grid_.Text(place.row, kGroupNameColumn)) + " (" +
           RangeText(*KeyOf(place.row)) + ")";
  }

  const Grid& grid_;
  FlowDatabase& database_;
  NestingIndex index_{{}};
  std::vector<Stored> stored_;
  std::vector<Place> places_;  // By tag.
};

}  // namespace

ImportPlan AddressGroupList::PlanImport(std::string_view bytes, ImportMode mode) {
  GroupImport rules(Table(), services().database);
  return quillan::PlanImport(bytes, mode, *this, rules);
}

}  // namespace quillan
