#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillan {

/// Texts by name, in the order in which they were added; names compare byte for byte. Made for a
/// few dozen entries.
class Dictionary {
 public:
  using Entry = std::pair<std::string, std::string>;

  /// Adds an entry at the end; false, and nothing changes, when there is one of that name.
  bool Add(std::string_view name, std::string_view value) {
    if (Exists(name)) return false;
    entries_.emplace_back(name, value);
    return true;
  }
  /// Gives the entry `name` this value; adds it where there is none.
  void Set(std::string_view name, std::string_view value) {
    if (const auto entry = Find(name); entry != entries_.end()) {
      entry->second = value;
    } else {
      entries_.emplace_back(name, value);
    }
  }
  /// Removes the entry `name`, if there is one.
  void Remove(std::string_view name) {
    if (const auto entry = Find(name); entry != entries_.end()) entries_.erase(entry);
  }
  void RemoveAll() { entries_.clear(); }

  bool Exists(std::string_view name) const { return Item(name) != nullptr; }
  /// The value of the entry `name`; null when there is none.
  const std::string* Item(std::string_view name) const {
    for (const Entry& entry : entries_) {
      if (entry.first == name) return &entry.second;
    }
    return nullptr;
  }
  /// Every entry, name and value.
  const std::vector<Entry>& Entries() const { return entries_; }

 private:
  std::vector<Entry>::iterator Find(std::string_view name) {
    return std::find_if(entries_.begin(), entries_.end(),
                        [name](const Entry& entry) { return entry.first == name; });
  }

  std::vector<Entry> entries_;
};

}  // namespace quillan
