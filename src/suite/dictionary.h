#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillan {

/// Strings by name, in the order in which they were added; names compare byte for byte. Linear:
/// meant for a few dozen entries.
class Dictionary {
 public:
  using Entry = std::pair<std::string, std::string>;

  /// Adds an entry at the end; false, and nothing changes, if the name exists.
  bool Add(std::string_view name, std::string_view value) {
    if (Exists(name)) return false;
    entries_.emplace_back(name, value);
    return true;
  }
  /// Sets the value of the entry `name`; adds the entry if it does not exist.
  void Set(std::string_view name, std::string_view value) {
    if (const auto entry = Find(name); entry != entries_.end()) {
      entry->second = value;
    } else {
      entries_.emplace_back(name, value);
    }
  }
  /// Removes the entry `name` if it exists.
  void Remove(std::string_view name) {
    if (const auto entry = Find(name); entry != entries_.end()) entries_.erase(entry);
  }
  void RemoveAll() { entries_.clear(); }

  bool Exists(std::string_view name) const { return Item(name) != nullptr; }
  /// The value of the entry `name`; null if it does not exist.
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
