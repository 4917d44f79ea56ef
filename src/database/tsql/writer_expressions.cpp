#include <algorithm>
#include <span>

#include "database/stored_date.h"
#include "database/tsql/lexer.h"
#include "database/tsql/words.h"
#include "database/tsql/writer.h"

namespace ktl::tsql {

namespace {

// The comparer that every text comparison goes by, as the texts themselves name it.
constexpr std::string_view kTextComparer = "SQL_Latin1_General_CP1_CI_AS";

bool IsPrimary(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::Number:
    case ExprKind::Text:
    case ExprKind::Null:
    case ExprKind::Name:
    case ExprKind::Variable:
    case ExprKind::Subquery:
    case ExprKind::Function:
      return true;
    default:
      return false;
  }
}

bool IsCondition(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::Compare:
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

}  // namespace

void Writer::RefuseAt(const Expr& expr, const std::string& why) const { Refuse(text_, expr.offset, why); }

bool Writer::NeedsComparer(const Expr& expr) const {
  return TypeOf(expr) == Type::Text && !ComparesItself(expr);
}

void Writer::WriteExpr(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::Arithmetic:
      return WriteArithmetic(expr);
    case ExprKind::Compare:
      return WriteCompare(expr);
    case ExprKind::Between:
      return WriteBetween(expr);
    case ExprKind::In:
      return WriteIn(expr);
    case ExprKind::Like:
      return WriteLike(expr);
    case ExprKind::Case:
      return WriteCase(expr);
    case ExprKind::Function:
      return WriteFunction(expr);
    case ExprKind::Cast:
      return WriteCast(expr);
    case ExprKind::Exists:
    case ExprKind::Subquery:
      Put(expr.kind == ExprKind::Exists ? "EXISTS (" : "(");
      WriteQuery(*expr.query);
      return Put(")");
    default:
      return expr.args.empty() ? WriteLeaf(expr) : WriteOperator(expr);
  }
}

void Writer::WriteLeaf(const Expr& expr) {
  if (!expr.qualifier.empty()) {
    WriteObjectName(expr.qualifier);
    Put(".");
  }
  switch (expr.kind) {
    case ExprKind::Number:
      if (expr.text[0] != '?') return WriteNumber(expr.text);
      // The point of a parameter tells its type alone.
      return WriteParameter(expr.text.substr(0, expr.text.size() - (expr.text.ends_with('.') ? 1 : 0)));
    case ExprKind::Text:
      return Put(expr.text.substr(expr.text.find('\'')));
    case ExprKind::Null:
      return Put("NULL");
    case ExprKind::Default:
      RefuseAt(expr, "DEFAULT where a value is expected");
    case ExprKind::Name:
      return WriteName(expr.text);
    case ExprKind::Star:
      return Put("*");
    case ExprKind::Variable:
      RequireDeclared(expr.text);
      return WriteVariable(expr.text);
    case ExprKind::DatePart:
      return WriteDatePart(expr.text);
    default:
      return Put(expr.text);
  }
}

void Writer::WriteOperator(const Expr& expr) {
  const Expr& operand = *expr.args[0];
  if (expr.kind == ExprKind::Logical) {
    WriteCondition(operand, expr.text);
    Put(" ", expr.text, " ");
    return WriteCondition(*expr.args[1], {});
  }
  if (expr.kind == ExprKind::Negate) Put("-");
  if (expr.kind == ExprKind::Not) Put("NOT ");
  WriteOperand(operand);
  if (expr.kind == ExprKind::IsNull) Put(expr.negated ? " IS NOT NULL" : " IS NULL");
  if (expr.kind == ExprKind::Collate) WriteCollation(expr.text);
}

void Writer::WriteOperand(const Expr& expr) {
  if (IsPrimary(expr)) return WriteExpr(expr);
  Put("(");
  WriteExpr(expr);
  Put(")");
}

void Writer::WriteCondition(const Expr& expr, std::string_view logical) {
  const bool sameChain = expr.kind == ExprKind::Logical && SameWord(expr.text, logical);
  if (sameChain || IsCondition(expr)) return WriteExpr(expr);
  WriteOperand(expr);
}

// "+" joins texts and adds numbers.
void Writer::WriteArithmetic(const Expr& expr) {
  const Expr &left = *expr.args[0], &right = *expr.args[1];
  const Type leftType = TypeOf(left), rightType = TypeOf(right);
  if (leftType == Type::Date || rightType == Type::Date) RefuseAt(expr, "no arithmetic with dates is known");
  if (expr.text == "/") {
    WriteQuotient(left, right);
  } else if (expr.text != "+" || IsNumber(leftType) || IsNumber(rightType)) {
    WriteCompared(left, Type::Real, true);
    Put(" ", expr.text, " ");
    WriteCompared(right, Type::Real, true);
  } else if (leftType == Type::Text && rightType == Type::Text) {
    WriteJoined(left, right);
  } else {
    WriteSum(left, right);
  }
}

