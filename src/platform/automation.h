#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillan::automation {

class Object;
using ObjectRef = std::shared_ptr<Object>;

/// An argument or result of an automation object: nothing, a boolean, an integer, a string (UTF-8),
/// an array of strings or another object.
using Value = std::variant<std::monostate, bool, std::int32_t, std::string,
                           std::vector<std::string>, ObjectRef>;

// Error numbers. Source: Visual Basic's trappable errors.
inline constexpr std::int32_t kInvalidArgument = 5;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kPathAccess = 75;
inline constexpr std::int32_t kCannotCreateObject = 429;
inline constexpr std::int32_t kNoSuchMember = 438;

/// A failure of an object or of its creation.
class Error : public std::runtime_error {
 public:
  /// `number` identifies the error, such as `kCannotCreateObject`.
  Error(std::int32_t number, const std::string& text) : std::runtime_error(text), number_(number) {}
  std::int32_t number() const { return number_; }

 private:
  std::int32_t number_;
};

/// An object whose members are reached by name.
class Object {
 public:
  virtual ~Object() = default;
  /// The name of the object's type.
  virtual std::string TypeName() const = 0;
  /// Reads a property. Throws `Error`.
  virtual Value Get(std::string_view property) = 0;
  /// Writes a property. Throws `Error`.
  virtual void Put(std::string_view property, const Value& value) = 0;
  /// Calls a member, which may change the arguments. Throws `Error`.
  virtual Value Call(std::string_view member, std::span<Value> arguments) = 0;
};

/// Creates automation objects.
class Server {
 public:
  virtual ~Server() = default;
  /// Creates an object of the type that is registered as `programmatic_identifier`. Throws `Error`.
  virtual ObjectRef CreateObject(std::string_view programmatic_identifier) = 0;
};

/// Throws the `Error` for a member that objects of this type do not have.
[[noreturn]] void RefuseMember(std::string_view type_name, std::string_view member);

/// The value as a boolean: true, a number other than 0, and the string "True" in any case are true;
/// everything else is false.
bool ToBoolean(const Value& value);
/// The value as a string: an integer in decimal digits; empty for anything but strings and numbers.
std::string ToText(const Value& value);
/// The object that the value holds; null for anything else.
ObjectRef ToObject(const Value& value);

}  // namespace quillan::automation
