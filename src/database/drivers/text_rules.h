#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ktl {

// How the database compares texts: letter case counts for nothing (ASCII and Latin-1 letters of UTF-8 text),
// and neither do trailing blanks. For ASCII texts without trailing blanks the order is that of the embedded
// database's own NOCASE, so that an index made by another tool stays right.
int CompareTexts(std::string_view a, std::string_view b) noexcept;

// The text in lower case; as many bytes as before.
std::string FoldCase(std::string_view text);

std::size_t CountCharacters(std::string_view utf8) noexcept;
// The bytes of the characters from the first (from 0) on, at most count of them.
std::string_view Characters(std::string_view utf8, std::size_t first, std::size_t count) noexcept;

// The character position (from 1) of the pattern at or behind the start; 0 when there is none or it is empty.
std::size_t FindText(std::string_view pattern, std::string_view text, std::size_t start = 1);

// "%" any text, "_" one character, "[a-f]", "[^a-f]"; case counts for nothing; escape: a character taken as
// it stands.
bool MatchesPattern(std::string_view text, std::string_view pattern, std::optional<char32_t> escape = {});
char32_t FirstCharacter(std::string_view utf8);

// Half away from zero, judged on the shortest decimal text of the value: 2.675 to two places is 2.68.
double RoundHalfAway(double value, int places);

}  // namespace ktl
