#include "formula/expression_lexer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "formula/expression_faults.h"
#include "runtime/numbers.h"

namespace ktl {
namespace {

constexpr std::size_t kLongestName = 255;

struct Word {
  std::string_view text;
  Symbol symbol;
  Operator op = Operator::Add;
};

constexpr auto kWords = std::to_array<Word>({
    {"AND", Symbol::Operator, Operator::And},
    {"EQV", Symbol::Operator, Operator::Eqv},
    {"IMP", Symbol::Operator, Operator::Imp},
    {"MOD", Symbol::Operator, Operator::Mod},
    {"NOT", Symbol::Operator, Operator::Not},
    {"OR", Symbol::Operator, Operator::Or},
    {"XOR", Symbol::Operator, Operator::Xor},
    {"TRUE", Symbol::True},
    {"FALSE", Symbol::False},
    {"NULL", Symbol::Null},
    {"EMPTY", Symbol::Empty},
});

constexpr auto kReservedWords = std::to_array<std::string_view>({
    "BYREF",   "BYVAL",  "CALL",  "CASE", "CLASS",  "CONST",    "DIM",  "DO",     "EACH",
    "ELSE",    "ELSEIF", "END",   "EXIT", "FOR",    "FUNCTION", "GOTO", "IF",     "IN",
    "IS",      "LET",    "LOOP",  "NEW",  "NEXT",   "NOTHING",  "ON",   "OPTION", "PRESERVE",
    "PRIVATE", "PUBLIC", "REDIM", "REM",  "RESUME", "SELECT",   "SET",  "STOP",   "SUB",
    "THEN",    "TO",     "UNTIL", "WEND", "WHILE",  "WITH",
});

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return c >= 'A' && c <= 'Z'; }
bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsLineBreak(char c) { return c == '\r' || c == '\n'; }
bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'A' && c <= 'F'); }
bool IsOctalDigit(char c) { return c >= '0' && c <= '7'; }

RuntimeError BadNumber() { return Fault(ExpressionFault::BadNumber, "Invalid number"); }

Lexeme NumberLexeme(double number) { return {.symbol = Symbol::Number, .number = number}; }

}  // namespace

Lexeme ExpressionLexer::Next() {
  SkipBlanksAndComment();
  const Lexeme lexeme = Scan();
  switch (lexeme.symbol) {
    case Symbol::Comma:
    case Symbol::OpenParenthesis:
    case Symbol::Operator:
      afterOperand_ = false;
      break;
    default:
      afterOperand_ = true;
  }
  return lexeme;
}

// A "'" begins a comment, which ends the expression.
void ExpressionLexer::SkipBlanksAndComment() {
  while (!rest_.empty() && IsBlank(rest_[0])) rest_.remove_prefix(1);
  if (At(0) != '\'') return;
  rest_.remove_prefix(std::min(rest_.find_first_of("\r\n"), rest_.size()));
}

Lexeme ExpressionLexer::Scan() {
  if (rest_.empty()) return {};
  const char c = rest_[0];
  if (IsLetter(c)) return ScanWord();
  if (IsDigit(c) || (c == '.' && IsDigit(At(1)))) return ScanNumber();
  if (IsLineBreak(c)) return Take(Symbol::LineBreak);
  switch (c) {
    case '"':
      return ScanText();
    case '(':
      return Take(Symbol::OpenParenthesis);
    case ')':
      return Take(Symbol::CloseParenthesis);
    case ',':
      return Take(Symbol::Comma);
    case '+':
      return Take(Symbol::Operator, Operator::Add);
    case '-':
      return Take(Symbol::Operator, Operator::Subtract);
    case '*':
      return Take(Symbol::Operator, Operator::Multiply);
    case '/':
      return Take(Symbol::Operator, Operator::Divide);
    case '\\':
      return Take(Symbol::Operator, Operator::IntegerDivide);
    case '^':
      return Take(Symbol::Operator, Operator::Power);
    case '&':
      // Behind an operand "&" joins texts even when digits follow at once: "A"&12.
      return afterOperand_ ? Take(Symbol::Operator, Operator::Concatenate) : ScanRadixNumber();
    case '=':
    case '<':
    case '>':
      return ScanComparison();
    default:
      throw Fault(ExpressionFault::BadCharacter, "Invalid character");
  }
}

