#pragma once

#include <string>
#include <string_view>

namespace ktl {

// ODBC's wide texts are UTF-16.
std::u16string ToUtf16(std::string_view utf8);
std::string FromUtf16(std::u16string_view utf16);

}  // namespace ktl
