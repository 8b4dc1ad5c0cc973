#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/text/user_locale.h"

namespace quillan {

/// An option as the registry's text: True and False, numbers in the user's locale, texts as they
/// are.
std::string ToOptionText(bool value, const text::UserLocale& locale);
std::string ToOptionText(std::int16_t value, const text::UserLocale& locale);
std::string ToOptionText(std::int32_t value, const text::UserLocale& locale);
std::string ToOptionText(float value, const text::UserLocale& locale);
std::string ToOptionText(const std::string& value, const text::UserLocale& locale);

/// The option that a registry text stands for; nothing when it does not convert. Booleans: the
/// words True and False in any case, or a number, of which only 0 is false. Whole numbers are
/// rounded, halves to the even neighbour, and must fit.
template <typename Option>
std::optional<Option> FromOptionText(std::string_view text, const text::UserLocale& locale);

}  // namespace quillan
