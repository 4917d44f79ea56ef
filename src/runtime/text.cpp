#include "runtime/text.h"

namespace ktl {
namespace {

constexpr char kLatin1Lead = '\xC3';

bool IsBlank(char c) { return c == ' '; }

// Changes the case of A-Z and of the Latin-1 letters U+00C0 to U+00DE, whose small forms lie 0x20 above.
// U+00D7 and U+00F7 in that range are the signs of multiplication and division.
std::string ChangeCase(std::string_view text, char firstAscii, unsigned char firstLatin1, int shift) {
  std::string changed(text);
  bool afterLead = false;
  for (char& c : changed) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isAsciiLetter = c >= firstAscii && c < firstAscii + 26;
    const bool isLatin1Letter =
        afterLead && byte >= firstLatin1 && byte < firstLatin1 + 0x1F && byte != firstLatin1 + 0x17;
    afterLead = c == kLatin1Lead;
    if (isAsciiLetter || isLatin1Letter) c = static_cast<char>(byte + shift);
  }
  return changed;
}

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }

bool IsAscii(std::string_view text) {
  for (const char c : text)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

bool EqualsNoCaseAscii(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
  return true;
}

bool StartsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

}  // namespace

std::string Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return std::string(text);
}

std::string UpperCase(std::string_view text) { return ChangeCase(text, 'a', 0xA0, -0x20); }

std::string LowerCase(std::string_view text) { return ChangeCase(text, 'A', 0x80, 0x20); }

bool EqualsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (EqualsNoCaseAscii(a, b)) return true;
  return !IsAscii(a) && LowerCase(a) == LowerCase(b);
}

std::string ReplaceAll(std::string text, std::string_view from, std::string_view to) {
  if (from.empty() || text.find(from) == std::string::npos) return text;
  std::string replaced;
  std::size_t done = 0;
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, done)) {
    replaced.append(text, done, at - done).append(to);
    done = at + from.size();
  }
  return replaced.append(text, done);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  std::size_t start = 0;
  if (!separator.empty()) {
    for (std::size_t at = text.find(separator); at != std::string_view::npos;
         at = text.find(separator, start)) {
      parts.emplace_back(text.substr(start, at - start));
      start = at + separator.size();
    }
  }
  parts.emplace_back(text.substr(start));
  return parts;
}

std::size_t Length(std::string_view utf8) {
  std::size_t count = 0;
  for (const char c : utf8) count += StartsCharacter(c);
  return count;
}

std::string Left(std::string_view utf8, std::size_t count) {
  std::size_t end = 0;
  while (end < utf8.size() && (count > 0 || !StartsCharacter(utf8[end]))) {
    count -= StartsCharacter(utf8[end]);
    ++end;
  }
  return std::string(utf8.substr(0, end));
}

char32_t TakeCharacter(std::string_view& utf8) {
  const auto lead = static_cast<unsigned char>(utf8[0]);
  std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (length > utf8.size()) length = 1;
  char32_t character = length == 1 ? lead : lead & 0x7FU >> length;
  for (std::size_t i = 1; i < length; ++i)
    character = character << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3F);
  utf8.remove_prefix(length);
  return character;
}

void AppendCharacter(std::string& utf8, char32_t character) {
  const auto append = [&](char32_t byte) { utf8 += static_cast<char>(byte); };
  const auto appendTail = [&](int shift) { append(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | character >> 6);
    appendTail(0);
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    appendTail(6);
    appendTail(0);
  } else {
    append(0xF0 | character >> 18);
    appendTail(12);
    appendTail(6);
    appendTail(0);
  }
}

}  // namespace ktl
