#include "platform/text/encoding.h"

#include <array>
#include <cstdint>

namespace quillan::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Windows-1252 at 0x80..0x9F, from the table that unicode.org publishes (CP1252.TXT); the five
// bytes without a character map to the control character of the same number.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

std::u16string ReadUtf16(std::string_view bytes, bool big_endian) {
  std::u16string units;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<std::uint8_t>(bytes[big_endian ? i + 1 : i]);
    const auto high = static_cast<std::uint8_t>(bytes[big_endian ? i : i + 1]);
    units += static_cast<char16_t>(high << 8 | low);
  }
  return units;
}

}  // namespace

DecodedUtf8 DecodeUtf8(std::string_view bytes, size_t at) {
  const auto byte = [&](size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const std::uint8_t first = byte(at);
  if (first < 0x80) return {first, 1, true};
  const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || at + length > bytes.size()) return {kReplacement, 1, false};
  char32_t c = first & (0xFFU >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return {kReplacement, i, false};
    c = (c << 6) | (byte(at + i) & 0x3FU);
  }
  const char32_t least = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
  if (c < least || c > 0x10FFFF || IsSurrogate(c)) return {kReplacement, length, false};
  return {c, length, true};
}

bool IsUtf8(std::string_view bytes) {
  for (size_t i = 0; i < bytes.size();) {
    const DecodedUtf8 decoded = DecodeUtf8(bytes, i);
    if (!decoded.valid) return false;
    i += decoded.length;
  }
  return true;
}

void AppendUtf8(char32_t c, std::string& utf8) {
  if (c > 0x10FFFF || IsSurrogate(c)) c = kReplacement;
  const auto append = [&](char32_t byte) { utf8 += static_cast<char>(byte); };
  if (c < 0x80) {
    append(c);
  } else if (c < 0x800) {
    append(0xC0 | c >> 6);
    append(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    append(0xE0 | c >> 12);
    append(0x80 | (c >> 6 & 0x3F));
    append(0x80 | (c & 0x3F));
  } else {
    append(0xF0 | c >> 18);
    append(0x80 | (c >> 12 & 0x3F));
    append(0x80 | (c >> 6 & 0x3F));
    append(0x80 | (c & 0x3F));
  }
}

std::string DecodeText(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return Utf16ToUtf8(ReadUtf16(bytes.substr(2), false));
  if (bytes.starts_with("\xFE\xFF")) return Utf16ToUtf8(ReadUtf16(bytes.substr(2), true));
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  if (IsUtf8(bytes)) return std::string(bytes);
  std::string utf8;
  for (const char c : bytes) {
    const auto byte = static_cast<std::uint8_t>(c);
    AppendUtf8(byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80U] : byte, utf8);
  }
  return utf8;
}

std::u16string Utf8ToUtf16(std::string_view utf8) {
  std::u16string utf16;
  utf16.reserve(utf8.size());
  for (size_t i = 0; i < utf8.size();) {
    const DecodedUtf8 decoded = DecodeUtf8(utf8, i);
    i += decoded.length;
    if (decoded.code_point < 0x10000) {
      utf16 += static_cast<char16_t>(decoded.code_point);
    } else {
      utf16 += static_cast<char16_t>(0xD7C0 + (decoded.code_point >> 10));
      utf16 += static_cast<char16_t>(0xDC00 + (decoded.code_point & 0x3FF));
    }
  }
  return utf16;
}

std::string Utf16ToUtf8(std::u16string_view utf16) {
  std::string utf8;
  utf8.reserve(utf16.size());
  for (size_t i = 0; i < utf16.size(); ++i) {
    char32_t c = utf16[i];
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 &&
        utf16[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (utf16[++i] - 0xDC00U);
    }
    AppendUtf8(c, utf8);
  }
  return utf8;
}

}  // namespace quillan::text
