#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "database/tsql/same_expression.h"
#include "database/tsql/server_check.h"
#include "database/tsql/words.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl::tsql {

namespace {

bool AnyAggregate(const SelectCore& core) {
  return (core.having && HasAggregate(*core.having)) ||
         std::ranges::any_of(core.items, [](const SelectItem& item) { return HasAggregate(*item.expr); });
}

std::string_view NameOf(const SelectItem& item) {
  if (!item.alias.empty()) return item.alias;
  return item.expr->kind == ExprKind::Name ? item.expr->text : std::string_view();
}

}  // namespace

std::optional<ServerCheck::Columns> ServerCheck::Find(std::string_view table) const {
  if (const auto made = made_.find(UpperCase(table)); made != made_.end()) return made->second;
  if (auto names = tables_(table)) return Columns{std::move(*names), false};
  return std::nullopt;
}

ServerCheck::Columns ServerCheck::ColumnsOf(const TableRef& table) {
  CheckWord(table.name, table.offset);
  const bool ofSystem = SameWord(table.schema, "SYS") || SameWord(table.schema, "INFORMATION_SCHEMA");
  const std::string name =
      ofSystem ? fmt::format("{}.{}", table.schema, table.name) : std::string(table.name);
  if (auto columns = Find(name)) return std::move(*columns);
  Fault(table.offset, fmt::format("there is no table {}", name));
  return {{}, true};
}

void ServerCheck::AddSources(const std::vector<TableRef>& from, Scope& scope) {
  for (const auto& table : from) {
    CheckWord(table.alias, table.offset);
    Source source{table.alias.empty() ? table.name : table.alias, table.name, {}};
    if (table.derived) {
      source.columns = CheckQuery(*table.derived, scope.outer, Place::Derived);
      CheckColumnNames(source.columns, table.alias, table.offset);
    } else {
      source.columns = ColumnsOf(table);
    }
    if (std::ranges::any_of(scope.sources,
                            [&](const Source& other) { return SameWord(other.called, source.called); }))
      Fault(table.offset, fmt::format("two tables are called {}", source.called));
    scope.sources.push_back(std::move(source));
  }
}

// A condition of a join sees the tables of its own join only, not those before a comma.
void ServerCheck::CheckOn(const std::vector<TableRef>& from, Scope& scope) {
  std::size_t first = 0;
  for (std::size_t i = 0; i < from.size(); ++i) {
    if (from[i].join == JoinKind::Comma) first = i;
    if (!from[i].on) continue;
    Scope joined{scope.outer, {}, nullptr, false};
    for (std::size_t j = first; j <= i; ++j) joined.sources.push_back(scope.sources[j]);
    RefuseAggregates(from[i].on.get(), "ON");
    CheckCondition(*from[i].on, joined);
  }
}

void ServerCheck::CheckColumnNames(const Columns& columns, std::string_view table, std::size_t offset) {
  std::set<std::string> names;
  for (const auto& name : columns.names) {
    if (name.empty()) {
      Fault(offset, fmt::format("a column of {} has no name", table));
    } else if (!names.insert(UpperCase(name)).second) {
      Fault(offset, fmt::format("{} has two columns {}", table, name));
    }
  }
}

ServerCheck::Columns ServerCheck::CheckQuery(const Query& query, const Scope* outer, Place place) {
  const bool sole = query.cores.size() == 1;
  if (place != Place::Whole && !query.orderBy.empty() && !(sole && query.cores.front().top))
    Fault(query.orderBy.front().expr->offset, "ORDER BY stands in an inner query without TOP");
  Columns columns = CheckCore(query.cores.front(), outer, sole ? &query : nullptr);
  for (std::size_t i = 1; i < query.cores.size(); ++i) {
    const Columns others = CheckCore(query.cores[i], outer, nullptr);
    CheckUnion(query.cores.front(), query.cores[i], columns, others);
  }
  if (!sole) CheckUnionOrder(query, columns);
  if (place == Place::Value && !columns.open && columns.names.size() != 1)
    Fault(query.cores.front().offset, "an inner query that gives a value has not one column");
  return columns;
}

void ServerCheck::CheckUnion(const SelectCore& first, const SelectCore& other, const Columns& columns,
                             const Columns& others) {
  if (columns.open || others.open) return;
  if (columns.names.size() != others.names.size())
    return Fault(other.offset,
                 fmt::format("UNION joins {} columns with {}", columns.names.size(), others.names.size()));
  if (first.items.size() != columns.names.size() || other.items.size() != others.names.size()) return;
  for (std::size_t i = 0; i < first.items.size(); ++i)
    CheckTogether(*first.items[i].expr, *other.items[i].expr, "UNION");
}

void ServerCheck::CheckUnionOrder(const Query& query, const Columns& columns) {
  for (std::size_t i = 0; i < query.orderBy.size(); ++i) {
    const OrderItem& item = query.orderBy[i];
    CheckOrderItem(query.orderBy, i, columns);
    if (item.expr->kind == ExprKind::Number) continue;
    const bool listed = std::ranges::any_of(columns.names, [&](const std::string& name) {
      return item.expr->kind == ExprKind::Name && SameWord(name, item.expr->text);
    });
    if (!listed) Fault(item.expr->offset, "the order of a UNION is not one of its columns");
  }
}