void Writer::WriteQuotient(const Expr& left, const Expr& right) {
  WriteCompared(left, Type::Real, true);
  Put(" / ");
  WriteCompared(right, Type::Real, true);
}

void Writer::WriteJoined(const Expr& left, const Expr& right) {
  WriteOperand(left);
  Put(" || ");
  WriteOperand(right);
}

void Writer::WriteDateLiteral(const Expr& literal) {
  const auto date = ParseDateLiteral(Unquote(literal.text));
  if (!date) RefuseAt(literal, "the text is no date");
  WriteDate(*date);
}

void Writer::WriteDate(const Date& date) { Put("'", StoredDate(date), "'"); }

void Writer::WriteAs(const Expr& expr, Type type) {
  if (type == Type::Date && expr.kind == ExprKind::Text) return WriteDateLiteral(expr);
  WriteExpr(expr);
}

void Writer::WriteCompared(const Expr& expr, Type other, bool equality) {
  if (other == Type::Date && expr.kind == ExprKind::Text) return WriteDateLiteral(expr);
  if (TypeOf(expr) == Type::Text && IsNumber(other) && !(equality && MeetsNumbers(expr)))
    return WriteNumeric(expr);
  WriteOperand(expr);
}

void Writer::WriteEqualed(const Expr& expr, const Expr& other) {
  const Type type = TypeOf(other);
  if (IsNumber(TypeOf(expr)) && type == Type::Text && MeetsNumbers(other)) return WriteForText(expr);
  WriteCompared(expr, type, true);
}

void Writer::WriteComparer() { Put(" COLLATE ", kTextComparer); }

void Writer::WriteCompare(const Expr& expr) {
  const Expr &left = *expr.args[0], &right = *expr.args[1];
  const Type leftType = TypeOf(left), rightType = TypeOf(right);
  const bool equality = expr.text == "=" || expr.text == "<>";
  const auto mayBeText = [](Type type) { return type == Type::Text || type == Type::Unknown; };
  const bool texts = (leftType == Type::Text || rightType == Type::Text) && mayBeText(leftType) &&
                     mayBeText(rightType) && !ComparesItself(left) && !ComparesItself(right);
  equality ? WriteEqualed(left, right) : WriteCompared(left, rightType, false);
  if (texts) WriteComparer();
  Put(" ", expr.text, " ");
  equality ? WriteEqualed(right, left) : WriteCompared(right, leftType, false);
}

void Writer::WriteBetween(const Expr& expr) {
  const Expr &value = *expr.args[0], &low = *expr.args[1], &high = *expr.args[2];
  const Type type = TypeOf(value);
  const bool dates =
      std::ranges::any_of(expr.args, [this](const ExprPtr& arg) { return TypeOf(*arg) == Type::Date; });
  WriteCompared(value, dates ? Type::Date : TypeOf(low), false);
  if (!dates && NeedsComparer(value) && !IsNumber(TypeOf(low))) WriteComparer();
  Put(expr.negated ? " NOT BETWEEN " : " BETWEEN ");
  WriteCompared(low, dates ? Type::Date : type, false);
  Put(" AND ");
  WriteCompared(high, dates ? Type::Date : type, false);
}

void Writer::WriteIn(const Expr& expr) {
  const Expr& value = *expr.args[0];
  const Type other = TypeOf(expr.query ? *expr.query->cores.front().items.front().expr : *expr.args[1]);
  WriteCompared(value, other, true);
  if (NeedsComparer(value) && !IsNumber(other)) WriteComparer();
  if (expr.query) return WriteInQuery(expr);
  List(expr.negated ? " NOT IN (" : " IN (", std::span(expr.args).subspan(1),
       [&](const ExprPtr& candidate) { WriteEqualed(*candidate, value); });
  Put(")");
}

void Writer::WriteInQuery(const Expr& expr) {
  Put(expr.negated ? " NOT IN (" : " IN (");
  WriteQuery(*expr.query);
  Put(")");
}

void Writer::WriteLike(const Expr& expr) {
  WriteOperand(*expr.args[0]);
  Put(expr.negated ? " NOT LIKE " : " LIKE ");
  WriteOperand(*expr.args[1]);
  if (expr.args.size() < 3) return;
  Put(" ESCAPE ");
  WriteOperand(*expr.args[2]);
}

