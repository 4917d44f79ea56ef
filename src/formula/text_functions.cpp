#include <algorithm>
#include <array>
#include <cstring>

#include "formula/expression_faults.h"
#include "formula/expression_functions.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {
namespace {

using OfNull = ExpressionFunction::OfNull;

constexpr long kMostDecimals = 99;  // that FormatNumber shows
constexpr long kUnknownCharacter = '?';

// A count or a position of characters, not below `lowest`.
std::size_t Count(const Value& value, long lowest = 0) {
  const long count = value.ToLong();
  if (count < lowest) throw RuntimeError::InvalidProcedureCall();
  return static_cast<std::size_t>(count);
}

// Byte at which the character with this number, from 0, begins; the end of the text behind the last.
std::size_t ByteOf(std::string_view text, std::size_t character) {
  return character >= text.size() ? text.size() : Left(text, character).size();
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// Comparing by letters takes both texts in upper case; upper-casing keeps the places of all characters.
bool ComparesByLetters(const Arguments& a, std::size_t index) {
  const long kind = a.LongOr(index, 0);
  if (kind != 0 && kind != 1) throw RuntimeError::InvalidProcedureCall();
  return kind == 1;
}

std::string Folded(const Value& value, bool byLetters) {
  return byLetters ? UpperCase(value.ToText()) : value.ToText();
}

Value LeftPart(const Arguments& a) { return Left(a[0].ToText(), Count(a[1])); }

Value RightPart(const Arguments& a) {
  const std::string text = a[0].ToText();
  const std::size_t length = Length(text);
  const std::size_t count = std::min(Count(a[1]), length);
  return text.substr(ByteOf(text, length - count));
}

Value Mid(const Arguments& a) {
  const std::string text = a[0].ToText();
  const std::string_view tail = std::string_view(text).substr(ByteOf(text, Count(a[1], 1) - 1));
  return a.size() > 2 ? tail.substr(0, ByteOf(tail, Count(a[2]))) : tail;
}

double PositionOf(std::string_view text, std::size_t byte) {
  return static_cast<double>(Length(text.substr(0, byte)) + 1);
}

// std::string::find takes the product of both lengths at worst, this their sum.
std::size_t Find(std::string_view text, std::string_view part, std::size_t from) {
  const void* const found = memmem(text.data() + from, text.size() - from, part.data(), part.size());
  return found == nullptr ? text.npos
                          : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

std::size_t FindLast(std::string_view text, std::string_view part) {
  const std::string textBackwards(text.rbegin(), text.rend());
  const std::string partBackwards(part.rbegin(), part.rend());
  const std::size_t at = Find(textBackwards, partBackwards, 0);
  return at == text.npos ? at : text.size() - at - part.size();
}

// InStr(text, part), InStr(start, text, part), InStr(start, text, part, compare).
Value InStr(const Arguments& a) {
  const std::size_t first = a.size() > 2 ? 1 : 0;
  if (a[first].IsNull() || a[first + 1].IsNull()) return Null();
  const std::size_t start = first == 1 ? Count(a[0], 1) : 1;
  const bool byLetters = ComparesByLetters(a, 3);
  const std::string text = Folded(a[first], byLetters);
  if (start > Length(text)) return 0.0;
  const std::size_t at = Find(text, Folded(a[first + 1], byLetters), ByteOf(text, start - 1));
  return at == text.npos ? 0.0 : PositionOf(text, at);
}

// InStrRev(text, part, start, compare): the last place that ends at or before `start`, -1 being the end.
Value InStrRev(const Arguments& a) {
  if (a[0].IsNull() || a[1].IsNull()) return Null();
  const long start = a.LongOr(2, -1);
  if (start == 0 || start < -1) throw RuntimeError::InvalidProcedureCall();
  const bool byLetters = ComparesByLetters(a, 3);
  const std::string text = Folded(a[0], byLetters);
  const std::string part = Folded(a[1], byLetters);
  if (text.empty() || start > static_cast<long>(Length(text))) return 0.0;
  const std::size_t end = start == -1 ? text.size() : ByteOf(text, static_cast<std::size_t>(start));
  if (part.empty()) return PositionOf(text, end) - 1;
  const std::size_t at = FindLast(std::string_view(text).substr(0, end), part);
  return at == text.npos ? 0.0 : PositionOf(text, at);
}

// Replace(text, part, with, start, count, compare): what stands before `start` is left out of the result.
Value Replace(const Arguments& a) {
  const bool byLetters = ComparesByLetters(a, 5);
  const std::string whole = a[0].ToText();
  const std::string_view text =
      std::string_view(whole).substr(a.size() > 3 ? ByteOf(whole, Count(a[3], 1) - 1) : 0);
  const std::string searched = byLetters ? UpperCase(text) : std::string(text);
  const std::string part = Folded(a[1], byLetters);
  const std::string with = a[2].ToText();
  long left = a.LongOr(4, -1);
  if (left < -1) throw RuntimeError::InvalidProcedureCall();
  std::string replaced;
  std::size_t done = 0;
  for (; left != 0 && !part.empty(); --left) {
    const std::size_t at = Find(searched, part, done);
    if (at == searched.npos) break;
    CheckLength(replaced.size() + (at - done) + with.size());
    replaced.append(text.substr(done, at - done)).append(with);
    done = at + part.size();
  }
  return replaced.append(text.substr(done));
}

Value Reversed(const Arguments& a) {
  const std::string text = a[0].ToText();
  std::string reversed;
  for (std::size_t end = text.size(), at = end; at-- > 0;) {
    const bool begins = (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80;
    if (!begins && at > 0) continue;
    reversed.append(text, at, end - at);
    end = at;
  }
  return reversed;
}

Value StrComp(const Arguments& a) {
  if (a[0].IsNull() || a[1].IsNull()) return Null();
  const bool byLetters = ComparesByLetters(a, 2);
  const int order = Folded(a[0], byLetters).compare(Folded(a[1], byLetters));
  return order < 0 ? -1.0 : order > 0 ? 1.0 : 0.0;
}

// Latin-1.
std::string CharacterOf(long code) {
  if (code < 0 || code > 0xFF) throw RuntimeError::InvalidProcedureCall();
  std::string character;
  AppendCharacter(character, static_cast<char32_t>(code));
  return character;
}

Value Asc(const Arguments& a) {
  const std::string text = a[0].ToText();
  if (text.empty()) throw RuntimeError::InvalidProcedureCall();
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return static_cast<double>(lead);
  const bool isLatin1 = (lead == 0xC2 || lead == 0xC3) && text.size() > 1;
  const long code = ((lead & 0x1F) << 6) | (text[isLatin1 ? 1 : 0] & 0x3F);
  return static_cast<double>(isLatin1 ? code : kUnknownCharacter);
}

std::string Repeated(std::string_view character, std::size_t count) {
  CheckLength(count * character.size());
  std::string text;
  text.reserve(count * character.size());
  while (count-- > 0) text += character;
  return text;
}

// String(count, code or text); of a text the first character counts.
Value String(const Arguments& a) {
  if (a[1].IsNull()) return Null();
  const bool isText = a[1].IsText();
  if (isText && a[1].text().empty()) throw RuntimeError::InvalidProcedureCall();
  return Repeated(isText ? Left(a[1].text(), 1) : CharacterOf(a[1].ToLong() & 0xFF), Count(a[0]));
}

// FormatNumber(value, decimals, leading zero, parentheses, groups), the switches -1 on, 0 off, -2 as usual
// here.
Value FormattedNumber(const Arguments& a) {
  long decimals = a.LongOr(1, -1);
  if (decimals == -1) decimals = 2;
  if (decimals < 0 || decimals > kMostDecimals) throw RuntimeError::InvalidProcedureCall();
  const bool leadingZero = a.LongOr(2, -2) != 0;
  const bool parentheses = a.LongOr(3, -2) == -1;
  const bool groups = a.LongOr(4, -2) != 0;
  std::string pattern = groups ? "#,##,##" : "#";
  pattern += leadingZero ? '0' : '#';
  if (decimals > 0) pattern.append(".").append(static_cast<std::size_t>(decimals), '0');
  std::string text = FormatNumber(a[0].ToDouble(), pattern);
  if (parentheses && text.starts_with('-')) text.replace(0, 1, "(").append(")");
  return text;
}

constexpr auto kFunctions = std::to_array<ExpressionFunction>({
    {"LEN", 1, 1, [](const Arguments& a) -> Value { return static_cast<double>(Length(a[0].ToText())); },
     OfNull::IsNull},
    {"LEFT", 2, 2, LeftPart, OfNull::IsNull},
    {"RIGHT", 2, 2, RightPart, OfNull::IsNull},
    {"MID", 2, 3, Mid, OfNull::IsNull},
    {"UCASE", 1, 1, [](const Arguments& a) -> Value { return UpperCase(a[0].ToText()); }, OfNull::IsNull},
    {"LCASE", 1, 1, [](const Arguments& a) -> Value { return LowerCase(a[0].ToText()); }, OfNull::IsNull},
    {"TRIM", 1, 1, [](const Arguments& a) -> Value { return Trim(a[0].ToText()); }, OfNull::IsNull},
    {"LTRIM", 1, 1, [](const Arguments& a) -> Value { return WithoutLeadingBlanks(a[0].ToText()); },
     OfNull::IsNull},
    {"RTRIM", 1, 1, [](const Arguments& a) -> Value { return WithoutTrailingBlanks(a[0].ToText()); },
     OfNull::IsNull},
    {"INSTR", 2, 4, InStr},
    {"INSTRREV", 2, 4, InStrRev},
    {"REPLACE", 3, 6, Replace},
    {"STRREVERSE", 1, 1, Reversed},
    {"STRCOMP", 2, 3, StrComp},
    {"CHR", 1, 1, [](const Arguments& a) -> Value { return CharacterOf(a[0].ToLong()); }},
    {"ASC", 1, 1, Asc},
    {"STRING", 2, 2, String},
    {"SPACE", 1, 1, [](const Arguments& a) -> Value { return Repeated(" ", Count(a[0])); }},
    {"CSTR", 1, 1, [](const Arguments& a) -> Value { return a[0].ToText(); }},
    {"FORMATNUMBER", 1, 5, FormattedNumber},
});

}  // namespace

std::span<const ExpressionFunction> TextFunctions() { return kFunctions; }

}  // namespace ktl
