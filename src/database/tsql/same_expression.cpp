#include "database/tsql/same_expression.h"

#include <algorithm>

#include "database/tsql/types.h"
#include "database/tsql/words.h"

namespace ktl::tsql {

namespace {

bool IsAggregate(const Expr& expr) {
  if (expr.kind != ExprKind::Function) return false;
  const Function* function = FindFunction(expr.text);
  return function != nullptr && function->role == Role::Aggregate && !expr.hasOver;
}

template <typename Is>
bool Holds(const Expr& expr, Is is) {
  return is(expr) || std::ranges::any_of(expr.args, [&](const ExprPtr& part) { return Holds(*part, is); });
}

bool SameQualifier(std::string_view a, std::string_view b) {
  return a.empty() || b.empty() || SameWord(a, b);
}

}  // namespace

bool SameExpression(const Expr& a, const Expr& b) {
  if (a.kind != b.kind || a.query || b.query || a.negated != b.negated || a.distinct != b.distinct ||
      a.hasOver || b.hasOver || a.hasOperand != b.hasOperand || a.length != b.length)
    return false;
  if (a.kind == ExprKind::Text ? a.text != b.text : !SameWord(a.text, b.text)) return false;
  return SameQualifier(a.qualifier, b.qualifier) &&
         std::ranges::equal(a.args, b.args,
                            [](const ExprPtr& x, const ExprPtr& y) { return SameExpression(*x, *y); });
}

bool HasAggregate(const Expr& expr) { return Holds(expr, IsAggregate); }

bool HasName(const Expr& expr) {
  return Holds(expr, [](const Expr& part) { return part.kind == ExprKind::Name; });
}

bool HasInnerQuery(const Expr& expr) {
  return Holds(expr, [](const Expr& part) { return part.query != nullptr; });
}

}  // namespace ktl::tsql
