#pragma once

#include <string_view>

#include "platform/automation.h"

namespace quillan {

/// One way in which the program's own engine exports.
struct ExportMethod {
  std::string_view key;
  std::string_view name;       ///< For display.
  std::string_view extension;  ///< Of its files, with the dot; empty if it prints.
};

/// The method with this key, without regard to case; null if it does not exist or if it cannot
/// export items of this kind (see `ExportEngine`).
const ExportMethod* FindExportMethod(std::string_view key, int item_kind);

/// The display name of a method; empty if it does not exist.
std::string_view ExportMethodName(std::string_view key);

/// The methods for items of this kind as a dictionary from key to display name, with the members
/// `Count`, `Keys`, `Item` and `RemoveAll`.
automation::ObjectRef ExportMethodsOf(int item_kind);

}  // namespace quillan
