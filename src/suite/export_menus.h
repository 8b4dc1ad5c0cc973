#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/automation.h"

namespace quillan {

/// The method keys in an answer of the engine: an array of them, or a dictionary's `Keys`. Throws
/// `automation::Error` when the dictionary does.
std::vector<std::string> MethodKeys(const automation::Value& methods);

enum class MenuContent { kExports, kSendTo };

/// Fills `menu` with `methods`, the answer of `engine`: a dictionary from method key to display
/// name (members `Keys`, `Item` and `RemoveAll`), which is emptied afterwards, or an array of keys.
/// Steps that fail are passed over. Each entry carries its method key as `Tag`.
///
/// What `menu` is shows in the name of its type:
/// - "ICommandPopupMenu", a popup of `toolbar`: a button keyed `prefix` + method key is added with
///   the toolbar's `Commands.AddToolButton`, and its key to the popup's `CommandBar.Controls`;
/// - "ISSTool", a tool with a drop-down menu: the button is added to `Menu.Tools`, by its `Name`;
/// - anything else is an array of menu items with `LBound`, `UBound`, `Item`, `Load` and `Unload`:
///   its first item is the hidden template and stays; those behind it are unloaded, and one is
///   loaded for each method. Neither `toolbar` nor `prefix` is used.
///
/// A button's image is the toolbar's `Commands.Images.Item` of its key, else of the method key; for
/// sending, of `prefix` + the first word of the display name without "Microsoft ", else of what
/// follows the ":" in that. For sending, the mail text, the documents folder and the spreadsheet
/// begin a new group.
void FillExportMenu(const automation::ObjectRef& engine, const automation::Value& methods,
                    const automation::ObjectRef& menu, const automation::ObjectRef& toolbar,
                    const std::string& prefix, MenuContent content);

}  // namespace quillan
