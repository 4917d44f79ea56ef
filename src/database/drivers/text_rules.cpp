#include "database/drivers/text_rules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace ktl {

namespace {

unsigned char Fold(unsigned char before, unsigned char c) noexcept {
  if (c >= 'A' && c <= 'Z') return c + 32;
  // The Latin-1 capitals stand behind the byte C3; 97 is the sign of multiplication.
  if (before == 0xC3 && c >= 0x80 && c <= 0x9E && c != 0x97) return c + 0x20;
  return c;
}

std::string_view WithoutTrailingBlanks(std::string_view text) noexcept {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool ContinuesCharacter(char c) noexcept { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::u32string Decode(std::string_view folded) {
  std::u32string decoded;
  decoded.reserve(folded.size());
  for (std::size_t i = 0; i < folded.size();) {
    const std::string_view rest = folded.substr(i);
    std::size_t length = 1;
    while (length < rest.size() && ContinuesCharacter(rest[length])) ++length;
    decoded += FirstCharacter(rest);
    i += length;
  }
  return decoded;
}

// One match of a pattern against a text, both folded.
class Matcher {
 public:
  Matcher(std::u32string_view pattern, std::optional<char32_t> escape) : pattern_(pattern), escape_(escape) {}

  bool Matches(std::u32string_view text) const {
    std::size_t at = 0, p = 0;
    std::optional<std::size_t> star;
    std::size_t starAt = 0;
    while (at < text.size()) {
      std::size_t next = p;
      if (p < pattern_.size() && pattern_[p] == U'%') {
        star = p++;
        starAt = at;
      } else if (p < pattern_.size() && MatchesOne(text[at], next)) {
        p = next;
        ++at;
      } else if (star) {
        p = *star + 1;
        at = ++starAt;
      } else {
        return false;
      }
    }
    while (p < pattern_.size() && pattern_[p] == U'%') ++p;
    return p == pattern_.size();
  }

 private:
  bool MatchesOne(char32_t c, std::size_t& p) const {
    if (escape_ && pattern_[p] == *escape_ && p + 1 < pattern_.size()) {
      p += 2;
      return pattern_[p - 1] == c;
    }
    if (pattern_[p] == U'[') {
      const auto close = pattern_.find(U']', p + 2);
      if (close != pattern_.npos) {
        const auto set = pattern_.substr(p + 1, close - p - 1);
        p = close + 1;
        return InSet(c, set);
      }
    }
    return pattern_[p++] == U'_' || pattern_[p - 1] == c;
  }

  static bool InSet(char32_t c, std::u32string_view set) {
    const bool negated = set.size() > 1 && set[0] == U'^';
    if (negated) set.remove_prefix(1);
    bool found = false;
    for (std::size_t i = 0; i < set.size(); ++i) {
      const bool range = i + 2 < set.size() && set[i + 1] == U'-';
      found = found || (range ? c >= set[i] && c <= set[i + 2] : c == set[i]);
      if (range) i += 2;
    }
    return found != negated;
  }

  std::u32string_view pattern_;
  std::optional<char32_t> escape_;
};

}  // namespace

int CompareTexts(std::string_view a, std::string_view b) noexcept {
  a = WithoutTrailingBlanks(a);
  b = WithoutTrailingBlanks(b);
  const std::size_t common = std::min(a.size(), b.size());
  unsigned char before = 0;
  for (std::size_t i = 0; i < common; ++i) {
    const auto left = static_cast<unsigned char>(a[i]), right = static_cast<unsigned char>(b[i]);
    if (left != right) {
      const int difference = Fold(before, left) - Fold(before, right);
      if (difference != 0) return difference;
    }
    before = left;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

std::string FoldCase(std::string_view text) {
  std::string folded(text);
  unsigned char before = 0;
  for (char& c : folded) {
    const auto byte = static_cast<unsigned char>(c);
    c = static_cast<char>(Fold(before, byte));
    before = byte;
  }
  return folded;
}

std::size_t CountCharacters(std::string_view utf8) noexcept {
  return static_cast<std::size_t>(std::ranges::count_if(utf8, [](char c) { return !ContinuesCharacter(c); }));
}

std::string_view Characters(std::string_view utf8, std::size_t first, std::size_t count) noexcept {
  const auto skip = [](std::string_view text, std::size_t characters) {
    std::size_t at = 0;
    while (at < text.size() && characters > 0) {
      ++at;
      while (at < text.size() && ContinuesCharacter(text[at])) ++at;
      --characters;
    }
    return at;
  };
  utf8.remove_prefix(skip(utf8, first));
  return utf8.substr(0, skip(utf8, count));
}

std::size_t FindText(std::string_view pattern, std::string_view text, std::size_t start) {
  if (pattern.empty()) return 0;
  const std::size_t skipped = start > 1 ? start - 1 : 0;
  const std::string folded = FoldCase(Characters(text, skipped, text.size()));
  const auto found = folded.find(FoldCase(pattern));
  if (found == std::string::npos) return 0;
  return skipped + CountCharacters(std::string_view(folded).substr(0, found)) + 1;
}

char32_t FirstCharacter(std::string_view utf8) {
  const auto lead = static_cast<unsigned char>(utf8.front());
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t c = length == 1 ? lead : lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length && i < utf8.size(); ++i)
    c = (c << 6) | (static_cast<unsigned char>(utf8[i]) & 0x3F);
  return c;
}

bool MatchesPattern(std::string_view text, std::string_view pattern, std::optional<char32_t> escape) {
  const std::u32string folded = Decode(FoldCase(pattern));
  return Matcher(folded, escape).Matches(Decode(FoldCase(text)));
}

double RoundHalfAway(double value, int places) {
  if (!std::isfinite(value) || places > 15 || places < -15) return value;
  if (places < 0) {
    const double unit = std::pow(10.0, -places);
    return std::round(value / unit) * unit;
  }
  std::array<char, 400> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), std::fabs(value), std::chars_format::fixed).ptr;
  const char* point = std::find(text.data(), end, '.');
  const auto decimals = std::max<std::ptrdiff_t>(end - point - 1, 0);
  // As exact as it can be already, or with more digits than the value holds.
  if (decimals <= places || point - text.data() + places > 17) return value;
  std::uint64_t digits = 0;
  for (const char* c = text.data(); c != point + 1 + places; ++c)
    if (*c != '.') digits = digits * 10 + static_cast<std::uint64_t>(*c - '0');
  if (point[1 + places] >= '5') ++digits;
  return std::copysign(static_cast<double>(digits) / std::pow(10.0, places), value);
}

}  // namespace ktl
