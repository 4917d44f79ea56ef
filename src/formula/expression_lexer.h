#pragma once

#include <cstdint>
#include <string_view>

#include "formula/expression_operators.h"

namespace ktl {

enum class Symbol : std::uint8_t {
  End,
  LineBreak,
  Number,
  Text,
  Name,
  Reserved,  // a word of the language that cannot stand in an expression
  True,
  False,
  Null,
  Empty,
  OpenParenthesis,
  CloseParenthesis,
  Comma,
  Operator,
};

struct Lexeme {
  Symbol symbol = Symbol::End;
  Operator op = Operator::Add;
  double number = 0;
  std::string_view text;  // of a name; of a text what stands between the quotes, doubled quotes still doubled
};

// Cuts an upper-case expression into lexemes. The text must outlive it.
class ExpressionLexer {
 public:
  explicit ExpressionLexer(std::string_view text) : rest_(text) {}

  // Raises an ExpressionFault for what is no lexeme. Answers End at the end again and again.
  Lexeme Next();

 private:
  void SkipBlanksAndComment();
  Lexeme Scan();
  Lexeme ScanNumber();
  Lexeme ScanRadixNumber();
  Lexeme ScanText();
  Lexeme ScanWord();
  Lexeme ScanComparison();
  Lexeme Take(Symbol symbol, Operator op = Operator::Add);
  char At(std::size_t index) const { return index < rest_.size() ? rest_[index] : '\0'; }

  std::string_view rest_;
  bool afterOperand_ = false;
};

}  // namespace ktl
