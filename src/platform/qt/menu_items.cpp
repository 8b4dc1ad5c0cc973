#include "platform/qt/menu_items.h"

#include <QAction>

#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

using automation::Value;

// One item of the menu.
class MenuItem final : public automation::Object {
 public:
  explicit MenuItem(QAction* action) : action_(action) {}

  std::string TypeName() const override { return "MenuItem"; }
  Value Get(std::string_view property) override {
    if (action_ == nullptr) return {};
    if (property == "Caption") return ToUtf8(action_->text());
    if (property == "Tag") return ToUtf8(action_->data().toString());
    if (property == "Visible") return action_->isVisible();
    if (property == "Enabled") return action_->isEnabled();
    automation::RefuseMember(TypeName(), property);
  }
  void Put(std::string_view property, const Value& value) override {
    if (action_ == nullptr) return;
    if (property == "Caption") {
      // An ampersand of the name is not a mnemonic.
      action_->setText(
          ToQString(automation::ToText(value)).replace(QLatin1String("&"), QLatin1String("&&")));
    } else if (property == "Tag") {
      action_->setData(ToQString(automation::ToText(value)));
    } else if (property == "Visible") {
      action_->setVisible(automation::ToBoolean(value));
    } else if (property == "Enabled") {
      action_->setEnabled(automation::ToBoolean(value));
    } else {
      automation::RefuseMember(TypeName(), property);
    }
  }
  Value Call(std::string_view member, std::span<Value> /*arguments*/) override {
    automation::RefuseMember(TypeName(), member);
  }

 private:
  QPointer<QAction> action_;
};

}  // namespace

MenuItems::MenuItems(QMenu* menu, std::function<void(const std::string& tag)> chosen)
    : menu_(menu), chosen_(std::move(chosen)) {}

Value MenuItems::Get(std::string_view property) {
  if (property == "LBound") return std::int32_t{0};
  if (property == "UBound") return static_cast<std::int32_t>(loaded_.size());
  automation::RefuseMember(TypeName(), property);
}

void MenuItems::Put(std::string_view property, const Value& /*value*/) {
  automation::RefuseMember(TypeName(), property);
}

Value MenuItems::Call(std::string_view member, std::span<Value> arguments) {
  const auto* index = arguments.size() == 1 ? std::get_if<std::int32_t>(&arguments[0]) : nullptr;
  if (index == nullptr) automation::RefuseMember(TypeName(), member);
  const auto last = static_cast<std::int32_t>(loaded_.size());
  if (member == "Load" && *index == last + 1 && menu_ != nullptr) {
    QAction* action = menu_->addAction(QString());
    QObject::connect(action, &QAction::triggered,
                     [action, chosen = chosen_] { chosen(ToUtf8(action->data().toString())); });
    loaded_.emplace_back(action);
  } else if (member == "Unload" && *index == last && last > 0) {
    delete loaded_.back();
    loaded_.pop_back();
  } else if (member == "Item" && Find(*index) != nullptr) {
    return std::make_shared<MenuItem>(Find(*index));
  } else {
    throw automation::Error(automation::kSubscriptOutOfRange,
                            "There is no menu item " + std::to_string(*index) + ".");
  }
  return {};
}

QAction* MenuItems::Find(std::int32_t index) const {
  const bool exists = index >= 1 && static_cast<size_t>(index) <= loaded_.size();
  return exists ? loaded_[static_cast<size_t>(index) - 1] : nullptr;
}

}  // namespace quillan
