#include <algorithm>

#include "database/stored_date.h"
#include "database/tsql/lexer.h"
#include "database/tsql/words.h"
#include "database/tsql/writer.h"

namespace ktl::tsql {

namespace {

bool IsNumber(Type type) { return type == Type::Integer || type == Type::Real; }

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

void EmbeddedWriter::RefuseAt(const Expr& expr, const std::string& why) const {
  Refuse(text_, expr.offset, why);
}

bool EmbeddedWriter::NeedsComparer(const Expr& expr) const {
  return typing_.Of(expr) == Type::Text && !ComparesItself(expr);
}

void EmbeddedWriter::WriteExpr(const Expr& expr) {
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
      out_ += expr.kind == ExprKind::Exists ? "EXISTS (" : "(";
      WriteQuery(*expr.query);
      out_ += ')';
      return;
    default:
      return expr.args.empty() ? WriteLeaf(expr) : WriteOperator(expr);
  }
}

void EmbeddedWriter::WriteLeaf(const Expr& expr) {
  if (!expr.qualifier.empty()) Name(expr.qualifier), out_ += '.';
  switch (expr.kind) {
    case ExprKind::Number:
      out_ += expr.text;
      // The point of a parameter tells its type alone.
      if (expr.text[0] == '?' && expr.text.ends_with('.')) out_.pop_back();
      break;
    case ExprKind::Text:
      out_ += expr.text.substr(expr.text.find('\''));
      break;
    case ExprKind::Null:
      out_ += "NULL";
      break;
    case ExprKind::Default:
      RefuseAt(expr, "DEFAULT where a value is expected");
    case ExprKind::Name:
      Name(expr.text);
      break;
    case ExprKind::Star:
      out_ += '*';
      break;
    case ExprKind::Variable:
      out_ += "KL_GET('", out_ += expr.text, out_ += "')";
      break;
    default:
      out_ += expr.text;
  }
}

void EmbeddedWriter::WriteOperator(const Expr& expr) {
  const Expr& operand = *expr.args[0];
  if (expr.kind == ExprKind::Logical) {
    WriteCondition(operand, expr.text);
    out_ += ' ', out_ += expr.text, out_ += ' ';
    return WriteCondition(*expr.args[1], {});
  }
  if (expr.kind == ExprKind::Negate) out_ += '-';
  if (expr.kind == ExprKind::Not) out_ += "NOT ";
  WriteOperand(operand);
  if (expr.kind == ExprKind::IsNull) out_ += expr.negated ? " IS NOT NULL" : " IS NULL";
  if (expr.kind == ExprKind::Collate) out_ += " COLLATE ", out_ += expr.text;
}

void EmbeddedWriter::WriteOperand(const Expr& expr) {
  if (IsPrimary(expr)) return WriteExpr(expr);
  out_ += '(';
  WriteExpr(expr);
  out_ += ')';
}

void EmbeddedWriter::WriteCondition(const Expr& expr, std::string_view logical) {
  const bool sameChain = expr.kind == ExprKind::Logical && SameWord(expr.text, logical);
  if (sameChain || IsCondition(expr)) return WriteExpr(expr);
  WriteOperand(expr);
}

// "+" joins texts and adds numbers; what cannot be told from the names is decided row by row.
void EmbeddedWriter::WriteArithmetic(const Expr& expr) {
  const Expr &left = *expr.args[0], &right = *expr.args[1];
  const Type leftType = typing_.Of(left), rightType = typing_.Of(right);
  if (leftType == Type::Date || rightType == Type::Date) RefuseAt(expr, "no arithmetic with dates is known");
  if (expr.text != "+" || IsNumber(leftType) || IsNumber(rightType)) {
    WriteCompared(left, Type::Real, true);
    out_ += ' ', out_ += expr.text, out_ += ' ';
    WriteCompared(right, Type::Real, true);
  } else if (leftType == Type::Text && rightType == Type::Text) {
    WriteOperand(left);
    out_ += " || ";
    WriteOperand(right);
  } else {
    out_ += "KL_ADD(";
    WriteExpr(left);
    out_ += ", ";
    WriteExpr(right);
    out_ += ')';
  }
}

void EmbeddedWriter::WriteNumeric(const Expr& expr) {
  out_ += "CAST(";
  WriteExpr(expr);
  out_ += " AS NUMERIC)";
}

void EmbeddedWriter::WriteDateLiteral(const Expr& literal) {
  const auto date = ParseDateLiteral(Unquote(literal.text));
  if (!date) RefuseAt(literal, "the text is no date");
  out_ += '\'', out_ += StoredDate(*date), out_ += '\'';
}

void EmbeddedWriter::WriteAs(const Expr& expr, Type type) {
  if (type == Type::Date && expr.kind == ExprKind::Text) return WriteDateLiteral(expr);
  WriteExpr(expr);
}

// One side of a comparison whose other side has the type given. A bare text column equals a number by its own
// affinity; any other text must be made a number first.
void EmbeddedWriter::WriteCompared(const Expr& expr, Type other, bool equality) {
  const Type type = typing_.Of(expr);
  if (other == Type::Date && expr.kind == ExprKind::Text) return WriteDateLiteral(expr);
  if (type == Type::Text && IsNumber(other) && !(equality && expr.kind == ExprKind::Name))
    return WriteNumeric(expr);
  WriteOperand(expr);
}

void EmbeddedWriter::WriteCompare(const Expr& expr) {
  const Expr &left = *expr.args[0], &right = *expr.args[1];
  const Type leftType = typing_.Of(left), rightType = typing_.Of(right);
  const bool equality = expr.text == "=" || expr.text == "<>";
  const auto mayBeText = [](Type type) { return type == Type::Text || type == Type::Unknown; };
  const bool texts = (leftType == Type::Text || rightType == Type::Text) && mayBeText(leftType) &&
                     mayBeText(rightType) && !ComparesItself(left) && !ComparesItself(right);
  WriteCompared(left, rightType, equality);
  if (texts) WriteComparer();
  out_ += ' ', out_ += expr.text, out_ += ' ';
  WriteCompared(right, leftType, equality);
}

void EmbeddedWriter::WriteBetween(const Expr& expr) {
  const Expr &value = *expr.args[0], &low = *expr.args[1], &high = *expr.args[2];
  const Type type = typing_.Of(value);
  const bool dates =
      std::ranges::any_of(expr.args, [this](const ExprPtr& arg) { return typing_.Of(*arg) == Type::Date; });
  WriteCompared(value, dates ? Type::Date : typing_.Of(low), false);
  if (!dates && NeedsComparer(value) && !IsNumber(typing_.Of(low))) WriteComparer();
  out_ += expr.negated ? " NOT BETWEEN " : " BETWEEN ";
  WriteCompared(low, dates ? Type::Date : type, false);
  out_ += " AND ";
  WriteCompared(high, dates ? Type::Date : type, false);
}

void EmbeddedWriter::WriteIn(const Expr& expr) {
  const Expr& value = *expr.args[0];
  const Type type = typing_.Of(value);
  const Expr& first = expr.query ? *expr.query->cores.front().items.front().expr : *expr.args[1];
  const Type other = typing_.Of(first);
  WriteCompared(value, other, true);
  if (NeedsComparer(value) && !IsNumber(other)) WriteComparer();
  out_ += expr.negated ? " NOT IN (" : " IN (";
  if (expr.query) WriteQuery(*expr.query);
  for (std::size_t i = 1; i < expr.args.size(); ++i) {
    if (i > 1) out_ += ", ";
    WriteCompared(*expr.args[i], type, true);
  }
  out_ += ')';
}

void EmbeddedWriter::WriteLike(const Expr& expr) {
  WriteOperand(*expr.args[0]);
  out_ += expr.negated ? " NOT LIKE " : " LIKE ";
  WriteOperand(*expr.args[1]);
  if (expr.args.size() < 3) return;
  out_ += " ESCAPE ";
  WriteOperand(*expr.args[2]);
}

void EmbeddedWriter::WriteCase(const Expr& expr) {
  const Type result = typing_.Of(expr);
  const Expr* operand = expr.hasOperand ? expr.args[0].get() : nullptr;
  out_ += "CASE";
  if (operand != nullptr) {
    out_ += ' ';
    WriteCompared(*operand, typing_.Of(*expr.args[1]), true);
    if (NeedsComparer(*operand) && !IsNumber(typing_.Of(*expr.args[1]))) WriteComparer();
  }
  const std::size_t pairsEnd = expr.args.size() - (expr.hasElse ? 1 : 0);
  for (std::size_t i = operand != nullptr ? 1 : 0; i < pairsEnd; i += 2) {
    out_ += " WHEN ";
    if (operand != nullptr)
      WriteCompared(*expr.args[i], typing_.Of(*operand), true);
    else
      WriteExpr(*expr.args[i]);
    out_ += " THEN ";
    WriteAs(*expr.args[i + 1], result);
  }
  if (expr.hasElse) {
    out_ += " ELSE ";
    WriteAs(*expr.args.back(), result);
  }
  out_ += " END";
}

void EmbeddedWriter::WriteFunction(const Expr& expr) {
  const Function* function = FindFunction(expr.text);
  const bool ours = expr.qualifier.empty() || SameWord(expr.qualifier, "dbo");
  if (function == nullptr || !ours)
    RefuseAt(expr, "the function \"" + std::string(expr.text) + "\" is unknown");
  if (expr.args.size() < function->minArguments || expr.args.size() > function->maxArguments)
    RefuseAt(expr, "the number of arguments of \"" + std::string(expr.text) + "\" is wrong");
  if ((function->role == Role::Window) != expr.hasOver) RefuseAt(expr, "OVER is for ROW_NUMBER alone");
  if (expr.distinct && function->role != Role::Aggregate) RefuseAt(expr, "DISTINCT where none is possible");
  out_ += function->written;
  out_ += expr.distinct ? "(DISTINCT " : "(";
  if (function->name == "DATEDIFF") WriteDatePart(*expr.args[0]);
  WriteArguments(expr, *function);
  out_ += ')';
  if (!expr.hasOver) return;
  out_ += " OVER (";
  WriteOrderBy(expr.over, nullptr);
  out_ += ')';
}

void EmbeddedWriter::WriteArguments(const Expr& expr, const Function& function) {
  const Type type = function.role == Role::Dates ? Type::Date : typing_.Of(expr);
  const bool sameType = function.result == Type::NotAsked || function.role == Role::Dates;
  for (std::size_t i = function.name == "DATEDIFF" ? 1 : 0; i < expr.args.size(); ++i) {
    const Expr& argument = *expr.args[i];
    if (i > 0) out_ += ", ";
    if (argument.kind == ExprKind::Star && function.name != "COUNT")
      RefuseAt(argument, "\"*\" is for COUNT alone");
    if (argument.kind == ExprKind::Default && function.name == "UDF_GETEMPLOCK")
      out_ += "NULL";
    else if (function.role == Role::Aggregate)
      WriteKey(argument, argument);
    else if (sameType)
      WriteAs(argument, type);
    else
      WriteExpr(argument);
  }
}

// The first argument is a word of the language, not a column.
void EmbeddedWriter::WriteDatePart(const Expr& expr) {
  for (const std::string_view part : {"DAY", "MONTH", "YEAR"})
    if (expr.kind == ExprKind::Name && SameWord(expr.text, part)) {
      out_ += '\'', out_ += part, out_ += '\'';
      return;
    }
  RefuseAt(expr, "DAY, MONTH or YEAR is expected");
}

void EmbeddedWriter::WriteCast(const Expr& expr) {
  const auto type = TypeOfTypeName(expr.text);
  if (!type) RefuseAt(expr, "the type \"" + std::string(expr.text) + "\" is unknown");
  const Expr& value = *expr.args[0];
  switch (*type) {
    case Type::Text:
      return WriteTextCast(expr);
    case Type::Date:
      if (value.kind == ExprKind::Text) return WriteDateLiteral(value);
      if (typing_.Of(value) != Type::Date) RefuseAt(expr, "only a text in quotes or a date becomes a date");
      return WriteOperand(value);
    case Type::Integer:
      out_ += "CAST(";
      WriteExpr(value);
      out_ += " AS INTEGER)";
      return;
    default:
      break;
  }
  // A decimal stays a decimal, so that what divides it keeps the fraction.
  const bool binary = SameWord(expr.text, "FLOAT") || SameWord(expr.text, "REAL");
  const int scale = SameWord(expr.text, "MONEY") ? 4 : expr.scale;
  out_ += binary ? "CAST(" : "CAST(KL_ROUND(";
  WriteExpr(value);
  if (!binary) out_ += ", " + std::to_string(scale) + ")";
  out_ += " AS REAL)";
}

void EmbeddedWriter::WriteTextCast(const Expr& expr) {
  const Expr& value = *expr.args[0];
  const Type type = typing_.Of(value);
  if (type == Type::Date) RefuseAt(expr, "a date has no agreed text");
  const bool cut = expr.length > 0 && type == Type::Text;
  if (cut) out_ += "KL_LEFT(";
  out_ += type == Type::Text || type == Type::Integer ? "CAST(" : "KL_TEXT(";
  WriteExpr(value);
  out_ += type == Type::Text || type == Type::Integer ? " AS TEXT)" : ")";
  if (cut) out_ += ", " + std::to_string(expr.length) + ")";
}

}  // namespace ktl::tsql
