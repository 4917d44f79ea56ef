#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ktl {

std::string Trim(std::string_view text);       // blanks at both ends
std::string UpperCase(std::string_view text);  // ASCII and Latin-1 letters of UTF-8 text
std::string LowerCase(std::string_view text);
bool EqualsNoCase(std::string_view a, std::string_view b);
std::string ReplaceAll(std::string text, std::string_view from, std::string_view to);
// A text without the separator gives one part; an empty text gives none.
std::vector<std::string> Split(std::string_view text, std::string_view separator);
// Characters, not bytes.
std::size_t Length(std::string_view utf8);
std::string Left(std::string_view utf8, std::size_t count);
// Takes the first character off a text that is not empty; a byte that begins no character counts as one.
char32_t TakeCharacter(std::string_view& utf8);
void AppendCharacter(std::string& utf8, char32_t character);

}  // namespace ktl
