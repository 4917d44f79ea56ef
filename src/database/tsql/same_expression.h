#pragma once

#include "database/tsql/tree.h"

namespace ktl::tsql {

// The same expression said twice, but for letter case; a name with its table is the same without it.
bool SameExpression(const Expr& a, const Expr& b);

// Of the expression itself; what inner queries hold is theirs.
bool HasAggregate(const Expr& expr);
bool HasName(const Expr& expr);
bool HasInnerQuery(const Expr& expr);

}  // namespace ktl::tsql
