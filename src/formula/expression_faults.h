#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/errors.h"

namespace ktl {

// The numbers under which the formula language reports its failures; any other number is a formula that
// cannot be evaluated for some other reason.
enum class ExpressionFault : long {
  DivisionByZero = 11,
  UnknownFunction = 15,
  WrongArgumentCount = 450,
  UndefinedName = 500,
  Syntax = 1002,
  ClosingParenthesisExpected = 1006,
  EndOfStatementExpected = 1025,
  NameTooLong = 1030,
  BadNumber = 1031,
  BadCharacter = 1032,
  UnterminatedText = 1033,
};

inline RuntimeError Fault(ExpressionFault fault, std::string description) {
  return {static_cast<long>(fault), std::move(description)};
}

// The description holds the name in single quotes.
inline RuntimeError Fault(ExpressionFault fault, std::string_view what, std::string_view name) {
  return Fault(fault, std::string(what).append(": '").append(name).append("'"));
}

// The longest text that a formula may build; a longer one is an overflow.
inline constexpr std::size_t kLongestText = std::size_t{4} << 20;

inline void CheckLength(std::size_t bytes) {
  if (bytes > kLongestText) throw RuntimeError::Overflow();
}

}  // namespace ktl
