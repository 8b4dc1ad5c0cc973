#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillan::text {

/// One character of a UTF-8 text.
struct DecodedUtf8 {
  char32_t code_point;  ///< U+FFFD if ill-formed.
  size_t length;        ///< Bytes taken; at least 1.
  bool valid;
};

/// The character that begins at `bytes[at]`; `at` must be less than the size.
DecodedUtf8 DecodeUtf8(std::string_view bytes, size_t at);

/// Whether `bytes` are well-formed UTF-8 (no overlong forms, no surrogates, at most U+10FFFF).
bool IsUtf8(std::string_view bytes);

/// `code_point` (0..0x10FFFF) appended to `utf8`; a surrogate or a larger number as U+FFFD.
void AppendUtf8(char32_t code_point, std::string& utf8);

/// The content of a text file as UTF-8. It is read as UTF-16 if it has that byte-order mark, as
/// UTF-8 if it is valid UTF-8 (a leading mark is dropped), else as Windows-1252.
std::string DecodeText(std::string_view bytes);

/// UTF-8 as UTF-16 code units of the machine's byte order; ill-formed sequences become U+FFFD.
std::u16string Utf8ToUtf16(std::string_view utf8);

/// UTF-16 as UTF-8; an unpaired surrogate becomes U+FFFD.
std::string Utf16ToUtf8(std::u16string_view utf16);

}  // namespace quillan::text
