#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <QSize>

#include "registry/registry.h"

namespace quillan {

/// How the user has arranged the window, kept in HKEY_CURRENT_USER. What was read and not set since
/// is not written; nothing here reports a failure, because the user did not ask to store anything.
class RememberedView {
 public:
  /// The widths of a list's columns that the user has drawn, in twips, by column.
  using Widths = std::map<int, int>;

  explicit RememberedView(Registry& registry) : registry_(registry) {}

  /// The inner size of the window, in twips.
  std::optional<QSize> WindowSize() const;
  void SetWindowSize(QSize size);
  /// `list` is the name of the list's control.
  Widths ColumnWidths(std::string_view list) const;
  void SetColumnWidths(std::string_view list, const Widths& widths);
  std::optional<bool> StripShown() const;
  void SetStripShown(bool shown);

  /// Writes what was set to another value than the stored one.
  void Write();

 private:
  std::string Read(const std::string& name) const;

  Registry& registry_;
  std::map<std::string, std::string> set_;  // By name.
};

}  // namespace quillan
