#pragma once

#include <cstdint>

#include "runtime/value.h"

namespace ktl {

enum class Operator : std::uint8_t {
  Imp,
  Eqv,
  Xor,
  Or,
  And,
  Not,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessOrEqual,
  GreaterOrEqual,
  Concatenate,
  Add,
  Subtract,
  Mod,
  IntegerDivide,
  Multiply,
  Divide,
  Negate,
  Power,
};

// Applies an operator of two operands. Null makes the result null unless the other operand alone decides it.
// Raises the run-time's errors: 11 for a zero divisor, 13 for a text that is no number, 6 for an overflow.
Value Apply(Operator binary, const Value& left, const Value& right);

Value Negate(const Value& operand);
Value Not(const Value& operand);

Value Add(const Value& left, const Value& right);
Value Subtract(const Value& left, const Value& right);
Value Multiply(const Value& left, const Value& right);
Value Divide(const Value& left, const Value& right);
// Whole part, rounded down or towards zero; of a date the day.
Value Int(const Value& number);
Value Fix(const Value& number);

// Whether the comparison is true; a comparison with null is not.
bool Holds(Operator comparison, const Value& left, const Value& right);

// The number itself; overflow when it is infinite or none.
double Finite(double number);

}  // namespace ktl
