#include "database/drivers/field_values.h"

#include <fmt/format.h>

#include <cmath>

#include "database/database_error.h"
#include "database/stored_date.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

DatabaseError WrongType(const std::string& column) {
  return DatabaseError(fmt::format("The value does not fit the field {}.", column), kWrongTypeError);
}

double NumberFor(const Assignment& assignment) {
  const Value& value = assignment.value;
  double number = 0;
  if (value.IsText()) {
    const auto parsed = ParseNumber(value.text());
    if (!parsed) throw WrongType(assignment.column);
    number = *parsed;
  } else if (value.IsDate()) {
    throw WrongType(assignment.column);
  } else if (!value.IsEmpty()) {
    number = value.IsBoolean() ? (value.boolean() ? 1 : 0) : value.ToDouble();
  }
  if (!std::isfinite(number)) throw WrongType(assignment.column);
  return number;
}

Value DateFor(const Assignment& assignment) {
  const Value& value = assignment.value;
  if (value.IsDate()) return value;
  if (value.IsEmpty()) return Null{};
  const auto date = value.IsText() ? ParseDateLiteral(value.text()) : std::nullopt;
  if (!date) throw WrongType(assignment.column);
  return *date;
}

}  // namespace

Value FittedValue(const Assignment& assignment, const FieldKinds& fields) {
  const auto field = fields.find(assignment.column);
  if (field == fields.end())
    throw DatabaseError(fmt::format("There is no field {}.", assignment.column), kNoSuchFieldError);
  if (assignment.value.IsNull()) return Null{};
  switch (field->second) {
    case FieldKind::Date:
      return DateFor(assignment);
    case FieldKind::Real:
      return NumberFor(assignment);
    case FieldKind::Integer: {
      if (assignment.value.IsInteger()) return assignment.value;
      const double number = RoundHalfEven(NumberFor(assignment));
      if (std::fabs(number) >= 9e18) throw WrongType(assignment.column);
      return static_cast<long long>(number);
    }
    case FieldKind::Text:
      break;
  }
  return assignment.value.IsEmpty() ? Value("") : Value(assignment.value.ToText());
}

}  // namespace ktl
