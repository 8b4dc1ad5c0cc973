#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace quillan::ado {

/// The database Null.
struct Null {
  bool operator==(const Null&) const = default;
};

/// One value of a row: Null, integer, floating-point number or UTF-8 text. A text is borrowed
/// from whoever made the value.
using Value = std::variant<Null, std::int64_t, double, std::string_view>;

/// A `Value` that owns its text.
using OwnedValue = std::variant<Null, std::int64_t, double, std::string>;

inline bool IsNull(const Value& value) { return std::holds_alternative<Null>(value); }

/// The integer 0 for Null; any other value unchanged.
inline Value NullToZero(const Value& value) {
  return IsNull(value) ? Value(std::int64_t{0}) : value;
}

/// The value as a number: a text by the number at its start, Null as 0.
double ToNumber(const Value& value);

/// The value as an integer, halves to the even neighbour; Null as 0. Beyond 64 bits: the
/// nearest 64-bit number.
std::int64_t ToWhole(const Value& value);

/// Whether the value is a number other than 0; a text also counts when it reads "True".
bool ToBoolean(const Value& value);

/// The value as text: numbers in plain general form, Null as the empty text.
std::string ToText(const Value& value);

/// `value` with its own copy of the text, and back.
OwnedValue ToOwned(const Value& value);
Value ToView(const OwnedValue& value);

}  // namespace quillan::ado
