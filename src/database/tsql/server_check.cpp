#include "database/tsql/server_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>

#include "database/database_error.h"
#include "database/tsql/parser.h"
#include "database/tsql/reserved_words.h"
#include "database/tsql/words.h"
#include "runtime/text.h"

// Statements; queries are in server_check_queries.cpp, expressions in server_check_expressions.cpp.

namespace ktl::tsql {

namespace {

struct Procedure {
  std::string_view name;
  std::size_t arguments;
};
constexpr std::array kProcedures{Procedure{"ClassSecurity", 3}, Procedure{"ClassSecurityCloud", 4},
                                 Procedure{"UpdateAuditTrail", 7}};

bool Has(const std::vector<std::string>& names, std::string_view wanted) {
  return std::ranges::any_of(names, [&](const std::string& name) { return SameWord(name, wanted); });
}

}  // namespace

std::vector<std::string> ServerCheck::Faults(std::string_view text) {
  text_ = text;
  typing_ = {};
  variables_.clear();
  faults_.clear();
  try {
    CheckBlock(Parse(text), true);
  } catch (const DatabaseError& error) {
    faults_.push_back(error.description());
  }
  return std::move(faults_);
}

void ServerCheck::Fault(std::size_t offset, const std::string& what) {
  constexpr std::size_t kAround = 40;
  const std::size_t from = offset > kAround / 2 ? offset - kAround / 2 : 0;
  std::string fault = fmt::format("{}, near \"{}\"", what, text_.substr(from, kAround));
  if (std::ranges::find(faults_, fault) == faults_.end()) faults_.push_back(std::move(fault));
}

bool ServerCheck::IsBracketed(std::string_view name) const {
  const auto at = static_cast<std::size_t>(name.data() - text_.data());
  return at > 0 && at < text_.size() && (text_[at - 1] == '[' || text_[at - 1] == '"');
}

void ServerCheck::CheckWord(std::string_view name, std::size_t offset) {
  constexpr std::size_t kLongestName = 128;
  if (name.size() > kLongestName) Fault(offset, "a name is longer than 128 characters");
  if (!name.empty() && IsReservedWord(name) && !IsBracketed(name))
    Fault(offset, fmt::format("the reserved word {} is used as a name", name));
}

void ServerCheck::CheckBlock(const Block& block, bool whole) {
  for (const auto& statement : block) {
    if (std::holds_alternative<CreateView>(statement) && !(whole && block.size() == 1))
      Fault(0, "CREATE VIEW must be a text of its own");
    std::visit([&](const auto& each) { Check(each); }, statement);
  }
}

void ServerCheck::Check(const QueryPtr& query) { CheckQuery(*query, nullptr, Place::Whole); }

void ServerCheck::Check(const Insert& insert) {
  const Columns target = ColumnsOf(insert.table);
  std::set<std::string> named;
  for (const auto& column : insert.columns) {
    CheckWord(column, insert.table.offset);
    if (!target.open && !Has(target.names, column))
      Fault(insert.table.offset, fmt::format("{} has no column {}", insert.table.name, column));
    if (!named.insert(UpperCase(column)).second)
      Fault(insert.table.offset, fmt::format("the column {} is named twice", column));
  }
  const std::size_t wanted = insert.columns.empty() ? target.names.size() : insert.columns.size();
  const auto compare = [&](std::size_t given) {
    if (given != wanted && !(insert.columns.empty() && target.open))
      Fault(insert.table.offset, fmt::format("{} columns get {} values", wanted, given));
  };
  if (insert.query) {
    const Columns given = CheckQuery(*insert.query, nullptr, Place::Whole);
    if (!given.open) compare(given.names.size());
  }
  for (const auto& row : insert.rows) {
    Scope nothing;
    for (const auto& value : row) CheckValue(*value, nothing);
    compare(row.size());
    for (std::size_t i = 0; i < std::min(row.size(), insert.columns.size()); ++i)
      CheckAssigned(insert.columns[i], *row[i]);
  }
}

void ServerCheck::Check(const Update& update) {
  const Columns target = ColumnsOf(update.table);
  Scope scope;
  AddSources(update.from, scope);
  CheckOn(update.from, scope);
  const auto named = [&](const Source& source) {
    return SameWord(source.called, update.table.name) || SameWord(source.table, update.table.name);
  };
  const auto found = std::ranges::count_if(scope.sources, named);
  if (update.from.empty()) scope.sources.push_back({update.table.name, update.table.name, target});
  if (!update.from.empty() && found == 0)
    Fault(update.table.offset, fmt::format("{} is not in its own FROM", update.table.name));
  if (found > 1) Fault(update.table.offset, fmt::format("{} is several times in FROM", update.table.name));
  std::set<std::string> set;
  for (const auto& item : update.items) {
    CheckWord(item.column, update.table.offset);
    if (!target.open && !Has(target.names, item.column))
      Fault(update.table.offset, fmt::format("{} has no column {}", update.table.name, item.column));
    if (!set.insert(UpperCase(item.column)).second)
      Fault(update.table.offset, fmt::format("the column {} is set twice", item.column));
    RefuseAggregates(item.value.get(), "SET");
    CheckValue(*item.value, scope);
    CheckAssigned(item.column, *item.value);
  }
  RefuseAggregates(update.where.get(), "WHERE");
  if (update.where) CheckCondition(*update.where, scope);
}

void ServerCheck::Check(const Delete& statement) {
  Scope scope;
  scope.sources.push_back({statement.table.name, statement.table.name, ColumnsOf(statement.table)});
  RefuseAggregates(statement.where.get(), "WHERE");
  if (statement.where) CheckCondition(*statement.where, scope);
}

void ServerCheck::Check(const CreateView& view) {
  CheckWord(view.name, 0);
  MakeTable(view.name, CheckQuery(*view.query, nullptr, Place::View));
}

void ServerCheck::MakeTable(std::string_view name, const Columns& columns) {
  CheckWord(name, 0);
  CheckColumnNames(columns, name, 0);
  made_[UpperCase(name)] = columns;
}

void ServerCheck::Check(const DropObject& drop) {
  if (!drop.ifExists && !Find(drop.name)) Fault(0, fmt::format("there is no {}", drop.name));
}

void ServerCheck::Check(const AddPrimaryKey& key) {
  const auto table = Find(key.table);
  if (!table) return Fault(0, fmt::format("there is no table {}", key.table));
  for (const auto& column : key.columns)
    if (!table->open && !Has(table->names, column))
      Fault(0, fmt::format("{} has no column {}", key.table, column));
}

void ServerCheck::Check(const Declare& declare) {
  const TypeName* type = FindTypeName(declare.type);
  if (type == nullptr) Fault(0, fmt::format("the type {} is unknown", declare.type));
  if (!variables_.emplace(UpperCase(declare.variable), 1).second)
    Fault(0, fmt::format("{} is declared twice", declare.variable));
  typing_.Declare(declare.variable, type == nullptr ? Type::Unknown : type->type);
  Scope nothing;
  if (declare.value) CheckValue(*declare.value, nothing);
}

void ServerCheck::Check(const SetVariable& set) {
  if (!variables_.contains(UpperCase(set.variable)))
    Fault(0, fmt::format("{} is not declared", set.variable));
  Scope nothing;
  CheckValue(*set.value, nothing);
}

void ServerCheck::Check(const Call& call) {
  const auto known = std::ranges::find_if(
      kProcedures, [&](const Procedure& procedure) { return SameWord(procedure.name, call.procedure); });
  if (known == kProcedures.end()) return Fault(0, fmt::format("there is no procedure {}", call.procedure));
  if (call.arguments.size() != known->arguments)
    Fault(0, fmt::format("{} takes {} arguments and gets {}", known->name, known->arguments,
                         call.arguments.size()));
  for (const auto& argument : call.arguments)
    if (argument.text.empty() && !argument.quoted) Fault(text_.size(), "an argument is missing");
}

void ServerCheck::Check(const std::unique_ptr<If>& statement) {
  Scope nothing;
  CheckCondition(*statement->condition, nothing);
  CheckBlock(statement->then, false);
  CheckBlock(statement->otherwise, false);
}

}  // namespace ktl::tsql
