// Text files: any bytes become UTF-8, and UTF-8 stays what it is. The C library is the judge.

#include <clocale>
#include <cwchar>

#include "fuzz/fuzz.h"
#include "platform/text/encoding.h"

namespace quillan::text {
namespace {

// Whether the C library decodes the bytes as UTF-8; it lets larger numbers than Unicode has pass.
bool DecodesAsUtf8(std::string_view bytes) {
  static const bool set = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
  fuzz::Expect(set, "the locale C.UTF-8 exists");
  std::mbstate_t state{};
  for (std::size_t at = 0; at < bytes.size();) {
    wchar_t wide = 0;
    const std::size_t used = std::mbrtowc(&wide, bytes.data() + at, bytes.size() - at, &state);
    if (used > bytes.size() - at || wide > 0x10FFFF) return false;
    at += used == 0 ? 1 : used;  // 0: a NUL.
  }
  return true;
}

void Check(std::string_view bytes) {
  const bool utf8 = DecodesAsUtf8(bytes);
  fuzz::Expect(IsUtf8(bytes) == utf8, "what UTF-8 is");
  const std::string decoded = DecodeText(bytes);
  fuzz::Expect(DecodesAsUtf8(decoded), "decoded text is UTF-8");
  if (utf8) {
    const bool mark = bytes.starts_with("\xEF\xBB\xBF");
    fuzz::ExpectSame(decoded, bytes.substr(mark ? 3 : 0), "UTF-8 is kept");
    fuzz::ExpectSame(Utf16ToUtf8(Utf8ToUtf16(bytes)), bytes, "through UTF-16 and back");
  }
  fuzz::Expect(DecodesAsUtf8(Utf16ToUtf8(Utf8ToUtf16(bytes))), "ill-formed text is replaced");
  const std::u16string wide(reinterpret_cast<const char16_t*>(std::string(bytes).data()),
                            bytes.size() / 2);
  fuzz::Expect(DecodesAsUtf8(Utf16ToUtf8(wide)), "any UTF-16 becomes UTF-8");
}

}  // namespace
}  // namespace quillan::text

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillan::text::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
