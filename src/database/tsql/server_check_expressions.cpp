#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "database/stored_date.h"
#include "database/tsql/same_expression.h"
#include "database/tsql/server_check.h"
#include "database/tsql/words.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl::tsql {

namespace {

bool IsCondition(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::Not:
    case ExprKind::Compare:
    case ExprKind::Logical:
    case ExprKind::Between:
    case ExprKind::In:
    case ExprKind::Like:
    case ExprKind::IsNull:
    case ExprKind::Exists:
      return true;
    default:
      return false;
  }
}

std::string Unquoted(const Expr& literal) {
  return std::string(literal.text.substr(1, literal.text.size() - 2));
}

// A literal that SQL Server turns into a number without an error.
bool ReadsAsNumber(const Expr& expr) {
  if (expr.kind != ExprKind::Text) return false;
  const std::string text = Trim(Unquoted(expr));
  return text.empty() || ParseNumber(text).has_value();
}

// Whatever the order of day and month is in the server's language: with the name of the month, or the year in
// front.
bool ReadsAsDate(const Expr& literal) {
  const std::string text = Unquoted(literal);
  if (Trim(text).empty()) return true;
  const bool namesMonth = text.find_first_not_of("0123456789/- :") != text.npos;
  const bool yearFirst = text.size() > 4 && text.find_first_not_of("0123456789") == 4;
  return (namesMonth || yearFirst) && ParseDateLiteral(text).has_value();
}

// The one column of texts that holds nothing but numbers.
bool HoldsNumbers(const Expr& expr) {
  return expr.kind != ExprKind::Name || TypeOfColumn(expr.text) != Type::Text ||
         SameWord(expr.text, "FINANCIALYEAR");
}

bool IsOfServer(std::string_view function) { return !function.starts_with("KTL_"); }

// The host's own functions are called with their owner, the server's without.
bool IsOfHost(std::string_view function) {
  return function == "FNSTRMONTHNAME" || function == "UDF_GETEMPLOCK";
}

bool Has(const std::vector<std::string>& names, std::string_view wanted) {
  return std::ranges::any_of(names, [&](const std::string& name) { return SameWord(name, wanted); });
}

}  // namespace

void ServerCheck::RefuseAggregates(const Expr* expr, const char* where) {
  if (expr != nullptr && HasAggregate(*expr))
    Fault(expr->offset, fmt::format("an aggregate stands in {}", where));
}

void ServerCheck::CheckCondition(const Expr& expr, Scope& scope) {
  if (!IsCondition(expr)) Fault(expr.offset, "a value stands where a condition must be");
  if (expr.kind == ExprKind::Logical || expr.kind == ExprKind::Not) {
    for (const auto& part : expr.args) CheckCondition(*part, scope);
  } else {
    CheckPart(expr, scope);
  }
}

void ServerCheck::CheckValue(const Expr& expr, Scope& scope) {
  if (IsCondition(expr)) return Fault(expr.offset, "a condition stands where a value must be");
  CheckPart(expr, scope);
}

void ServerCheck::CheckPart(const Expr& expr, Scope& scope) {
  const auto isGroup = [&](const ExprPtr& group) { return SameExpression(*group, expr); };
  if (scope.grouped != nullptr && expr.kind != ExprKind::Name &&
      std::ranges::any_of(scope.grouped->groupBy, isGroup))
    return;
  switch (expr.kind) {
    case ExprKind::Name:
      return CheckName(expr, scope);
    case ExprKind::Variable:
      if (!variables_.contains(UpperCase(expr.text)))
        Fault(expr.offset, fmt::format("{} is not declared", expr.text));
      return;
    case ExprKind::Function:
      return CheckFunction(expr, scope);
    case ExprKind::Case:
      return CheckCase(expr, scope);
    case ExprKind::Arithmetic:
      CheckSum(expr);
      break;
    case ExprKind::Negate:
      if (const Type type = TypeOf(*expr.args[0]); type == Type::Text || type == Type::Date)
        Fault(expr.offset, "what is no number is reckoned with");
      break;
    case ExprKind::Compare:
    case ExprKind::Between:
    case ExprKind::In:
      CheckCompared(expr);
      break;
    case ExprKind::Collate:
      if (const Type type = TypeOf(*expr.args[0]); IsNumber(type) || type == Type::Date)
        Fault(expr.offset, "COLLATE follows what is no text");
      break;
    case ExprKind::Cast:
      if (FindTypeName(expr.text) == nullptr)
        Fault(expr.offset, fmt::format("the type {} is unknown", expr.text));
      break;
    case ExprKind::Logical:
    case ExprKind::Not:
      return CheckCondition(expr, scope);
    default:
      break;
  }
  CheckInner(expr, scope);
  for (const auto& part : expr.args) CheckValue(*part, scope);
}

