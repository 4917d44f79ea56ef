#pragma once

#include <string_view>
#include <vector>

#include "database/tsql/lexer.h"
#include "database/tsql/tree.h"

namespace ktl::tsql {

// Reads one text: a statement, or several without anything between them, or the call of a procedure.
// The tree views the text. Throws DatabaseError with line, column and the text around the place for anything
// that it does not know; what nests deeper than kMaxDepth is refused as well. Parameters: see Tokenize.
Block Parse(std::string_view text, int parameters = 0);

inline constexpr int kMaxDepth = 200;  // of subselects, brackets and functions in one another
inline constexpr int kMaxChain = 600;  // of operators in a row

// Recursive descent; expressions are in parser_expressions.cpp, statements in parser.cpp.
class Parser {
 public:
  explicit Parser(std::string_view text, int parameters = 0)
      : text_(text), tokens_(Tokenize(text, parameters)) {}

  Block ParseBatch();

 private:
  class Nesting;

  const Token& Peek(std::size_t ahead = 0) const;
  Token Take() { return tokens_[at_ < tokens_.size() - 1 ? at_++ : at_]; }
  bool At(Keyword keyword) const { return Peek().keyword == keyword; }
  bool AtSymbol(std::string_view symbol) const;
  bool AtWord(std::string_view word, std::size_t ahead = 0) const;
  bool Accept(Keyword keyword);
  bool AcceptSymbol(std::string_view symbol);
  void Expect(Keyword keyword, const char* what);
  void ExpectSymbol(std::string_view symbol);
  [[noreturn]] void Unexpected(const std::string& wanted) const;

  std::string_view ParseName();
  int ParseCount();
  // [schema.]name; the schema can only be dbo, SYS or INFORMATION_SCHEMA.
  TableRef ParseObject();
  std::string_view ParseOptionalAlias();
  std::vector<std::string_view> ParseNameList();

  Block ParseStatementOrBlock();
  Statement ParseStatement();
  bool AtStatementEnd() const;
  Insert ParseInsert();
  std::vector<ExprPtr> ParseRowOfValues();
  Update ParseUpdate();
  Delete ParseDelete();
  CreateView ParseCreateView();
  DropObject ParseDrop();
  AddPrimaryKey ParseAlter();
  Declare ParseDeclare();
  SetVariable ParseSet();
  std::unique_ptr<If> ParseIf();
  Call ParseCall();
  CallArgument ParseCallArgument();

  QueryPtr ParseQuery();
  SelectCore ParseSelectCore();
  SelectItem ParseSelectItem();
  std::vector<TableRef> ParseFrom();
  TableRef ParseTable();
  bool ParseJoinKind(JoinKind& kind);
  std::vector<OrderItem> ParseOrderBy();

  ExprPtr ParseExpr() { return ParseOr(); }
  ExprPtr ParseOr();
  ExprPtr ParseAnd();
  ExprPtr ParseNot();
  ExprPtr ParsePredicate();
  ExprPtr ParsePredicateTail(ExprPtr left, bool negated);
  ExprPtr ParseIn(ExprPtr left);
  ExprPtr ParseSum();
  ExprPtr ParseProduct();
  ExprPtr ParseUnary();
  ExprPtr ParsePrimary();
  ExprPtr ParseBracket();
  ExprPtr ParseCase();
  ExprPtr ParseNameOrFunction();
  ExprPtr ParseFunction(Token name, std::string_view schema);
  ExprPtr ParseDatePart();
  ExprPtr ParseCast(const Token& name);
  ExprPtr ParseConvert(const Token& name);
  void ParseTypeName(Expr& cast);

  ExprPtr Make(ExprKind kind, const Token& token);
  ExprPtr Join(ExprKind kind, const Token& op, ExprPtr left, ExprPtr right);
  void Adopt(Expr& parent, ExprPtr child);
  void AdoptQuery(Expr& parent);

  std::string_view text_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  int nesting_ = 0;
  int deepest_ = 0;  // depth of the deepest expression of the query being read
};

// Counts one level while it lives.
class Parser::Nesting {
 public:
  explicit Nesting(Parser& parser) : parser_(parser) {
    if (++parser_.nesting_ > kMaxDepth)
      Refuse(parser_.text_, parser_.Peek().offset, "it is nested too deeply");
  }
  ~Nesting() { --parser_.nesting_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  Parser& parser_;
};

}  // namespace ktl::tsql
