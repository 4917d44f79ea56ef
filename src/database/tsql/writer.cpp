#include "database/tsql/writer.h"

#include <algorithm>

#include "database/tsql/lexer.h"
#include "database/tsql/parser.h"
#include "database/tsql/words.h"

namespace ktl::tsql {

Program Translate(std::string_view text, bool updatable, int parameters) {
  const Block block = Parse(text, parameters);
  EmbeddedWriter writer(text);
  if (!updatable) return writer.Write(block);
  const QueryPtr* query = std::get_if<QueryPtr>(&block.front());
  if (query == nullptr || block.size() != 1) Refuse(text, 0, "only a SELECT * over one table can be updated");
  Program program;
  program.push_back(writer.WriteUpdatable(**query));
  return program;
}

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

Program EmbeddedWriter::Write(const Block& block) {
  Program program;
  program.reserve(block.size());
  for (const auto& statement : block) program.push_back(WriteStatement(statement));
  return program;
}

Step EmbeddedWriter::WriteStatement(const Statement& statement) {
  out_.reserve(text_.size() * 2);
  return std::visit([this](const auto& inner) { return Write(inner); }, statement);
}

Step EmbeddedWriter::Finish(StepKind kind) {
  Step step;
  step.kind = kind;
  step.sql = std::move(out_);
  out_.clear();
  return step;
}

Step EmbeddedWriter::Write(const QueryPtr& query) {
  const SelectCore& core = query->cores.front();
  if (!core.into.empty()) {
    out_ += "CREATE TABLE ";
    Name(core.into);
    out_ += " AS ";
  }
  WriteQuery(*query);
  const auto assigns = [](const SelectItem& item) { return !item.variable.empty(); };
  const bool assigning = std::ranges::any_of(core.items, assigns);
  if (assigning && !std::ranges::all_of(core.items, assigns))
    Refuse(text_, core.offset, "a SELECT either sets variables or answers rows");
  Step step = Finish(assigning ? StepKind::Assign : core.into.empty() ? StepKind::Rows : StepKind::Change);
  if (step.kind == StepKind::Rows) TellDates(core, step);
  return step;
}

Step EmbeddedWriter::WriteUpdatable(const Query& query) {
  const SelectCore& core = query.cores.front();
  const bool plain = query.cores.size() == 1 && !core.distinct && !core.top && core.into.empty() &&
                     core.groupBy.empty() && core.from.size() == 1 && !core.from[0].derived &&
                     core.items.size() == 1 && core.items[0].expr->kind == ExprKind::Star;
  if (!plain) Refuse(text_, core.offset, "only a SELECT * over one table can be updated");
  out_ += "SELECT rowid, *";
  WriteFrom(core.from);
  if (core.where) {
    out_ += " WHERE ";
    WriteExpr(*core.where);
  }
  WriteOrderBy(query.orderBy, nullptr);
  Step step = Finish(StepKind::Rows);
  step.baseTable = core.from[0].name;
  return step;
}

void EmbeddedWriter::TellDates(const SelectCore& core, Step& step) const {
  for (const auto& item : core.items) {
    if (item.expr->kind == ExprKind::Star) break;
    step.datesFromFront.push_back(typing_.Of(*item.expr) == Type::Date);
  }
  if (step.datesFromFront.size() == core.items.size()) return;
  for (auto item = core.items.rbegin(); item->expr->kind != ExprKind::Star; ++item)
    step.datesFromBack.push_back(typing_.Of(*item->expr) == Type::Date);
}

Step EmbeddedWriter::Write(const Insert& insert) {
  out_ += "INSERT INTO ";
  WriteTable(insert.table);
  if (!insert.columns.empty()) {
    out_ += " (";
    for (const auto& column : insert.columns) {
      if (&column != &insert.columns.front()) out_ += ", ";
      Name(column);
    }
    out_ += ')';
  }
  out_ += ' ';
  if (insert.query) {
    WriteQuery(*insert.query);
    return Finish(StepKind::Change);
  }
  out_ += "VALUES ";
  for (const auto& row : insert.rows) {
    out_ += &row == &insert.rows.front() ? "(" : ", (";
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) out_ += ", ";
      WriteAs(*row[i], i < insert.columns.size() ? TypeOfColumn(insert.columns[i]) : Type::Unknown);
    }
    out_ += ')';
  }
  return Finish(StepKind::Change);
}