void Writer::WriteCase(const Expr& expr) {
  const Type result = TypeOf(expr);
  const Expr* operand = expr.hasOperand ? expr.args[0].get() : nullptr;
  Put("CASE");
  if (operand != nullptr) {
    const Type first = TypeOf(*expr.args[1]);
    Put(" ");
    WriteCompared(*operand, first, true);
    if (NeedsComparer(*operand) && !IsNumber(first)) WriteComparer();
  }
  const std::size_t pairsEnd = expr.args.size() - (expr.hasElse ? 1 : 0);
  for (std::size_t i = operand != nullptr ? 1 : 0; i < pairsEnd; i += 2) {
    Put(" WHEN ");
    if (operand != nullptr)
      WriteCompared(*expr.args[i], TypeOf(*operand), true);
    else
      WriteExpr(*expr.args[i]);
    Put(" THEN ");
    WriteAs(*expr.args[i + 1], result);
  }
  if (expr.hasElse) {
    Put(" ELSE ");
    WriteAs(*expr.args.back(), result);
  }
  Put(" END");
}

void Writer::WriteFunction(const Expr& expr) {
  const Function* function = FindFunction(expr.text);
  const bool ours = expr.qualifier.empty() || SameWord(expr.qualifier, "dbo");
  const std::string_view name = function == nullptr || !ours ? "" : NameOf(*function);
  if (name.empty()) RefuseAt(expr, "the function \"" + std::string(expr.text) + "\" is unknown");
  if (expr.args.size() < function->minArguments || expr.args.size() > function->maxArguments)
    RefuseAt(expr, "the number of arguments of \"" + std::string(expr.text) + "\" is wrong");
  if ((function->role == Role::Window) != expr.hasOver) RefuseAt(expr, "OVER is for ROW_NUMBER alone");
  if (expr.distinct && function->role != Role::Aggregate) RefuseAt(expr, "DISTINCT where none is possible");
  for (const auto& argument : expr.args)
    if (argument->kind == ExprKind::Star && function->name != "COUNT")
      RefuseAt(*argument, "\"*\" is for COUNT alone");
  WriteCall(expr, *function);
  if (!expr.hasOver) return;
  Put(" OVER (");
  WriteOrderBy(expr.over, nullptr);
  Put(")");
}

void Writer::WriteCall(const Expr& expr, const Function& function) {
  Put(NameOf(function), expr.distinct ? "(DISTINCT " : "(");
  for (std::size_t i = 0; i < expr.args.size(); ++i) {
    if (i > 0) Put(", ");
    WriteArgument(expr, function, i);
  }
  Put(")");
}

void Writer::WriteArgument(const Expr& call, const Function& function, std::size_t argument) {
  const Expr& value = *call.args[argument];
  const Type type = function.role == Role::Dates ? Type::Date : TypeOf(call);
  const bool sameType = function.result == Type::NotAsked || function.role == Role::Dates;
  if (value.kind == ExprKind::Default && function.name == "UDF_GETEMPLOCK")
    Put("NULL");
  else if (function.role == Role::Aggregate || (function.name == "NULLIF" && type == Type::Text))
    WriteKey(value, value);
  else
    WriteAs(value, sameType ? type : Type::Unknown);
}

void Writer::WriteCast(const Expr& expr) {
  const TypeName* name = FindTypeName(expr.text);
  if (name == nullptr) RefuseAt(expr, "the type \"" + std::string(expr.text) + "\" is unknown");
  const Expr& value = *expr.args[0];
  switch (name->type) {
    case Type::Text:
      return WriteTextCast(expr);
    case Type::Date:
      if (value.kind != ExprKind::Text && TypeOf(value) != Type::Date)
        RefuseAt(expr, "only a text in quotes or a date becomes a date");
      return WriteAs(value, Type::Date);
    default:
      break;
  }
  // A decimal keeps its fraction when it is divided.
  if (name->scale)
    WriteDecimal(value, expr.scale > 0 ? expr.scale : *name->scale);
  else
    WriteConverted(value, name->type);
}

void Writer::WriteTextCast(const Expr& expr) {
  const Expr& value = *expr.args[0];
  const Type type = TypeOf(value);
  if (type == Type::Date) RefuseAt(expr, "a date has no agreed text");
  const bool cut = expr.length > 0 && type == Type::Text;
  if (cut) Put(NameOf(*FindFunction("LEFT")), "(");
  WriteConverted(value, Type::Text);
  if (cut) Put(", ", std::to_string(expr.length), ")");
}

}  // namespace ktl::tsql
