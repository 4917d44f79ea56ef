#include <fmt/format.h>

#include <array>
#include <cmath>

#include "formula/expression_functions.h"
#include "formula/expression_operators.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"

namespace ktl {
namespace {

using OfNull = ExpressionFunction::OfNull;

constexpr long kMostDecimals = 22;  // that Round takes

template <double (*function)(double)>
Value OfNumber(const Arguments& a) {
  return Finite(function(a[0].ToDouble()));
}

double Sign(double number) { return number > 0 ? 1 : number < 0 ? -1 : 0; }
double CurrencyOf(double number) { return RoundHalfEven(number, 4); }

// The decimal text of a single-precision number: its rounding error is never seen.
double SingleOf(double number) { return Val(fmt::format("{:.7g}", number)); }

double RootOf(double number) {
  if (number < 0) throw RuntimeError::InvalidProcedureCall();
  return std::sqrt(number);
}

double LogarithmOf(double number) {
  if (number <= 0) throw RuntimeError::InvalidProcedureCall();
  return std::log(number);
}

Value Round(const Arguments& a) {
  const long decimals = a.LongOr(1, 0);
  if (decimals < 0 || decimals > kMostDecimals) throw RuntimeError::InvalidProcedureCall();
  return RoundHalfEven(a[0].ToDouble(), static_cast<int>(decimals));
}

Value Byte(const Arguments& a) {
  const long number = a[0].ToLong();
  if (number < 0 || number > 0xFF) throw RuntimeError::Overflow();
  return static_cast<double>(number);
}

Value IsNumeric(const Arguments& a) {
  const Value& value = a[0];
  return value.IsNumber() || value.IsBoolean() || value.IsEmpty() ||
         (value.IsText() && ParseNumber(value.text()).has_value());
}

constexpr auto kFunctions = std::to_array<ExpressionFunction>({
    {"INT", 1, 1, [](const Arguments& a) { return Int(a[0]); }},
    {"FIX", 1, 1, [](const Arguments& a) { return Fix(a[0]); }},
    {"ABS", 1, 1, OfNumber<std::fabs>, OfNull::IsNull},
    {"SGN", 1, 1, OfNumber<Sign>, OfNull::IsNull},
    {"SQR", 1, 1, OfNumber<RootOf>, OfNull::IsNull},
    {"EXP", 1, 1, OfNumber<std::exp>, OfNull::IsNull},
    {"LOG", 1, 1, OfNumber<LogarithmOf>, OfNull::IsNull},
    {"SIN", 1, 1, OfNumber<std::sin>, OfNull::IsNull},
    {"COS", 1, 1, OfNumber<std::cos>, OfNull::IsNull},
    {"TAN", 1, 1, OfNumber<std::tan>, OfNull::IsNull},
    {"ATN", 1, 1, OfNumber<std::atan>, OfNull::IsNull},
    {"ROUND", 1, 2, Round, OfNull::IsNull},
    {"CDBL", 1, 1, [](const Arguments& a) -> Value { return a[0].ToDouble(); }},
    {"CSNG", 1, 1, OfNumber<SingleOf>},
    {"CBYTE", 1, 1, Byte},
    {"CINT", 1, 1, [](const Arguments& a) -> Value { return static_cast<double>(a[0].ToInt()); }},
    {"CLNG", 1, 1, [](const Arguments& a) -> Value { return static_cast<double>(a[0].ToLong()); }},
    {"CCUR", 1, 1, OfNumber<CurrencyOf>},
    {"CBOOL", 1, 1, [](const Arguments& a) -> Value { return a[0].ToBoolean(); }},
    {"ISNUMERIC", 1, 1, IsNumeric},
    {"ISNULL", 1, 1, [](const Arguments& a) -> Value { return a[0].IsNull(); }},
    {"ISEMPTY", 1, 1, [](const Arguments& a) -> Value { return a[0].IsEmpty(); }},
});

}  // namespace

std::span<const ExpressionFunction> NumberFunctions() { return kFunctions; }

}  // namespace ktl