// The item of FROM that is the table to be updated, by its name or because it is updated under its alias.
const TableRef* EmbeddedWriter::FindTarget(const Update& update) const {
  const TableRef* target = nullptr;
  for (const auto& table : update.from) {
    if (SameWord(table.alias, update.table.name)) return &table;
    if (table.derived || !SameWord(table.name, update.table.name)) continue;
    if (target != nullptr) Refuse(text_, table.offset, "the table to be updated stands twice in FROM");
    target = &table;
  }
  return target;
}

Step EmbeddedWriter::Write(const Update& update) {
  const TableRef* target = FindTarget(update);
  out_ += "UPDATE ";
  WriteTable(target != nullptr ? *target : update.table);
  out_ += " SET ";
  for (const auto& item : update.items) {
    if (&item != &update.items.front()) out_ += ", ";
    Name(item.column);
    out_ += " = ";
    WriteAs(*item.value, TypeOfColumn(item.column));
  }
  WriteUpdateSource(update, target);
  return Finish(StepKind::Change);
}

// The embedded dialect joins the table to be updated with FROM by itself: it must not be named there again.
// The conditions of joins go to WHERE.
void EmbeddedWriter::WriteUpdateSource(const Update& update, const TableRef* target) {
  const char* separator = " FROM ";
  for (const auto& table : update.from) {
    if (table.join == JoinKind::Left || table.join == JoinKind::Right || table.join == JoinKind::Full)
      Refuse(text_, table.offset, "an outer join in UPDATE");
    if (&table == target) continue;
    out_ += separator;
    WriteTable(table);
    separator = ", ";
  }
  separator = " WHERE ";
  for (const auto& table : update.from) {
    if (!table.on) continue;
    out_ += separator;
    WriteCondition(*table.on, "AND");
    separator = " AND ";
  }
  if (!update.where) return;
  out_ += separator;
  WriteCondition(*update.where, "AND");
}

Step EmbeddedWriter::Write(const Delete& statement) {
  out_ += "DELETE FROM ";
  WriteTable(statement.table);
  if (statement.where) {
    out_ += " WHERE ";
    WriteExpr(*statement.where);
  }
  return Finish(StepKind::Change);
}

Step EmbeddedWriter::Write(const CreateView& view) {
  out_ += "CREATE VIEW ";
  Name(view.name);
  out_ += " AS ";
  WriteQuery(*view.query);
  return Finish(StepKind::Change);
}

Step EmbeddedWriter::Write(const DropObject& drop) {
  out_ += drop.view ? "DROP VIEW " : "DROP TABLE ";
  Name(drop.name);
  return Finish(StepKind::Change);
}

Step EmbeddedWriter::Write(const AddPrimaryKey& key) {
  out_ += "CREATE UNIQUE INDEX ";
  Name(key.name);
  out_ += " ON ";
  Name(key.table);
  for (const auto& column : key.columns) {
    out_ += &column == &key.columns.front() ? " (" : ", ";
    Name(column);
  }
  out_ += ')';
  return Finish(StepKind::Change);
}

Step EmbeddedWriter::WriteAssignment(std::string_view variable, const Expr* value) {
  out_ += "SELECT KL_SET('";
  out_ += variable;
  out_ += "', ";
  if (value == nullptr)
    out_ += "NULL";
  else
    WriteExpr(*value);
  out_ += ')';
  return Finish(StepKind::Assign);
}

Step EmbeddedWriter::Write(const Declare& declare) {
  const auto type = TypeOfTypeName(declare.type);
  if (!type) Refuse(text_, declare.type.data() - text_.data(), "the type is unknown");
  typing_.Declare(declare.variable, *type);
  return WriteAssignment(declare.variable, declare.value.get());
}

Step EmbeddedWriter::Write(const SetVariable& set) { return WriteAssignment(set.variable, set.value.get()); }

Step EmbeddedWriter::Write(const Call& call) {
  Step step;
  step.kind = StepKind::Call;
  step.name = call.procedure;
  for (const auto& argument : call.arguments) {
    if (argument.null)
      step.arguments.emplace_back(std::nullopt);
    else
      step.arguments.emplace_back(argument.quoted ? Unquote(argument.text) : std::string(argument.text));
  }
  return step;
}

Step EmbeddedWriter::Write(const std::unique_ptr<If>& statement) {
  out_ += "SELECT CASE WHEN ";
  WriteExpr(*statement->condition);
  out_ += " THEN 1 ELSE 0 END";
  Step step = Finish(StepKind::Branch);
  step.then = Write(statement->then);
  step.otherwise = Write(statement->otherwise);
  return step;
}

