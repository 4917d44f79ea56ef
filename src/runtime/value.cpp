#include "runtime/value.h"

#include <cmath>
#include <limits>

#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {
namespace {

constexpr double kTrue = -1;  // what true counts as a number

template <typename Integer>
Integer Narrow(const Value& value) {
  const double rounded = RoundHalfEven(value.ToDouble());
  if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
    throw RuntimeError::Overflow();
  return static_cast<Integer>(rounded);
}

double NumberOf(const std::string& text) {
  const std::optional<double> number = ParseNumber(text);
  if (!number) throw RuntimeError::TypeMismatch();
  return *number;
}

}  // namespace

double Value::ToDouble() const {
  if (IsDouble()) return real();
  if (IsInteger()) return static_cast<double>(integer());
  if (IsText()) return NumberOf(text());
  if (IsBoolean()) return boolean() ? kTrue : 0;
  if (IsDate()) return date().serial();
  if (IsNull()) throw RuntimeError::InvalidUseOfNull();
  return 0;
}

std::int32_t Value::ToLong() const { return Narrow<std::int32_t>(*this); }

std::int16_t Value::ToInt() const { return Narrow<std::int16_t>(*this); }

bool Value::ToBoolean() const {
  if (IsBoolean()) return boolean();
  if (IsText() && EqualsNoCase(text(), "True")) return true;
  if (IsText() && EqualsNoCase(text(), "False")) return false;
  return ToDouble() != 0;
}

Date Value::ToDate() const {
  if (IsDate()) return date();
  if (!IsText()) return Date::FromSerial(ToDouble());
  const std::optional<Date> parsed = ParseDate(text());
  if (!parsed) throw RuntimeError::TypeMismatch();
  return *parsed;
}

std::string Value::ToText() const {
  if (IsText()) return text();
  if (IsInteger()) return std::to_string(integer());
  if (IsDouble()) return NumberText(real());
  if (IsDate()) return FormatDate(date(), date().HasTime() ? "dd/MM/yyyy hh:nn:ss" : "dd/MM/yyyy");
  if (IsBoolean()) return boolean() ? "True" : "False";
  if (IsNull()) throw RuntimeError::InvalidUseOfNull();
  return {};
}

double Value::NumberOr0() const { return IsNull() ? 0 : ToDouble(); }

std::string Value::TextOrEmpty() const { return IsNull() ? std::string() : ToText(); }

}  // namespace ktl