Lexeme ExpressionLexer::Take(Symbol symbol, Operator op) {
  rest_.remove_prefix(1);
  return {.symbol = symbol, .op = op};
}

Lexeme ExpressionLexer::ScanNumber() {
  std::size_t end = 0;
  const auto skipDigits = [&] {
    while (IsDigit(At(end))) ++end;
  };
  skipDigits();
  if (At(end) == '.') ++end;
  skipDigits();
  const std::size_t sign = At(end + 1) == '-' || At(end + 1) == '+' ? 1 : 0;
  if (At(end) == 'E' && IsDigit(At(end + 1 + sign))) {
    end += 1 + sign;
    skipDigits();
  }
  const double number = Val(rest_.substr(0, end));
  if (!std::isfinite(number)) throw BadNumber();
  rest_.remove_prefix(end);
  return NumberLexeme(number);
}

// "&HFF", "&O17" or "&17", a "&" behind it making it 32 bits wide. Up to 16 bits count with their sign:
// &HFFFF is -1.
Lexeme ExpressionLexer::ScanRadixNumber() {
  const bool hexadecimal = At(1) == 'H';
  const std::size_t begin = hexadecimal || At(1) == 'O' ? 2 : 1;
  std::size_t end = begin;
  while (hexadecimal ? IsHexDigit(At(end)) : IsOctalDigit(At(end))) ++end;
  std::uint32_t bits = 0;
  const auto read = std::from_chars(rest_.data() + begin, rest_.data() + end, bits, hexadecimal ? 16 : 8);
  if (begin == end) throw Fault(ExpressionFault::Syntax, "Syntax error");
  if (read.ec != std::errc()) throw BadNumber();
  const bool isWide = At(end) == '&';
  rest_.remove_prefix(end + (isWide ? 1 : 0));
  if (!isWide && bits <= 0xFFFF) return NumberLexeme(static_cast<std::int16_t>(bits));
  return NumberLexeme(static_cast<std::int32_t>(bits));
}

Lexeme ExpressionLexer::ScanText() {
  std::size_t end = 1;
  while (true) {
    end = rest_.find_first_of("\"\r\n", end);
    if (end == rest_.npos || rest_[end] != '"')
      throw Fault(ExpressionFault::UnterminatedText, "Unterminated text");
    if (At(end + 1) != '"') break;
    end += 2;
  }
  const Lexeme lexeme{.symbol = Symbol::Text, .text = rest_.substr(1, end - 1)};
  rest_.remove_prefix(end + 1);
  return lexeme;
}

Lexeme ExpressionLexer::ScanWord() {
  std::size_t end = 1;
  while (IsLetter(At(end)) || IsDigit(At(end)) || At(end) == '_') ++end;
  if (end > kLongestName) throw Fault(ExpressionFault::NameTooLong, "Name too long");
  const std::string_view text = rest_.substr(0, end);
  rest_.remove_prefix(end);
  const auto* const word = std::ranges::find(kWords, text, &Word::text);
  if (word != kWords.end()) return {.symbol = word->symbol, .op = word->op};
  const bool isReserved = std::ranges::find(kReservedWords, text) != kReservedWords.end();
  return {.symbol = isReserved ? Symbol::Reserved : Symbol::Name, .text = text};
}

// The signs of a comparison may stand in either order: "=>" is ">=".
Lexeme ExpressionLexer::ScanComparison() {
  const bool two = At(1) != At(0) && (At(1) == '=' || At(1) == '<' || At(1) == '>');
  const std::string_view signs = rest_.substr(0, two ? 2 : 1);
  const bool less = signs.find('<') != signs.npos;
  const bool greater = signs.find('>') != signs.npos;
  const bool equal = signs.find('=') != signs.npos;
  rest_.remove_prefix(signs.size());
  Operator op = equal ? Operator::Equal : Operator::NotEqual;
  if (less && !greater) op = equal ? Operator::LessOrEqual : Operator::Less;
  if (greater && !less) op = equal ? Operator::GreaterOrEqual : Operator::Greater;
  return {.symbol = Symbol::Operator, .op = op};
}

}  // namespace ktl