void ServerCheck::CheckInner(const Expr& expr, const Scope& scope) {
  if (!expr.query) return;
  if (scope.inAggregate) Fault(expr.offset, "an aggregate holds an inner query");
  CheckQuery(*expr.query, &scope, expr.kind == ExprKind::Exists ? Place::Exists : Place::Value);
}

ServerCheck::Meets ServerCheck::Look(const Expr& name, const Scope& scope) const {
  int found = 0;
  bool open = false;
  for (const auto& source : scope.sources) {
    if (!name.qualifier.empty() && !SameWord(source.called, name.qualifier)) continue;
    if (Has(source.columns.names, name.text)) ++found;
    open |= source.columns.open;
  }
  if (found > 1) return Meets::Several;
  return found == 1 || open ? Meets::One : Meets::Nothing;
}

// The nearest query that has the name is meant.
void ServerCheck::CheckName(const Expr& expr, const Scope& scope) {
  CheckWord(expr.text, expr.offset);
  for (const Scope* here = &scope; here != nullptr; here = here->outer) {
    const Meets meets = Look(expr, *here);
    if (meets == Meets::Several) Fault(expr.offset, fmt::format("{} is ambiguous", expr.text));
    if (meets != Meets::Nothing) return CheckGrouped(expr, *here);
  }
  Fault(expr.offset, fmt::format("there is no column {}{}{}", expr.qualifier,
                                 expr.qualifier.empty() ? "" : ".", expr.text));
}

void ServerCheck::CheckGrouped(const Expr& expr, const Scope& scope) {
  if (scope.grouped == nullptr || scope.inAggregate) return;
  const auto& groups = scope.grouped->groupBy;
  if (std::ranges::none_of(groups, [&](const ExprPtr& group) { return SameExpression(*group, expr); }))
    Fault(expr.offset, fmt::format("{} is neither grouped nor in an aggregate", expr.text));
}

void ServerCheck::CheckFunction(const Expr& expr, Scope& scope) {
  const Function* function = FindFunction(expr.text);
  if (function == nullptr || !IsOfServer(function->name)) {
    Fault(expr.offset, fmt::format("there is no function {}", expr.text));
  } else {
    if (expr.args.size() < function->minArguments || expr.args.size() > function->maxArguments)
      Fault(expr.offset, fmt::format("{} gets {} arguments", function->name, expr.args.size()));
    if (IsOfHost(function->name) == expr.qualifier.empty())
      Fault(expr.offset, fmt::format("{} is called {} its owner", function->name,
                                     expr.qualifier.empty() ? "without" : "with"));
    if ((function->role == Role::Window) != expr.hasOver)
      Fault(expr.offset, fmt::format("{} and OVER do not go together", function->name));
    if (function->role == Role::Aggregate) return CheckAggregate(expr, scope);
    if (SameWord(expr.text, "ISNULL") && expr.args.size() == 2)
      CheckTogether(*expr.args[0], *expr.args[1], "ISNULL");
    if (SameWord(expr.text, "SUBSTRING") && !expr.args.empty() && IsNumber(TypeOf(*expr.args[0])))
      Fault(expr.offset, "SUBSTRING takes no number");
  }
  for (const auto& argument : expr.args) CheckValue(*argument, scope);
  for (const auto& item : expr.over) CheckValue(*item.expr, scope);
}

