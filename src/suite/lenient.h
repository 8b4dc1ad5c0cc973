#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/automation.h"

namespace quillan {

/// An automation object whose failures are passed over: a member that fails, or is asked of no
/// object at all, answers nothing.
class Lenient {
 public:
  explicit Lenient(automation::ObjectRef object) : object_(std::move(object)) {}
  /// The object in `value`, if it holds one.
  explicit Lenient(const automation::Value& value) : object_(automation::ToObject(value)) {}

  explicit operator bool() const { return object_ != nullptr; }
  /// The name of the object's type; empty without an object.
  std::string TypeName() const { return object_ ? object_->TypeName() : std::string(); }
  automation::Value Get(std::string_view property) const;
  void Put(std::string_view property, const automation::Value& value) const;
  automation::Value Call(std::string_view member, std::vector<automation::Value> arguments) const;

 private:
  automation::ObjectRef object_;
};

}  // namespace quillan
