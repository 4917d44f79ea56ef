#include "database/tsql/parser.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "database/tsql/words.h"

namespace ktl::tsql {

Block Parse(std::string_view text, int parameters) { return Parser(text, parameters).ParseBatch(); }

const Token& Parser::Peek(std::size_t ahead) const {
  return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

bool Parser::AtSymbol(std::string_view symbol) const {
  return Peek().kind == TokenKind::Symbol && Peek().text == symbol;
}

bool Parser::AtWord(std::string_view word, std::size_t ahead) const {
  return Peek(ahead).kind == TokenKind::Name && SameWord(Peek(ahead).text, word);
}

bool Parser::Accept(Keyword keyword) {
  if (!At(keyword)) return false;
  Take();
  return true;
}

bool Parser::AcceptSymbol(std::string_view symbol) {
  if (!AtSymbol(symbol)) return false;
  Take();
  return true;
}

void Parser::Expect(Keyword keyword, const char* what) {
  if (!Accept(keyword)) Unexpected(what);
}

void Parser::ExpectSymbol(std::string_view symbol) {
  if (!AcceptSymbol(symbol)) Unexpected('"' + std::string(symbol) + '"');
}

void Parser::Unexpected(const std::string& wanted) const {
  const Token& token = Peek();
  const std::string found = token.kind == TokenKind::End ? "the end" : "\"" + std::string(token.text) + "\"";
  Refuse(text_, token.offset, found + " where " + wanted + " is expected");
}

std::string_view Parser::ParseName() {
  if (Peek().kind != TokenKind::Name) Unexpected("a name");
  return Take().text;
}

int Parser::ParseCount() {
  const Token token = Peek();
  int count = 0;
  const auto result = std::from_chars(token.text.data(), token.text.data() + token.text.size(), count);
  if (token.kind != TokenKind::Number || result.ec != std::errc{} || result.ptr != token.text.end())
    Unexpected("a whole number");
  Take();
  return count;
}

TableRef Parser::ParseObject() {
  TableRef table;
  table.offset = Peek().offset;
  table.name = ParseName();
  if (!AcceptSymbol(".")) return table;
  table.schema = table.name;
  table.name = ParseName();
  const bool known = SameWord(table.schema, "dbo") || SameWord(table.schema, "SYS") ||
                     SameWord(table.schema, "INFORMATION_SCHEMA");
  if (!known) Refuse(text_, table.offset, "the owner \"" + std::string(table.schema) + "\" is unknown");
  return table;
}

std::string_view Parser::ParseOptionalAlias() {
  if (Accept(Keyword::As)) return ParseName();
  return Peek().kind == TokenKind::Name ? Take().text : std::string_view();
}

std::vector<std::string_view> Parser::ParseNameList() {
  std::vector<std::string_view> names;
  ExpectSymbol("(");
  do names.push_back(ParseName());
  while (AcceptSymbol(","));
  ExpectSymbol(")");
  return names;
}

Block Parser::ParseBatch() {
  Block block;
  while (AcceptSymbol(";")) {
  }
  // Only the first statement of a text can be the call of a procedure without EXEC.
  if (Peek().kind == TokenKind::Name) block.push_back(ParseCall());
  while (Peek().kind != TokenKind::End) {
    if (AcceptSymbol(";")) continue;
    block.push_back(ParseStatement());
  }
  if (block.empty()) Unexpected("a statement");
  return block;
}

Block Parser::ParseStatementOrBlock() {
  Block block;
  if (!Accept(Keyword::Begin)) {
    block.push_back(ParseStatement());
    return block;
  }
  while (!Accept(Keyword::End)) {
    if (AcceptSymbol(";")) continue;
    block.push_back(ParseStatement());
  }
  return block;
}

Statement Parser::ParseStatement() {
  Nesting level(*this);
  switch (Peek().keyword) {
    case Keyword::Select:
      return ParseQuery();
    case Keyword::Insert:
      return ParseInsert();
    case Keyword::Update:
      return ParseUpdate();
    case Keyword::Delete:
      return ParseDelete();
    case Keyword::Create:
      return ParseCreateView();
    case Keyword::Drop:
      return ParseDrop();
    case Keyword::Alter:
      return ParseAlter();
    case Keyword::Declare:
      return ParseDeclare();
    case Keyword::Set:
      return ParseSet();
    case Keyword::If:
      return ParseIf();
    case Keyword::Exec:
    case Keyword::Execute:
      Take();
      return ParseCall();
    default:
      Unexpected("a statement");
  }
}

bool Parser::AtStatementEnd() const {
  if (Peek().kind == TokenKind::End || AtSymbol(";")) return true;
  switch (Peek().keyword) {
    case Keyword::Select:
    case Keyword::Insert:
    case Keyword::Update:
    case Keyword::Delete:
    case Keyword::Create:
    case Keyword::Drop:
    case Keyword::Alter:
    case Keyword::Declare:
    case Keyword::Set:
    case Keyword::If:
    case Keyword::Else:
    case Keyword::End:
    case Keyword::Exec:
    case Keyword::Execute:
      return true;
    default:
      return false;
  }
}

Insert Parser::ParseInsert() {
  Take();
  Expect(Keyword::Into, "INTO");
  Insert insert;
  insert.table = ParseObject();
  if (AtSymbol("(")) insert.columns = ParseNameList();
  if (At(Keyword::Select)) {
    insert.query = ParseQuery();
    return insert;
  }
  Expect(Keyword::Values, "VALUES or SELECT");
  do insert.rows.push_back(ParseRowOfValues());
  while (AcceptSymbol(","));
  return insert;
}

std::vector<ExprPtr> Parser::ParseRowOfValues() {
  std::vector<ExprPtr> row;
  ExpectSymbol("(");
  do row.push_back(ParseExpr());
  while (AcceptSymbol(","));
  ExpectSymbol(")");
  return row;
}

Update Parser::ParseUpdate() {
  Take();
  Update update;
  update.table = ParseObject();
  Expect(Keyword::Set, "SET");
  do {
    SetItem item;
    item.column = ParseName();
    if (AcceptSymbol(".")) item.column = ParseName();
    ExpectSymbol("=");
    item.value = ParseExpr();
    update.items.push_back(std::move(item));
  } while (AcceptSymbol(","));
  if (At(Keyword::From)) update.from = ParseFrom();
  if (Accept(Keyword::Where)) update.where = ParseExpr();
  return update;
}

Delete Parser::ParseDelete() {
  Take();
  Accept(Keyword::From);
  Delete statement;
  statement.table = ParseObject();
  if (Accept(Keyword::Where)) statement.where = ParseExpr();
  return statement;
}

CreateView Parser::ParseCreateView() {
  Take();
  Expect(Keyword::View, "VIEW");
  CreateView view;
  view.name = ParseObject().name;
  Expect(Keyword::As, "AS");
  view.query = ParseQuery();
  return view;
}

DropObject Parser::ParseDrop() {
  Take();
  DropObject drop;
  drop.view = At(Keyword::View);
  if (!drop.view && !At(Keyword::Table)) Unexpected("VIEW or TABLE");
  Take();
  drop.ifExists = Accept(Keyword::If);
  if (drop.ifExists) Expect(Keyword::Exists, "EXISTS");
  drop.name = ParseObject().name;
  return drop;
}

AddPrimaryKey Parser::ParseAlter() {
  Take();
  Expect(Keyword::Table, "TABLE");
  AddPrimaryKey key;
  key.table = ParseObject().name;
  Expect(Keyword::Add, "ADD");
  Expect(Keyword::Constraint, "CONSTRAINT");
  key.name = ParseName();
  Expect(Keyword::Primary, "PRIMARY KEY");
  Expect(Keyword::Key, "KEY");
  key.columns = ParseNameList();
  return key;
}

Declare Parser::ParseDeclare() {
  Take();
  if (Peek().kind != TokenKind::Variable) Unexpected("a variable");
  Declare declare;
  declare.variable = Take().text;
  Accept(Keyword::As);
  Expr type;
  ParseTypeName(type);
  declare.type = type.text;
  if (AcceptSymbol("=")) declare.value = ParseExpr();
  return declare;
}

SetVariable Parser::ParseSet() {
  Take();
  if (Peek().kind != TokenKind::Variable) Unexpected("a variable");
  SetVariable set;
  set.variable = Take().text;
  ExpectSymbol("=");
  set.value = ParseExpr();
  return set;
}

std::unique_ptr<If> Parser::ParseIf() {
  Take();
  auto statement = std::make_unique<If>();
  statement->condition = ParseExpr();
  statement->then = ParseStatementOrBlock();
  if (Accept(Keyword::Else)) statement->otherwise = ParseStatementOrBlock();
  return statement;
}

Call Parser::ParseCall() {
  Call call;
  call.procedure = ParseObject().name;
  if (AtStatementEnd()) return call;
  do call.arguments.push_back(ParseCallArgument());
  while (AcceptSymbol(","));
  if (!AtStatementEnd()) Unexpected("the end of the call");
  return call;
}

// A bare word is a text. The last argument may be missing and is an empty text then.
CallArgument Parser::ParseCallArgument() {
  const Token token = Peek();
  CallArgument argument;
  if (token.kind == TokenKind::End) return argument;
  argument.text = token.text;
  argument.quoted = token.kind == TokenKind::Text;
  argument.null = token.keyword == Keyword::Null || token.keyword == Keyword::Default;
  if (AtSymbol("-") && Peek(1).kind == TokenKind::Number) {
    Take();
    argument.text = text_.substr(token.offset, Peek().offset + Peek().text.size() - token.offset);
  } else if (token.kind == TokenKind::Symbol || (token.kind == TokenKind::Keyword && !argument.null)) {
    Unexpected("an argument");
  }
  Take();
  return argument;
}

QueryPtr Parser::ParseQuery() {
  Nesting level(*this);
  auto query = std::make_unique<Query>();
  const int deepestOutside = std::exchange(deepest_, 0);
  query->cores.push_back(ParseSelectCore());
  while (Accept(Keyword::Union)) {
    const bool all = Accept(Keyword::All);
    query->cores.push_back(ParseSelectCore());
    query->cores.back().unionAll = all;
  }
  if (At(Keyword::Order)) query->orderBy = ParseOrderBy();
  query->depth = deepest_ + 1;
  if (query->depth > kMaxChain) Refuse(text_, query->cores.front().offset, "it is nested too deeply");
  deepest_ = std::max(deepestOutside, query->depth);
  return query;
}

SelectCore Parser::ParseSelectCore() {
  SelectCore core;
  core.offset = Peek().offset;
  Expect(Keyword::Select, "SELECT");
  core.distinct = Accept(Keyword::Distinct);
  if (!core.distinct) Accept(Keyword::All);
  if (Accept(Keyword::Top)) {
    core.top = AtSymbol("(") ? ParseBracket() : nullptr;
    if (!core.top) {
      if (Peek().kind != TokenKind::Number) Unexpected("a count");
      core.top = Make(ExprKind::Number, Take());
    }
    if (At(Keyword::Percent)) Unexpected("a column");
  }
  do core.items.push_back(ParseSelectItem());
  while (AcceptSymbol(","));
  if (Accept(Keyword::Into)) core.into = ParseObject().name;
  if (At(Keyword::From)) core.from = ParseFrom();
  if (Accept(Keyword::Where)) core.where = ParseExpr();
  if (Accept(Keyword::Group)) {
    Expect(Keyword::By, "BY");
    do core.groupBy.push_back(ParseExpr());
    while (AcceptSymbol(","));
  }
  if (Accept(Keyword::Having)) core.having = ParseExpr();
  return core;
}

SelectItem Parser::ParseSelectItem() {
  SelectItem item;
  if (AtSymbol("*")) {
    item.expr = Make(ExprKind::Star, Take());
    return item;
  }
  if (Peek().kind == TokenKind::Variable && Peek(1).text == "=") {
    item.variable = Take().text;
    Take();
  }
  const Token first = Peek();
  item.expr = ParseExpr();
  switch (item.expr->kind) {
    // "name = value" would give a column its name; read as a comparison it would answer something else.
    case ExprKind::Compare:
    case ExprKind::Logical:
    case ExprKind::Not:
    case ExprKind::In:
    case ExprKind::Like:
    case ExprKind::Between:
    case ExprKind::IsNull:
    case ExprKind::Exists:
      Refuse(text_, first.offset, "a condition where a column is expected");
    case ExprKind::Star:
      return item;
    default:
      break;
  }
  item.alias = ParseOptionalAlias();
  return item;
}

std::vector<TableRef> Parser::ParseFrom() {
  Take();
  std::vector<TableRef> tables;
  tables.push_back(ParseTable());
  for (;;) {
    JoinKind kind = JoinKind::Comma;
    if (!AcceptSymbol(",") && !ParseJoinKind(kind)) return tables;
    tables.push_back(ParseTable());
    tables.back().join = kind;
    if (kind == JoinKind::Comma || kind == JoinKind::Cross) continue;
    Expect(Keyword::On, "ON");
    tables.back().on = ParseExpr();
  }
}

TableRef Parser::ParseTable() {
  TableRef table;
  if (AtSymbol("(")) {
    table.offset = Take().offset;
    table.derived = ParseQuery();
    ExpectSymbol(")");
  } else {
    table = ParseObject();
  }
  table.alias = ParseOptionalAlias();
  if (table.derived && table.alias.empty()) Unexpected("a name for the inner SELECT");
  return table;
}

bool Parser::ParseJoinKind(JoinKind& kind) {
  if (Accept(Keyword::Join)) {
    kind = JoinKind::Inner;
    return true;
  }
  switch (Peek().keyword) {
    case Keyword::Inner:
      kind = JoinKind::Inner;
      break;
    case Keyword::Left:
      kind = JoinKind::Left;
      break;
    case Keyword::Right:
      kind = JoinKind::Right;
      break;
    case Keyword::Full:
      kind = JoinKind::Full;
      break;
    case Keyword::Cross:
      kind = JoinKind::Cross;
      break;
    default:
      return false;
  }
  Take();
  Accept(Keyword::Outer);
  Expect(Keyword::Join, "JOIN");
  return true;
}

std::vector<OrderItem> Parser::ParseOrderBy() {
  std::vector<OrderItem> items;
  Expect(Keyword::Order, "ORDER");
  Expect(Keyword::By, "BY");
  do {
    OrderItem item;
    item.expr = ParseExpr();
    item.descending = Accept(Keyword::Desc);
    if (!item.descending) Accept(Keyword::Asc);
    items.push_back(std::move(item));
  } while (AcceptSymbol(","));
  return items;
}

}  // namespace ktl::tsql
