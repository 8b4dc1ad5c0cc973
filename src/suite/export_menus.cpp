#include "suite/export_menus.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "platform/text/ascii.h"

namespace quillan {
namespace {

using automation::Value;

constexpr std::array<std::string_view, 3> kGroupStarts = {"MAILCONTENT", "MYDOCUMENTS",
                                                          "EXCEL.EXE"};

struct Method {
  std::string key;
  std::string name;  // For display.
};

// An automation object whose failures are ignored: a member that fails, or that is called without
// an object, returns nothing.
class Lenient {
 public:
  explicit Lenient(automation::ObjectRef object) : object_(std::move(object)) {}
  explicit Lenient(const Value& value) : object_(automation::ToObject(value)) {}

  explicit operator bool() const { return object_ != nullptr; }
  std::string TypeName() const { return object_ ? object_->TypeName() : std::string(); }
  Value Get(std::string_view property) const {
    return Try([&] { return object_->Get(property); });
  }
  void Put(std::string_view property, const Value& value) const {
    Try([&] {
      object_->Put(property, value);
      return Value();
    });
  }
  Value Call(std::string_view member, std::vector<Value> arguments) const {
    return Try([&] { return object_->Call(member, arguments); });
  }

 private:
  template <typename Step>
  Value Try(Step step) const {
    try {
      return object_ ? step() : Value();
    } catch (const automation::Error&) {
      return {};
    }
  }

  automation::ObjectRef object_;
};

bool IsNothing(const Value& value) { return std::holds_alternative<std::monostate>(value); }

std::vector<Method> ReadMethods(const Lenient& engine, const Value& methods) {
  std::vector<Method> result;
  const Lenient dictionary(methods);
  const Value answer = dictionary ? dictionary.Call("Keys", {}) : methods;
  const auto* keys = std::get_if<std::vector<std::string>>(&answer);
  if (keys == nullptr) return result;
  for (const std::string& key : *keys) {
    const Value name =
        dictionary ? dictionary.Call("Item", {key}) : engine.Call("MethodName", {key});
    result.push_back({key, ToText(name)});
  }
  return result;
}

bool StartsGroup(std::string_view key) {
  const std::string last = text::ToUpperAscii(key.substr(key.find_last_of("\\/") + 1));
  return std::find(kGroupStarts.begin(), kGroupStarts.end(), last) != kGroupStarts.end();
}

// The two names under which the toolbar may keep the image of a method's button.
std::pair<std::string, std::string> ImageNames(const Method& method, const std::string& prefix,
                                               MenuContent content) {
  if (content == MenuContent::kExports) return {prefix + method.key, method.key};
  const std::string name = text::ReplaceAll(method.name, "Microsoft ", "");
  const std::string full = prefix + name.substr(0, name.find(' '));
  return {full, full.substr(full.find(':') + 1)};
}

Lenient AddButton(const Lenient& toolbar, const Method& method, const std::string& prefix,
                  MenuContent content) {
  const Lenient commands(toolbar.Get("Commands"));
  Lenient button(commands.Call("AddToolButton", {prefix + method.key, method.name}));
  button.Put("Tag", method.key);
  const auto [name, second_name] = ImageNames(method, prefix, content);
  const Lenient images(commands.Get("Images"));
  Value image = images.Call("Item", {name});
  if (IsNothing(image)) image = images.Call("Item", {second_name});
  if (!IsNothing(image)) button.Put("Image", image);
  return button;
}

// Adds the button to the menu; returns the menu's entry, or the button if the menu returns none.
Lenient Show(const Lenient& menu, bool is_popup, const Lenient& button, const std::string& key) {
  const Lenient entries(is_popup ? Lenient(menu.Get("CommandBar")).Get("Controls")
                                 : Lenient(menu.Get("Menu")).Get("Tools"));
  const Value name = is_popup ? Value(key) : button.Get("Name");
  if (IsNothing(name)) return button;
  Lenient entry(entries.Call("Add", {name}));
  return entry ? entry : button;
}

// Unloads every item but the first, the template, and returns its index.
std::int32_t UnloadEntries(const Lenient& menu) {
  const auto number = [&menu](std::string_view property) {
    const Value value = menu.Get(property);
    const auto* bound = std::get_if<std::int32_t>(&value);
    return bound != nullptr ? *bound : 0;
  };
  const std::int32_t first = number("LBound");
  for (std::int32_t i = number("UBound"); i > first; --i) menu.Call("Unload", {i});
  return first;
}

Lenient LoadEntry(const Lenient& menu, std::int32_t index, const Method& method) {
  menu.Call("Load", {index});
  Lenient entry(menu.Call("Item", {index}));
  entry.Put("Caption", method.name);
  entry.Put("Tag", method.key);
  entry.Put("Visible", true);
  entry.Put("Enabled", true);
  return entry;
}

}  // namespace

std::vector<std::string> MethodKeys(const Value& methods) {
  const automation::ObjectRef dictionary = ToObject(methods);
  const Value answer = dictionary ? dictionary->Call("Keys", {}) : methods;
  const auto* keys = std::get_if<std::vector<std::string>>(&answer);
  return keys != nullptr ? *keys : std::vector<std::string>();
}

void FillExportMenu(const automation::ObjectRef& engine, MenuContent content, int item_kind,
                    const automation::ObjectRef& menu, const automation::ObjectRef& toolbar,
                    const std::string& prefix) {
  const Lenient target(menu);
  const std::string type = target.TypeName();
  const bool is_popup = type == "ICommandPopupMenu";
  const bool has_buttons = is_popup || type == "ISSTool";
  if (!target || (has_buttons && !toolbar)) return;

  const Value methods = content == MenuContent::kExports
                            ? Lenient(engine).Call("ExportMethods", {item_kind})
                            : Lenient(engine).Call(kSendToMethods, {});
  std::int32_t index = has_buttons ? 0 : UnloadEntries(target);
  for (const Method& method : ReadMethods(Lenient(engine), methods)) {
    const Lenient entry =
        has_buttons ? Show(target, is_popup, AddButton(Lenient(toolbar), method, prefix, content),
                           prefix + method.key)
                    : LoadEntry(target, ++index, method);
    if (content == MenuContent::kSendTo && StartsGroup(method.key)) entry.Put("BeginGroup", true);
  }
  Lenient(methods).Call("RemoveAll", {});
}

}  // namespace quillan
