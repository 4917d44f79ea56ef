#include "database/tsql/writer.h"

#include <algorithm>
#include <utility>

#include "database/tsql/lexer.h"
#include "database/tsql/parser.h"
#include "database/tsql/words.h"

namespace ktl::tsql {

namespace {

constexpr const char* kNotUpdatable = "only a SELECT * over one table can be updated";

std::string_view JoinWords(JoinKind join) {
  switch (join) {
    case JoinKind::Comma:
      return ", ";
    case JoinKind::Inner:
      return " JOIN ";
    case JoinKind::Left:
      return " LEFT JOIN ";
    case JoinKind::Right:
      return " RIGHT JOIN ";
    case JoinKind::Full:
      return " FULL JOIN ";
    case JoinKind::Cross:
      break;
  }
  return " CROSS JOIN ";
}

}  // namespace

std::string Unquote(std::string_view literal) {
  literal.remove_prefix(literal.find('\'') + 1);
  literal.remove_suffix(1);
  std::string text;
  text.reserve(literal.size());
  for (std::size_t i = 0; i < literal.size(); ++i) {
    text += literal[i];
    if (literal[i] == '\'') ++i;
  }
  return text;
}

Program Writer::Translate(bool updatable, int parameters) {
  const Block block = Parse(text_, parameters);
  if (!updatable) return Write(block);
  const QueryPtr* query = std::get_if<QueryPtr>(&block.front());
  if (query == nullptr || block.size() != 1) Refuse(text_, 0, kNotUpdatable);
  Program program;
  program.push_back(WriteUpdatable(**query));
  return program;
}

Program Writer::Write(const Block& block) {
  Program program;
  program.reserve(block.size());
  for (const auto& statement : block) program.push_back(WriteStatement(statement));
  return program;
}

Step Writer::WriteStatement(const Statement& statement) {
  out_.reserve(text_.size() * 2);
  return std::visit([this](const auto& inner) { return Write(inner); }, statement);
}

Step Writer::Finish(StepKind kind) {
  Step step;
  step.kind = kind;
  step.sql = std::move(out_);
  step.parameters = std::move(asked_);
  step.planAnew = std::exchange(planAnew_, false);
  out_.clear();
  asked_.clear();
  return step;
}

Step Writer::Write(const QueryPtr& query) {
  const SelectCore& core = query->cores.front();
  if (!core.into.empty()) {
    // A "#" makes it the connection's own.
    Put(core.into.starts_with('#') ? "CREATE TEMPORARY TABLE " : "CREATE TABLE ");
    WriteObjectName(core.into);
    Put(" AS ");
  }
  WriteQuery(*query);
  const auto assigns = [](const SelectItem& item) { return !item.variable.empty(); };
  const bool assigning = std::ranges::any_of(core.items, assigns);
  if (assigning && !std::ranges::all_of(core.items, assigns))
    Refuse(text_, core.offset, "a SELECT either sets variables or answers rows");
  Step step = Finish(assigning ? StepKind::Assign : core.into.empty() ? StepKind::Rows : StepKind::Change);
  if (step.kind == StepKind::Rows) TellDates(core, step);
  step.limited = query->cores.size() == 1 && core.top;
  return step;
}

Step Writer::WriteUpdatable(const Query& query) {
  const SelectCore& core = query.cores.front();
  const bool plain = query.cores.size() == 1 && !core.distinct && !core.top && core.into.empty() &&
                     core.groupBy.empty() && core.from.size() == 1 && !core.from[0].derived &&
                     core.items.size() == 1 && core.items[0].expr->kind == ExprKind::Star;
  if (!plain) Refuse(text_, core.offset, kNotUpdatable);
  Put("SELECT ");
  WriteKeyColumns();
  Put("*");
  WriteFrom(core.from);
  WriteWhere(core.where);
  WriteOrderBy(query.orderBy, nullptr);
  Step step = Finish(StepKind::Rows);
  step.baseTable = core.from[0].name;
  return step;
}

void Writer::TellDates(const SelectCore& core, Step& step) const {
  for (const auto& item : core.items) {
    if (item.expr->kind == ExprKind::Star) break;
    step.datesFromFront.push_back(TypeOf(*item.expr) == Type::Date);
  }
  if (step.datesFromFront.size() == core.items.size()) return;
  for (auto item = core.items.rbegin(); item->expr->kind != ExprKind::Star; ++item)
    step.datesFromBack.push_back(TypeOf(*item->expr) == Type::Date);
}

Step Writer::Write(const Insert& insert) {
  Put("INSERT INTO ");
  WriteTable(insert.table);
  if (!insert.columns.empty()) WriteNames(" (", insert.columns);
  Put(" ");
  if (insert.query) {
    WriteQuery(*insert.query);
    return Finish(StepKind::Change);
  }
  List("VALUES ", insert.rows, [&](const auto& row) {
    auto column = insert.columns.begin();
    List("(", row, [&](const ExprPtr& value) {
      WriteAs(*value, column == insert.columns.end() ? Type::Unknown : TypeOfColumn(*column++));
    });
    Put(")");
  });
  return Finish(StepKind::Change);
}

// By its name, or because it is updated under its alias.
const TableRef* Writer::FindTarget(const Update& update) const {
  const TableRef* target = nullptr;
  for (const auto& table : update.from) {
    if (SameWord(table.alias, update.table.name)) return &table;
    if (table.derived || !SameWord(table.name, update.table.name)) continue;
    if (target != nullptr) Refuse(text_, table.offset, "the table to be updated stands twice in FROM");
    target = &table;
  }
  return target;
}

Step Writer::Write(const Update& update) {
  for (const auto& table : update.from)
    if (table.join == JoinKind::Left || table.join == JoinKind::Right || table.join == JoinKind::Full)
      Refuse(text_, table.offset, "an outer join in UPDATE");
  WriteUpdate(update, FindTarget(update));
  return Finish(StepKind::Change);
}

// The table to be updated is joined with FROM by itself: it must not be named there again.
void Writer::WriteUpdate(const Update& update, const TableRef* target) {
  Put("UPDATE ");
  WriteTable(target != nullptr ? *target : update.table);
  WriteAssignments(update);
  const char* separator = " FROM ";
  for (const auto& table : update.from) {
    if (&table == target) continue;
    Put(separator);
    WriteTable(table);
    separator = ", ";
  }
  WriteUpdateConditions(update);
}

void Writer::WriteAssignments(const Update& update, std::string_view target) {
  List(" SET ", update.items, [&](const SetItem& item) {
    if (!target.empty()) {
      WriteObjectName(target);
      Put(".");
    }
    WriteName(item.column);
    Put(" = ");
    WriteAs(*item.value, TypeOfColumn(item.column));
  });
}

// Those of joins too.
void Writer::WriteUpdateConditions(const Update& update) {
  const char* separator = " WHERE ";
  const auto write = [&](const ExprPtr& condition) {
    if (!condition) return;
    Put(separator);
    WriteCondition(*condition, "AND");
    separator = " AND ";
  };
  for (const auto& table : update.from) write(table.on);
  write(update.where);
}

Step Writer::Write(const Delete& statement) {
  Put("DELETE FROM ");
  WriteTable(statement.table);
  WriteWhere(statement.where);
  return Finish(StepKind::Change);
}

Step Writer::Write(const CreateView& view) {
  Put("CREATE VIEW ");
  WriteObjectName(view.name);
  Put(" AS ");
  WriteQuery(*view.query);
  return Finish(StepKind::Change);
}

Step Writer::Write(const DropObject& drop) {
  Put(drop.view ? "DROP VIEW " : "DROP TABLE ", drop.ifExists ? "IF EXISTS " : "");
  WriteObjectName(drop.name);
  return Finish(StepKind::Change);
}

Step Writer::Write(const AddPrimaryKey& key) {
  WritePrimaryKey(key);
  return Finish(StepKind::Change);
}

void Writer::WritePrimaryKey(const AddPrimaryKey& key) {
  Put("ALTER TABLE ");
  WriteObjectName(key.table);
  Put(" ADD CONSTRAINT ");
  WriteName(key.name);
  WriteNames(" PRIMARY KEY (", key.columns);
}

Step Writer::WriteAssignment(std::string_view variable, const Expr* value) {
  Put("SELECT ");
  WriteSetting(variable, value);
  return Finish(StepKind::Assign);
}

Step Writer::Write(const Declare& declare) {
  const TypeName* type = FindTypeName(declare.type);
  if (type == nullptr)
    Refuse(text_, static_cast<std::size_t>(declare.type.data() - text_.data()), "the type is unknown");
  typing_.Declare(declare.variable, type->type);
  return WriteAssignment(declare.variable, declare.value.get());
}

Step Writer::Write(const SetVariable& set) {
  RequireDeclared(set.variable);
  return WriteAssignment(set.variable, set.value.get());
}

void Writer::RequireDeclared(std::string_view variable) const {
  if (typing_.IsDeclared(variable)) return;
  Refuse(text_, static_cast<std::size_t>(variable.data() - text_.data()),
         "Must declare the scalar variable \"" + std::string(variable) + '"');
}

Step Writer::Write(const Call& call) {
  WriteProcedure(call);
  Step step = Finish(StepKind::Call);
  step.name = call.procedure;
  for (const auto& argument : call.arguments) {
    if (argument.null)
      step.arguments.emplace_back(std::nullopt);
    else
      step.arguments.emplace_back(argument.quoted ? Unquote(argument.text) : std::string(argument.text));
  }
  return step;
}

Step Writer::Write(const std::unique_ptr<If>& statement) {
  Put("SELECT CASE WHEN ");
  WriteExpr(*statement->condition);
  Put(" THEN 1 ELSE 0 END");
  Step step = Finish(StepKind::Branch);
  step.then = Write(statement->then);
  step.otherwise = Write(statement->otherwise);
  return step;
}

void Writer::WriteQuery(const Query& query) {
  const bool unite = query.cores.size() > 1;
  for (const auto& core : query.cores) {
    if (&core != &query.cores.front()) Put(core.unionAll ? " UNION ALL " : " UNION ");
    // A limit behind a union would be that of the whole.
    const bool apart = unite && core.top;
    if (apart) Put("SELECT * FROM (");
    WriteCore(core, unite);
    if (!apart) continue;
    WriteLimit(*core.top);
    Put(") AS ");
    WriteObjectName("LIMITED");
  }
  WriteOrderBy(query.orderBy, &query.cores.front());
  if (unite && query.orderBy.empty()) WriteUnionOrder(query);
  if (!unite && query.cores.front().top) WriteLimit(*query.cores.front().top);
}

void Writer::WriteLimit(const Expr& count) {
  Put(" LIMIT ");
  WriteExpr(count);
}

void Writer::WriteCore(const SelectCore& core, bool unite) {
  List(core.distinct ? "SELECT DISTINCT " : "SELECT ", core.items, [&](const SelectItem& item) {
    const bool bareStar = item.expr && item.expr->kind == ExprKind::Star && item.expr->qualifier.empty();
    if (bareStar && &item != &core.items.front()) return WriteLaterStar(core);
    WriteItem(item, core.distinct || unite);
  });
  WriteSources(core);
  WriteWhere(core.where);
  if (NeedsGroups(core))
    List(" GROUP BY ", core.groupBy, [this](const ExprPtr& key) { WriteKey(*key, *key); });
  if (!core.having) return;
  Put(" HAVING ");
  WriteExpr(*core.having);
}

void Writer::WriteItem(const SelectItem& item, bool compared) {
  if (!item.variable.empty()) {
    RequireDeclared(item.variable);
    return WriteSetting(item.variable, item.expr.get());
  }
  if (compared)
    WriteKey(*item.expr, *item.expr);
  else
    WriteExpr(*item.expr);
  // A qualified column gets its own name, so that ORDER BY finds it where two tables have it.
  const bool qualified = item.expr->kind == ExprKind::Name && !item.expr->qualifier.empty();
  if (item.alias.empty() && !qualified) return;
  Put(" AS ");
  WriteName(item.alias.empty() ? item.expr->text : item.alias);
}

void Writer::WriteFrom(const std::vector<TableRef>& tables) {
  for (const auto& table : tables) {
    if (table.join == JoinKind::Full && !HasFullJoin())
      Refuse(text_, table.offset, "this database has no FULL JOIN");
    Put(&table == &tables.front() ? " FROM " : JoinWords(table.join));
    WriteTable(table);
    if (!table.on) continue;
    Put(" ON ");
    WriteExpr(*table.on);
  }
}

void Writer::WriteWhere(const ExprPtr& where) {
  if (!where) return;
  Put(" WHERE ");
  WriteExpr(*where);
}

void Writer::WriteTable(const TableRef& table) {
  if (table.derived) {
    Put("(");
    WriteQuery(*table.derived);
    Put(")");
  } else {
    WriteObject(table);
  }
  if (table.alias.empty()) return;
  Put(" AS ");
  WriteObjectName(table.alias);
}

// The catalogue's views go by names of one word: SYS_TABLES.
void Writer::WriteObject(const TableRef& table) {
  if (table.schema.empty() || SameWord(table.schema, "dbo")) return WriteObjectName(table.name);
  WriteObjectName(std::string(table.schema).append("_").append(table.name));
}

void Writer::WriteNames(std::string_view before, const std::vector<std::string_view>& names) {
  List(before, names, [this](std::string_view name) { WriteName(name); });
  Put(")");
}

void Writer::WriteOrderBy(const std::vector<OrderItem>& items, const SelectCore* core) {
  List(" ORDER BY ", items, [&](const OrderItem& item) {
    // An alias stands for the expression behind it.
    const Expr* judged = item.expr.get();
    if (core != nullptr && judged->kind == ExprKind::Name && judged->qualifier.empty())
      for (const auto& column : core->items)
        if (SameWord(column.alias, judged->text)) judged = column.expr.get();
    WriteKey(*item.expr, *judged);
    if (item.descending) Put(" DESC");
  });
}

void Writer::WriteKey(const Expr& expr, const Expr& judged) {
  if (!NeedsComparer(judged)) return WriteExpr(expr);
  WriteOperand(expr);
  WriteComparer();
}

}  // namespace ktl::tsql