void EmbeddedWriter::WriteQuery(const Query& query) {
  const bool unite = query.cores.size() > 1;
  for (const auto& core : query.cores) {
    if (&core != &query.cores.front()) out_ += core.unionAll ? " UNION ALL " : " UNION ";
    if (unite && core.top) out_ += "SELECT * FROM (";
    WriteCore(core, unite);
    if (unite && core.top) {
      out_ += " LIMIT ";
      WriteExpr(*core.top);
      out_ += ')';
    }
  }
  WriteOrderBy(query.orderBy, &query.cores.front());
  if (unite || !query.cores.front().top) return;
  out_ += " LIMIT ";
  WriteExpr(*query.cores.front().top);
}

void EmbeddedWriter::WriteCore(const SelectCore& core, bool unite) {
  out_ += core.distinct ? "SELECT DISTINCT " : "SELECT ";
  for (const auto& item : core.items) {
    if (&item != &core.items.front()) out_ += ", ";
    WriteItem(item, core.distinct || unite);
  }
  if (!core.from.empty()) WriteFrom(core.from);
  if (core.where) {
    out_ += " WHERE ";
    WriteExpr(*core.where);
  }
  for (const auto& key : core.groupBy) {
    out_ += &key == &core.groupBy.front() ? " GROUP BY " : ", ";
    WriteKey(*key, *key);
  }
  if (core.having) {
    out_ += " HAVING ";
    WriteExpr(*core.having);
  }
}

void EmbeddedWriter::WriteItem(const SelectItem& item, bool compared) {
  if (!item.variable.empty()) {
    out_ += "KL_SET('";
    out_ += item.variable;
    out_ += "', ";
    WriteExpr(*item.expr);
    out_ += ')';
    return;
  }
  if (compared)
    WriteKey(*item.expr, *item.expr);
  else
    WriteExpr(*item.expr);
  // A qualified column gets its own name, so that ORDER BY finds it where two tables have it.
  const bool qualified = item.expr->kind == ExprKind::Name && !item.expr->qualifier.empty();
  if (item.alias.empty() && !qualified) return;
  out_ += " AS ";
  Name(item.alias.empty() ? item.expr->text : item.alias);
}

void EmbeddedWriter::WriteFrom(const std::vector<TableRef>& tables) {
  out_ += " FROM ";
  for (const auto& table : tables) {
    if (&table != &tables.front()) {
      switch (table.join) {
        case JoinKind::Comma:
          out_ += ", ";
          break;
        case JoinKind::Inner:
          out_ += " JOIN ";
          break;
        case JoinKind::Left:
          out_ += " LEFT JOIN ";
          break;
        case JoinKind::Right:
          out_ += " RIGHT JOIN ";
          break;
        case JoinKind::Full:
          out_ += " FULL JOIN ";
          break;
        case JoinKind::Cross:
          out_ += " CROSS JOIN ";
          break;
      }
    }
    WriteTable(table);
    if (!table.on) continue;
    out_ += " ON ";
    WriteExpr(*table.on);
  }
}

void EmbeddedWriter::WriteTable(const TableRef& table) {
  if (table.derived) {
    out_ += '(';
    WriteQuery(*table.derived);
    out_ += ')';
  } else {
    out_ += '[';
    if (SameWord(table.schema, "SYS") || SameWord(table.schema, "INFORMATION_SCHEMA")) {
      out_ += table.schema;
      out_ += '_';
    }
    out_ += table.name;
    out_ += ']';
  }
  if (table.alias.empty()) return;
  out_ += " AS ";
  Name(table.alias);
}

void EmbeddedWriter::WriteOrderBy(const std::vector<OrderItem>& items, const SelectCore* core) {
  for (const auto& item : items) {
    out_ += &item == &items.front() ? " ORDER BY " : ", ";
    // An alias stands for the expression behind it.
    const Expr* judged = item.expr.get();
    if (core != nullptr && judged->kind == ExprKind::Name && judged->qualifier.empty())
      for (const auto& column : core->items)
        if (SameWord(column.alias, judged->text)) judged = column.expr.get();
    WriteKey(*item.expr, *judged);
    if (item.descending) out_ += " DESC";
  }
}

void EmbeddedWriter::WriteKey(const Expr& expr, const Expr& judged) {
  if (!NeedsComparer(judged)) return WriteExpr(expr);
  WriteOperand(expr);
  WriteComparer();
}

}  // namespace ktl::tsql
