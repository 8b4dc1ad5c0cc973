#pragma once

#include <functional>
#include <string>

#include <QMenu>
#include <QPointer>

#include "platform/automation.h"

namespace quillan {

/// The actions of a menu as an array of menu items for the export engine's menus: members `LBound`,
/// `UBound`, `Item`, `Load` and `Unload`, each item with `Caption`, `Tag`, `Visible` and `Enabled`.
/// The first item, number 0, is a template that is not in the menu. Actions that were in the menu
/// before stay; loaded ones are added at its end.
class MenuItems final : public automation::Object {
 public:
  /// `chosen` is called with an item's `Tag` when the user chooses it.
  MenuItems(QMenu* menu, std::function<void(const std::string& tag)> chosen);

  std::string TypeName() const override { return "MenuItems"; }
  automation::Value Get(std::string_view property) override;
  void Put(std::string_view property, const automation::Value& value) override;
  automation::Value Call(std::string_view member, std::span<automation::Value> arguments) override;

 private:
  QAction* Find(std::int32_t index) const;

  QPointer<QMenu> menu_;
  std::function<void(const std::string& tag)> chosen_;
  std::vector<QPointer<QAction>> loaded_;  // Item 1 is the first.
};

}  // namespace quillan
