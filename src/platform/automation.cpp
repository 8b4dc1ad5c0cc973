#include "platform/automation.h"

#include "platform/text/ascii.h"

namespace quillan::automation {

void RefuseMember(std::string_view type_name, std::string_view member) {
  throw Error(kNoSuchMember, std::string(type_name) + " does not have the member \"" +
                                 std::string(member) + "\".");
}

bool ToBoolean(const Value& value) {
  if (const auto* truth = std::get_if<bool>(&value)) return *truth;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number != 0;
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr && text::EqualsIgnoringCase(*text, "true");
}

std::string ToText(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number);
  return {};
}

ObjectRef ToObject(const Value& value) {
  const auto* object = std::get_if<ObjectRef>(&value);
  return object != nullptr ? *object : nullptr;
}

}  // namespace quillan::automation
