#include "suite/export_methods.h"

#include <algorithm>
#include <array>

#include "platform/text/ascii.h"
#include "suite/dictionary.h"
#include "suite/export_engine.h"

namespace quillan {
namespace {

using automation::Value;

constexpr std::array<ExportMethod, 5> kMethods = {{{"CSV", "CSV file", ".csv"},
                                                   {"TXT", "Text file", ".txt"},
                                                   {"HTML", "Web page", ".html"},
                                                   {"PRINTER", "Printer", ""},
                                                   {"PREVIEW", "Print preview", ""}}};

const ExportMethod* Find(std::string_view key) {
  const auto found = std::find_if(kMethods.begin(), kMethods.end(), [key](const auto& method) {
    return text::EqualsIgnoringCase(method.key, key);
  });
  return found != kMethods.end() ? &*found : nullptr;
}

bool Suits(const ExportMethod& method, int item_kind) {
  if (method.key == "CSV") return item_kind == kTableItems;
  return item_kind == kTableItems || item_kind == kTextItems;
}

class MethodDictionary final : public automation::Object {
 public:
  explicit MethodDictionary(int item_kind) {
    for (const ExportMethod& method : kMethods) {
      if (Suits(method, item_kind)) entries_.Add(method.key, method.name);
    }
  }

  std::string TypeName() const override { return "Dictionary"; }
  Value Get(std::string_view property) override {
    if (property == "Count") return static_cast<std::int32_t>(entries_.Entries().size());
    automation::RefuseMember(TypeName(), property);
  }
  void Put(std::string_view property, const Value& /*value*/) override {
    automation::RefuseMember(TypeName(), property);
  }
  Value Call(std::string_view member, std::span<Value> arguments) override {
    if (member == "RemoveAll") {
      entries_.RemoveAll();
      return {};
    }
    if (member == "Item" && arguments.size() == 1) {
      const std::string* name = entries_.Item(ToText(arguments[0]));
      return name != nullptr ? Value(*name) : Value();
    }
    if (member != "Keys") automation::RefuseMember(TypeName(), member);
    std::vector<std::string> keys;
    for (const auto& [key, name] : entries_.Entries()) keys.push_back(key);
    return keys;
  }

 private:
  Dictionary entries_;
};

}  // namespace

const ExportMethod* FindExportMethod(std::string_view key, int item_kind) {
  const ExportMethod* method = Find(key);
  return method != nullptr && Suits(*method, item_kind) ? method : nullptr;
}

std::string_view ExportMethodName(std::string_view key) {
  const ExportMethod* method = Find(key);
  return method != nullptr ? method->name : std::string_view();
}

automation::ObjectRef ExportMethodsOf(int item_kind) {
  return std::make_shared<MethodDictionary>(item_kind);
}

}  // namespace quillan