ServerCheck::Columns ServerCheck::CheckCore(const SelectCore& core, const Scope* outer,
                                            const Query* ordered) {
  Scope scope{outer, {}, nullptr, false};
  AddSources(core.from, scope);
  CheckOn(core.from, scope);
  RefuseAggregates(core.where.get(), "WHERE");
  if (core.where) CheckCondition(*core.where, scope);
  CheckGroups(core, scope);
  if (!core.groupBy.empty() || core.having || AnyAggregate(core)) scope.grouped = &core;
  Columns columns = CheckItems(core, scope);
  if (core.having) CheckCondition(*core.having, scope);
  if (ordered != nullptr) CheckOrder(*ordered, core, columns, scope);
  if (!core.into.empty()) MakeTable(core.into, columns);
  return columns;
}

void ServerCheck::CheckGroups(const SelectCore& core, Scope& scope) {
  for (const auto& group : core.groupBy) {
    RefuseAggregates(group.get(), "GROUP BY");
    CheckValue(*group, scope);
    if (!HasName(*group)) Fault(group->offset, "what is grouped by holds no column");
    if (HasInnerQuery(*group)) Fault(group->offset, "what is grouped by holds an inner query");
  }
}

ServerCheck::Columns ServerCheck::Expand(const Expr& star, const Scope& scope) {
  Columns all;
  bool found = false;
  for (const auto& source : scope.sources) {
    if (!star.qualifier.empty() && !SameWord(source.called, star.qualifier)) continue;
    found = true;
    all.open |= source.columns.open;
    all.names.insert(all.names.end(), source.columns.names.begin(), source.columns.names.end());
  }
  if (!found) Fault(star.offset, fmt::format("no table for {}.*", star.qualifier));
  if (scope.grouped != nullptr) Fault(star.offset, "* stands beside what is grouped or summed");
  return all;
}

ServerCheck::Columns ServerCheck::CheckItems(const SelectCore& core, Scope& scope) {
  Columns columns;
  std::size_t variables = 0;
  for (const auto& item : core.items) {
    if (item.expr->kind == ExprKind::Star) {
      const Columns all = Expand(*item.expr, scope);
      columns.open |= all.open;
      columns.names.insert(columns.names.end(), all.names.begin(), all.names.end());
      continue;
    }
    CheckWord(item.alias, item.expr->offset);
    CheckValue(*item.expr, scope);
    columns.names.emplace_back(NameOf(item));
    if (item.variable.empty()) continue;
    ++variables;
    if (!variables_.contains(UpperCase(item.variable)))
      Fault(core.offset, fmt::format("{} is not declared", item.variable));
  }
  if (variables > 0 && variables != core.items.size())
    Fault(core.offset, "a SELECT that sets a variable also answers rows");
  return columns;
}

void ServerCheck::CheckOrderItem(const std::vector<OrderItem>& items, std::size_t item,
                                 const Columns& columns) {
  const Expr& expr = *items[item].expr;
  const auto before = items.begin() + static_cast<std::ptrdiff_t>(item);
  if (std::any_of(items.begin(), before,
                  [&](const OrderItem& other) { return SameExpression(*other.expr, expr); }))
    Fault(expr.offset, "the order names the same twice");
  if (expr.kind == ExprKind::Text || expr.kind == ExprKind::Null)
    Fault(expr.offset, "a constant stands in ORDER BY");
  const auto place = expr.kind == ExprKind::Number ? ParseNumber(expr.text) : std::nullopt;
  if (place && !columns.open && (*place < 1 || *place > static_cast<double>(columns.names.size())))
    Fault(expr.offset, "the order names a column that is not listed");
}

void ServerCheck::CheckOrder(const Query& query, const SelectCore& core, const Columns& columns,
                             Scope& scope) {
  for (std::size_t i = 0; i < query.orderBy.size(); ++i) {
    const Expr& expr = *query.orderBy[i].expr;
    CheckOrderItem(query.orderBy, i, columns);
    if (expr.kind == ExprKind::Number) continue;
    if (expr.kind == ExprKind::Name && expr.qualifier.empty()) {
      const auto listed = std::ranges::count_if(
          columns.names, [&](const std::string& name) { return SameWord(name, expr.text); });
      if (listed > 1) Fault(expr.offset, fmt::format("{} is ambiguous in ORDER BY", expr.text));
      if (listed > 0) continue;
    }
    CheckValue(expr, scope);
    const bool listed = columns.open || std::ranges::any_of(core.items, [&](const SelectItem& each) {
                          return SameExpression(*each.expr, expr) || each.expr->kind == ExprKind::Star;
                        });
    if (core.distinct && !listed) Fault(expr.offset, "DISTINCT rows are in an order that is not listed");
  }
}

}  // namespace ktl::tsql
