#include "common/sql_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "runtime/text.h"

namespace ktl {
namespace {

constexpr std::string_view kAccessPipe = "' & Chr$(124) & '";
constexpr std::string_view kAccessQuote = "' & Chr$(39) & '";

std::string Without(std::string_view text, std::string_view dropped) {
  std::string kept(text);
  std::erase_if(kept, [&](char c) { return dropped.find(c) != dropped.npos; });
  return kept;
}

}  // namespace

std::string DoubleQuotes(std::string_view text) { return ReplaceAll(std::string(text), "'", "''"); }

std::string LikePattern(std::string_view searched) {
  std::string pattern;
  for (const char c : searched) {
    const bool special = c == '%' || c == '_' || c == '[';
    pattern += special ? std::string{'[', c, ']'} : std::string{c};
  }
  return DoubleQuotes(pattern);
}

std::string AmongNumbers(std::string_view column, std::span<const long> numbers) {
  constexpr std::size_t kMostOthers = 1;  // to one that is meant
  if (!numbers.empty()) {
    const auto [first, last] = std::ranges::minmax(numbers);
    if (static_cast<std::size_t>(last - first) < numbers.size() * (1 + kMostOthers))
      return fmt::format("{} Between {} And {}", column, first, last);
  }
  return fmt::format("{} In ({})", column, fmt::join(numbers, ", "));
}

clsSPChar::clsSPChar(std::string_view dbType) : dbType_(UpperCase(dbType)) {}

std::string clsSPChar::FnStrSpSQL(std::string_view text) const {
  std::string literal = DoubleQuotes(text);
  if (dbType_ == "MYSQL") return ReplaceAll(std::move(literal), "\\", "\\\\");
  if (dbType_ == "ACC97") return ReplaceAll(std::move(literal), "|", kAccessPipe);
  return literal;
}

std::string clsSPChar::FnStrSpLikeSQL(std::string_view text) {
  std::string pattern = ReplaceAll(DoubleQuotes(text), "[", "[[]");
  pattern = ReplaceAll(std::move(pattern), "#", "[#]");
  return ReplaceAll(std::move(pattern), "|", kAccessPipe);
}

std::string clsSPChar::FnStrSpFFSQL(std::string_view text) {
  return ReplaceAll(ReplaceAll(std::string(text), "'", kAccessQuote), "|", kAccessPipe);
}

std::string clsSPChar::FnStrSpFFLikeSQL(std::string_view text) {
  std::string pattern = FnStrSpFFSQL(text);
  for (const std::string_view wildcard : {"[", "?", "*", "#"})
    pattern = ReplaceAll(std::move(pattern), wildcard, "[" + std::string(wildcard) + "]");
  return pattern;
}

std::string clsSPChar::FnStrSpRep(std::string_view text) {
  const bool hasSingle = text.find('\'') != text.npos;
  const bool hasDouble = text.find('"') != text.npos;
  if (hasSingle && !hasDouble) return "\"" + std::string(text) + "\"";
  return "'" + Without(text, "'") + "'";
}

std::string clsSPChar::FnStrSpeReplace(std::string_view text, std::size_t position,
                                       std::string_view replacement) {
  const std::size_t leftWidth = position < 2 ? 0 : position - 1;
  std::string result = Left(text, leftWidth);
  result.append(leftWidth - std::min(leftWidth, Length(result)), ' ');
  result += replacement;
  result += text.substr(Left(text, leftWidth + Length(replacement)).size());
  return result;
}

std::string clsSPChar::FnStrChangeAllSp(std::string_view text) { return Without(DoubleQuotes(text), "|"); }

std::string clsSPChar::FnStrClearAllSp(std::string_view text) { return Without(text, "'|\"#[]"); }

}  // namespace ktl
