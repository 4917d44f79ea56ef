#include "formula/expression_operators.h"

#include <cmath>
#include <compare>
#include <optional>

#include "formula/expression_faults.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"

namespace ktl {
namespace {

// Beside a text, empty is one too.
bool AreTexts(const Value& a, const Value& b) {
  return (a.IsText() && (b.IsText() || b.IsEmpty())) || (a.IsEmpty() && b.IsText());
}
bool EitherNull(const Value& a, const Value& b) { return a.IsNull() || b.IsNull(); }

Value DateOrNumber(bool isDate, double number) {
  return isDate ? Value(Date::FromSerial(number)) : Value(Finite(number));
}

std::weak_ordering Order(double a, double b) {
  if (a < b) return std::weak_ordering::less;
  return a > b ? std::weak_ordering::greater : std::weak_ordering::equivalent;
}

// A text that is a number compares as one, beside a date a date text as a date; any other text is greater.
std::weak_ordering OrderOfTextToOther(const std::string& text, const Value& other) {
  if (const std::optional<double> number = ParseNumber(text)) return Order(*number, other.ToDouble());
  if (other.IsDate()) {
    if (const std::optional<Date> date = ParseDate(text)) return *date <=> other.date();
  }
  return std::weak_ordering::greater;
}

// Neither is null.
std::weak_ordering OrderOf(const Value& a, const Value& b) {
  if (a.IsDouble() && b.IsDouble()) return Order(a.real(), b.real());
  if (a.IsDate() && b.IsDate()) return a.date() <=> b.date();
  if (a.IsText() && b.IsText()) return a.text() <=> b.text();
  if (AreTexts(a, b)) return a.ToText() <=> b.ToText();
  if (a.IsText()) return OrderOfTextToOther(a.text(), b);
  if (b.IsText()) return 0 <=> OrderOfTextToOther(b.text(), a);
  return Order(a.ToDouble(), b.ToDouble());
}

bool Satisfies(Operator comparison, std::weak_ordering order) {
  switch (comparison) {
    case Operator::Equal:
      return order == 0;
    case Operator::NotEqual:
      return order != 0;
    case Operator::Less:
      return order < 0;
    case Operator::Greater:
      return order > 0;
    case Operator::LessOrEqual:
      return order <= 0;
    default:
      return order >= 0;
  }
}

Value Concatenate(const Value& left, const Value& right) {
  if (left.IsNull() && right.IsNull()) return Null();
  std::string text = left.TextOrEmpty();
  const std::string tail = right.TextOrEmpty();
  CheckLength(text.size() + tail.size());
  return text.append(tail);
}

// Both operands as whole numbers, the divisor not 0.
struct WholeOperands {
  std::int64_t dividend, divisor;

