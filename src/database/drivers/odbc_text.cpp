#include "database/drivers/odbc_text.h"

#include "runtime/text.h"

namespace ktl {

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string utf16;
  utf16.reserve(utf8.size());
  while (!utf8.empty()) {
    const char32_t character = TakeCharacter(utf8);
    if (character < 0x10000) {
      utf16 += static_cast<char16_t>(character);
    } else {
      utf16 += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
      utf16 += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
  }
  return utf16;
}

std::string FromUtf16(std::u16string_view utf16) {
  std::string utf8;
  utf8.reserve(utf16.size());
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    char32_t character = utf16[i];
    const bool paired = character >= 0xD800 && character < 0xDC00 && i + 1 < utf16.size();
    if (paired) character = 0x10000 + ((character - 0xD800) << 10) + (utf16[++i] - char32_t{0xDC00});
    AppendCharacter(utf8, character);
  }
  return utf8;
}

}  // namespace ktl
