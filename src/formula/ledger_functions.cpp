// The functions that the office's formulas are written with.

#include <array>

#include "formula/date_intervals.h"
#include "formula/expression_functions.h"
#include "formula/expression_operators.h"
#include "runtime/numbers.h"

namespace ktl {
namespace {

const Value kZero(0.0);
const Value kTwo(2.0);

Value IIf(const Arguments& a) { return !a[0].IsNull() && a[0].ToBoolean() ? a[1] : a[2]; }

// 0 for a divisor of 0.
Value Remainder(const Value& num1, const Value& num2) {
  if (!Holds(Operator::NotEqual, num2, kZero)) return kZero;
  return Subtract(num1, Multiply(Fix(Divide(num1, num2)), num2));
}

Value Between(const Arguments& a) {
  const bool within = Holds(Operator::GreaterOrEqual, a[0], a[1]) && Holds(Operator::LessOrEqual, a[0], a[2]);
  return within ? -1.0 : 0.0;
}

Value MultipleBelow(const Value& value, const Value& roundTo) {
  return Multiply(Int(Divide(value, roundTo)), roundTo);
}

Value MultipleAbove(const Value& value, const Value& roundTo) {
  return Add(MultipleBelow(value, roundTo), roundTo);
}

// The fraction is read off the text with eight decimals, so it is never negative: 0.34 of -12.34, 0
// of 4.999999999.
double FractionOf(const Value& value) {
  const std::string text = FormatNumber(value.ToDouble(), "0.00000000");
  return Val(std::string_view(text).substr(text.find('.')));
}

// A value whose remainder comes out negative stays unrounded: -12.34 to 5 is -12.34.
Value RoundedToNearest(const Value& value, const Value& roundTo) {
  const Value remainder = Add(Remainder(Int(value), roundTo), FractionOf(value));
  if (!Holds(Operator::Greater, remainder, kZero)) return value;
  const bool belowHalf = Holds(Operator::Less, remainder, Divide(roundTo, kTwo));
  return belowHalf ? MultipleBelow(value, roundTo) : MultipleAbove(value, roundTo);
}

bool IsMode(const Value& mode, const char* letter) { return Holds(Operator::Equal, mode, letter); }

// Modes: U up, L down, N nearest; any other leaves the value. A small letter can only come from LCase and is
// another.
Value Round(const Arguments& a) {
  const Value& value = a[0];
  const Value& roundTo = a[1];
  const bool up = IsMode(a[2], "U");
  if (up || IsMode(a[2], "L")) {
    if (Holds(Operator::Equal, Remainder(value, roundTo), kZero)) return value;
    return up ? MultipleAbove(value, roundTo) : MultipleBelow(value, roundTo);
  }
  return IsMode(a[2], "N") ? RoundedToNearest(value, roundTo) : value;
}

Value SubjectToMax(const Arguments& a) { return Holds(Operator::Greater, a[0], a[1]) ? a[1] : a[0]; }
Value SubjectToMin(const Arguments& a) { return Holds(Operator::Less, a[0], a[1]) ? a[1] : a[0]; }

template <DateInterval interval>
Value Difference(const Arguments& a) {
  if (a[0].IsNull() || a[1].IsNull()) return Null();
  return static_cast<double>(CountBetween(interval, a[0].ToDate(), a[1].ToDate()));
}

Value MonthYear(const Arguments& a) {
  const Date date = a[0].ToDate();
  return date.year() * 12.0 + date.month();
}

constexpr auto kFunctions = std::to_array<ExpressionFunction>({
    {"IIF", 3, 3, IIf},
    {"REMAINDER", 2, 2, [](const Arguments& a) { return Remainder(a[0], a[1]); }},
    {"FNINTKLBETWEEN", 3, 3, Between},
    {"FNDBLKLROUND", 3, 3, Round},
    {"FNDBLKLSUBJECTTOMAX", 2, 2, SubjectToMax},
    {"FNDBLKLSUBJECTTOMIN", 2, 2, SubjectToMin},
    {"FNLNGKLDAYSDIFF", 2, 2, Difference<DateInterval::Day>},
    {"FNLNGKLMONTHSDIFF", 2, 2, Difference<DateInterval::Month>},
    {"FNLNGKLYEARSDIFF", 2, 2, Difference<DateInterval::Year>},
    {"FNDTEKLSYSTEMDATE", 0, 0, [](const Arguments& a) -> Value { return a.now().DayOnly(); }},
    {"FNLNGKLMONTHYEAR", 1, 1, MonthYear},
});

}  // namespace

std::span<const ExpressionFunction> LedgerFunctions() { return kFunctions; }

}  // namespace ktl