  WholeOperands(const Value& left, const Value& right) : dividend(left.ToLong()), divisor(right.ToLong()) {
    if (divisor == 0) throw RuntimeError::DivisionByZero();
  }
};

Value IntegerDivide(const Value& left, const Value& right) {
  if (EitherNull(left, right)) return Null();
  const WholeOperands whole(left, right);
  return static_cast<double>(whole.dividend / whole.divisor);
}

Value Modulo(const Value& left, const Value& right) {
  if (EitherNull(left, right)) return Null();
  const WholeOperands whole(left, right);
  return static_cast<double>(whole.dividend % whole.divisor);
}

Value Power(const Value& left, const Value& right) {
  if (EitherNull(left, right)) return Null();
  const double base = left.ToDouble();
  const double exponent = right.ToDouble();
  const bool hasPower = base > 0 || (base == 0 ? exponent >= 0 : exponent == std::trunc(exponent));
  if (!hasPower) throw RuntimeError::InvalidProcedureCall();
  return Finite(std::pow(base, exponent));
}

// The bits as a boolean when both operands are booleans, else as a number.
Value Bits(std::int32_t bits, bool asBoolean) {
  return asBoolean ? Value(bits != 0) : Value(static_cast<double>(bits));
}

// `decisive` says of the bits that stand beside a null whether they decide the result alone.
template <typename Combine, typename Decisive>
Value Bitwise(const Value& left, const Value& right, Combine combine, Decisive decisive) {
  if (EitherNull(left, right)) {
    const Value& other = left.IsNull() ? right : left;
    return !other.IsNull() && decisive(other.ToLong()) ? other : Value(Null());
  }
  return Bits(combine(left.ToLong(), right.ToLong()), left.IsBoolean() && right.IsBoolean());
}

Value And(const Value& left, const Value& right) {
  return Bitwise(
      left, right, [](auto a, auto b) { return a & b; }, [](auto bits) { return bits == 0; });
}

Value Or(const Value& left, const Value& right) {
  return Bitwise(
      left, right, [](auto a, auto b) { return a | b; }, [](auto bits) { return bits != 0; });
}

Value Xor(const Value& left, const Value& right) {
  return Bitwise(
      left, right, [](auto a, auto b) { return a ^ b; }, [](auto) { return false; });
}

}  // namespace

double Finite(double number) {
  if (!std::isfinite(number)) throw RuntimeError::Overflow();
  return number;
}

Value Add(const Value& left, const Value& right) {
  if (EitherNull(left, right)) return Null();
  if (AreTexts(left, right)) return Concatenate(left, right);
  return DateOrNumber(left.IsDate() || right.IsDate(), left.ToDouble() + right.ToDouble());
}

Value Subtract(const Value& left, const Value& right) {
  if (EitherNull(left, right)) return Null();
  return DateOrNumber(left.IsDate() != right.IsDate(), left.ToDouble() - right.ToDouble());
}

Value Multiply(const Value& left, const Value& right) {
  if (EitherNull(left, right)) return Null();
  return Finite(left.ToDouble() * right.ToDouble());
}

Value Divide(const Value& left, const Value& right) {
  if (EitherNull(left, right)) return Null();
  const double dividend = left.ToDouble();
  const double divisor = right.ToDouble();
  if (divisor == 0) throw RuntimeError::DivisionByZero();
  return Finite(dividend / divisor);
}

Value Int(const Value& number) {
  if (number.IsNull()) return Null();
  return DateOrNumber(number.IsDate(), std::floor(number.ToDouble()));
}

Value Fix(const Value& number) {
  if (number.IsNull()) return Null();
  return DateOrNumber(number.IsDate(), std::trunc(number.ToDouble()));
}

Value Negate(const Value& operand) {
  if (operand.IsNull()) return Null();
  return DateOrNumber(operand.IsDate(), -operand.ToDouble());
}

Value Not(const Value& operand) {
  if (operand.IsNull()) return Null();
  return Bits(~operand.ToLong(), operand.IsBoolean());
}

bool Holds(Operator comparison, const Value& left, const Value& right) {
  return !EitherNull(left, right) && Satisfies(comparison, OrderOf(left, right));
}

Value Apply(Operator binary, const Value& left, const Value& right) {
  switch (binary) {
    case Operator::Add:
      return Add(left, right);
    case Operator::Subtract:
      return Subtract(left, right);
    case Operator::Multiply:
      return Multiply(left, right);
    case Operator::Divide:
      return Divide(left, right);
    case Operator::IntegerDivide:
      return IntegerDivide(left, right);
    case Operator::Mod:
      return Modulo(left, right);
    case Operator::Power:
      return Power(left, right);
    case Operator::Concatenate:
      return Concatenate(left, right);
    case Operator::And:
      return And(left, right);
    case Operator::Or:
      return Or(left, right);
    case Operator::Xor:
      return Xor(left, right);
    case Operator::Eqv:
      return Not(Xor(left, right));
    case Operator::Imp:
      return Or(Not(left), right);
    default:
      if (EitherNull(left, right)) return Null();
      return Satisfies(binary, OrderOf(left, right));
  }
}

}  // namespace ktl