void ServerCheck::CheckAggregate(const Expr& expr, Scope& scope) {
  const Expr& argument = *expr.args.front();
  if (HasAggregate(argument)) Fault(expr.offset, "an aggregate holds an aggregate");
  if (const Type type = TypeOf(argument); SameWord(expr.text, "SUM") && !IsNumber(type)) {
    if (type == Type::Text) Fault(expr.offset, "a text is summed");
    if (type == Type::Date) Fault(expr.offset, "a date is summed");
  }
  const bool within = std::exchange(scope.inAggregate, true);
  CheckValue(argument, scope);
  scope.inAggregate = within;
}

void ServerCheck::CheckCase(const Expr& expr, Scope& scope) {
  const std::size_t last = expr.args.size() - (expr.hasElse ? 1 : 0);
  const Expr* result = nullptr;
  const auto checkResult = [&](const Expr& value) {
    CheckValue(value, scope);
    if (result != nullptr) CheckTogether(*result, value, "CASE");
    if (result == nullptr || result->kind == ExprKind::Null) result = &value;
  };
  if (expr.hasOperand) CheckValue(*expr.args[0], scope);
  for (std::size_t i = expr.hasOperand ? 1 : 0; i + 1 < last; i += 2) {
    expr.hasOperand ? CheckValue(*expr.args[i], scope) : CheckCondition(*expr.args[i], scope);
    checkResult(*expr.args[i + 1]);
  }
  if (expr.hasElse) checkResult(*expr.args.back());
  if (result != nullptr && result->kind == ExprKind::Null)
    Fault(expr.offset, "a CASE gives nothing but NULL");
}

// Of two values that meet the number or the date is what the server makes both of: a text that is none ends
// the statement, and one that is another date to the server answers other rows.
void ServerCheck::CheckLiteral(Type beside, const Expr& literal, const char* where) {
  if (IsNumber(beside) && TypeOf(literal) == Type::Text && !ReadsAsNumber(literal))
    Fault(literal.offset, fmt::format("a text and a number meet in {}", where));
  if (beside == Type::Date && literal.kind == ExprKind::Text && !ReadsAsDate(literal))
    Fault(literal.offset, fmt::format("a date is in a form of its own in {}", where));
}

void ServerCheck::CheckTogether(const Expr& one, const Expr& other, const char* where) {
  CheckLiteral(TypeOf(one), other, where);
  CheckLiteral(TypeOf(other), one, where);
}

void ServerCheck::CheckAssigned(std::string_view column, const Expr& value) {
  if (value.kind == ExprKind::Text) CheckLiteral(TypeOfColumn(column), value, "what is written");
}

void ServerCheck::CheckSum(const Expr& expr) {
  const Expr &left = *expr.args[0], &right = *expr.args[1];
  const auto isFloat = [&](const Expr& side) { return TypeOf(side) == Type::Real && HasName(side); };
  if (expr.text == "%" && (isFloat(left) || isFloat(right)))
    Fault(expr.offset, "a remainder is taken of an amount");
  const Type a = TypeOf(left), b = TypeOf(right);
  if (expr.text != "+" &&
      ((a == Type::Text && b == Type::Text) || (expr.text != "-" && (a == Type::Date || b == Type::Date))))
    Fault(expr.offset, "what is no number is reckoned with");
  CheckTogether(left, right, "a sum");
}

void ServerCheck::CheckCompared(const Expr& expr) {
  const Expr& left = *expr.args[0];
  for (std::size_t i = 1; i < expr.args.size(); ++i) {
    const Expr& right = *expr.args[i];
    if (!HoldsNumbers(left) || !HoldsNumbers(right) || left.kind == ExprKind::Text ||
        right.kind == ExprKind::Text)
      CheckTogether(left, right, "a comparison");
  }
}

}  // namespace ktl::tsql
