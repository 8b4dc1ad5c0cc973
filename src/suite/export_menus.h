#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/automation.h"

namespace quillan {

/// The method keys that the engine returned: an array of them, or a dictionary's `Keys`. Throws
/// `automation::Error` if the dictionary does.
std::vector<std::string> MethodKeys(const automation::Value& methods);

/// The engine's member that returns its send-to methods, in the engine's own spelling.
inline constexpr std::string_view kSendToMethods = "SentToMethods";

enum class MenuContent { kExports, kSendTo };

/// Fills `menu` with the export methods for items of `item_kind` (see `ExportEngine`) or with the
/// send-to methods of `engine`. It returns them as a dictionary from method key to display name
/// (members `Keys`, `Item` and `RemoveAll`), which is emptied afterwards, or as an array of keys.
/// Steps that fail are skipped. Each entry has its method key as `Tag`.
///
/// The type name of `menu` tells what it is:
/// - "ICommandPopupMenu", a popup of `toolbar`: a button with the key `prefix` + method key is
///   added through the toolbar's `Commands.AddToolButton`, and its key to the popup's
///   `CommandBar.Controls`;
/// - "ISSTool", a tool with a drop-down menu: the button is added to `Menu.Tools`, by its `Name`;
/// - anything else is an array of menu items with `LBound`, `UBound`, `Item`, `Load` and `Unload`:
///   its first item is the hidden template and stays, the others are unloaded, and one is loaded
///   for each method. `toolbar` and `prefix` are not used.
///
/// The image of a button is the toolbar's `Commands.Images.Item` under its key, else under the
/// method key. For send-to methods it is looked up under `prefix` + the first word of the display
/// name without "Microsoft ", else under what follows the ":" in that. The methods for mail text,
/// the documents folder and the spreadsheet begin a new group.
void FillExportMenu(const automation::ObjectRef& engine, MenuContent content, int item_kind,
                    const automation::ObjectRef& menu, const automation::ObjectRef& toolbar,
                    const std::string& prefix);

}  // namespace quillan
