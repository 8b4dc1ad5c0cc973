#include "suite/lenient.h"

namespace quillan {

using automation::Value;

Value Lenient::Get(std::string_view property) const {
  try {
    return object_ ? object_->Get(property) : Value();
  } catch (const automation::Error&) {
    return {};
  }
}

void Lenient::Put(std::string_view property, const Value& value) const {
  try {
    if (object_) object_->Put(property, value);
  } catch (const automation::Error&) {
    return;
  }
}

Value Lenient::Call(std::string_view member, std::vector<Value> arguments) const {
  try {
    return object_ ? object_->Call(member, arguments) : Value();
  } catch (const automation::Error&) {
    return {};
  }
}

}  // namespace quillan
