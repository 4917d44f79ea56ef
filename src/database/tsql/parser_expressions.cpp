#include <algorithm>

#include "database/tsql/parser.h"
#include "database/tsql/words.h"

namespace ktl::tsql {

ExprPtr Parser::Make(ExprKind kind, const Token& token) {
  auto expr = std::make_unique<Expr>();
  expr->kind = kind;
  expr->offset = token.offset;
  expr->text = token.text;
  return expr;
}

void Parser::Adopt(Expr& parent, ExprPtr child) {
  parent.depth = std::max(parent.depth, child->depth + 1);
  deepest_ = std::max(deepest_, parent.depth);
  if (parent.depth > kMaxChain) Refuse(text_, parent.offset, "it is nested too deeply");
  parent.args.push_back(std::move(child));
}

ExprPtr Parser::Join(ExprKind kind, const Token& op, ExprPtr left, ExprPtr right) {
  auto expr = Make(kind, op);
  Adopt(*expr, std::move(left));
  Adopt(*expr, std::move(right));
  return expr;
}

void Parser::AdoptQuery(Expr& parent) {
  parent.query = ParseQuery();
  parent.depth = std::max(parent.depth, parent.query->depth + 1);
}

ExprPtr Parser::ParseOr() {
  Nesting level(*this);
  auto left = ParseAnd();
  while (At(Keyword::Or)) {
    const Token op = Take();
    left = Join(ExprKind::Logical, op, std::move(left), ParseAnd());
  }
  return left;
}

ExprPtr Parser::ParseAnd() {
  auto left = ParseNot();
  while (At(Keyword::And)) {
    const Token op = Take();
    left = Join(ExprKind::Logical, op, std::move(left), ParseNot());
  }
  return left;
}

ExprPtr Parser::ParseNot() {
  if (!At(Keyword::Not)) return ParsePredicate();
  Nesting level(*this);
  auto expr = Make(ExprKind::Not, Take());
  Adopt(*expr, ParseNot());
  return expr;
}

ExprPtr Parser::ParsePredicate() {
  auto left = ParseSum();
  const Token token = Peek();
  if (token.kind == TokenKind::Symbol &&
      std::string_view("=<>!").find(token.text[0]) != std::string_view::npos) {
    Take();
    auto expr = Join(ExprKind::Compare, token, std::move(left), ParseSum());
    if (expr->text == "!=") expr->text = "<>";
    return expr;
  }
  if (Accept(Keyword::Is)) {
    auto expr = Make(ExprKind::IsNull, token);
    expr->negated = Accept(Keyword::Not);
    Expect(Keyword::Null, "NULL");
    Adopt(*expr, std::move(left));
    return expr;
  }
  if (Accept(Keyword::Not)) return ParsePredicateTail(std::move(left), true);
  if (At(Keyword::In) || At(Keyword::Like) || At(Keyword::Between))
    return ParsePredicateTail(std::move(left), false);
  return left;
}

ExprPtr Parser::ParsePredicateTail(ExprPtr left, bool negated) {
  ExprPtr expr;
  if (At(Keyword::In)) {
    expr = ParseIn(std::move(left));
  } else if (At(Keyword::Like)) {
    const Token op = Take();
    expr = Join(ExprKind::Like, op, std::move(left), ParseSum());
    if (Accept(Keyword::Escape)) Adopt(*expr, ParseSum());
  } else if (At(Keyword::Between)) {
    const Token op = Take();
    expr = Join(ExprKind::Between, op, std::move(left), ParseSum());
    Expect(Keyword::And, "AND");
    Adopt(*expr, ParseSum());
  } else {
    Unexpected("IN, LIKE or BETWEEN");
  }
  expr->negated = negated;
  return expr;
}

ExprPtr Parser::ParseIn(ExprPtr left) {
  auto expr = Make(ExprKind::In, Take());
  Adopt(*expr, std::move(left));
  ExpectSymbol("(");
  if (At(Keyword::Select)) {
    AdoptQuery(*expr);
  } else {
    do Adopt(*expr, ParseSum());
    while (AcceptSymbol(","));
  }
  ExpectSymbol(")");
  return expr;
}

ExprPtr Parser::ParseSum() {
  auto left = ParseProduct();
  while (AtSymbol("+") || AtSymbol("-")) {
    const Token op = Take();
    left = Join(ExprKind::Arithmetic, op, std::move(left), ParseProduct());
  }
  return left;
}

ExprPtr Parser::ParseProduct() {
  auto left = ParseUnary();
  while (AtSymbol("*") || AtSymbol("/") || AtSymbol("%")) {
    const Token op = Take();
    left = Join(ExprKind::Arithmetic, op, std::move(left), ParseUnary());
  }
  return left;
}

ExprPtr Parser::ParseUnary() {
  if (AtSymbol("-") || AtSymbol("+")) {
    Nesting level(*this);
    const Token sign = Take();
    auto operand = ParseUnary();
    if (sign.text == "+") return operand;
    auto expr = Make(ExprKind::Negate, sign);
    Adopt(*expr, std::move(operand));
    return expr;
  }
  auto operand = ParsePrimary();
  while (Accept(Keyword::Collate)) {
    auto expr = Make(ExprKind::Collate, Peek());
    expr->text = ParseName();
    Adopt(*expr, std::move(operand));
    operand = std::move(expr);
  }
  return operand;
}

ExprPtr Parser::ParsePrimary() {
  const Token token = Peek();
  switch (token.kind) {
    case TokenKind::Number:
      return Make(ExprKind::Number, Take());
    case TokenKind::Text:
      return Make(ExprKind::Text, Take());
    case TokenKind::Variable:
      return Make(ExprKind::Variable, Take());
    case TokenKind::Name:
      return ParseNameOrFunction();
    case TokenKind::Symbol:
      if (token.text == "(") return ParseBracket();
      break;
    case TokenKind::Keyword:
      switch (token.keyword) {
        case Keyword::Null:
          return Make(ExprKind::Null, Take());
        case Keyword::Case:
          return ParseCase();
        case Keyword::Convert:
          return ParseConvert(Take());
        case Keyword::Left:
        case Keyword::Right:
          return ParseFunction(Take(), {});
        case Keyword::Exists: {
          auto expr = Make(ExprKind::Exists, Take());
          ExpectSymbol("(");
          AdoptQuery(*expr);
          ExpectSymbol(")");
          return expr;
        }
        default:
          break;
      }
      break;
    case TokenKind::End:
      break;
  }
  Unexpected("a value");
}

ExprPtr Parser::ParseBracket() {
  const Token open = Take();
  ExprPtr expr;
  if (At(Keyword::Select)) {
    expr = Make(ExprKind::Subquery, open);
    AdoptQuery(*expr);
  } else {
    expr = ParseExpr();
  }
  ExpectSymbol(")");
  return expr;
}

ExprPtr Parser::ParseCase() {
  Nesting level(*this);
  auto expr = Make(ExprKind::Case, Take());
  if (!At(Keyword::When)) {
    expr->hasOperand = true;
    Adopt(*expr, ParseExpr());
  }
  if (!At(Keyword::When)) Unexpected("WHEN");
  while (Accept(Keyword::When)) {
    Adopt(*expr, ParseExpr());
    Expect(Keyword::Then, "THEN");
    Adopt(*expr, ParseExpr());
  }
  if (Accept(Keyword::Else)) {
    expr->hasElse = true;
    Adopt(*expr, ParseExpr());
  }
  Expect(Keyword::End, "END");
  return expr;
}

ExprPtr Parser::ParseNameOrFunction() {
  const Token first = Take();
  if (AtSymbol("(")) return SameWord(first.text, "CAST") ? ParseCast(first) : ParseFunction(first, {});
  if (!AcceptSymbol(".")) return Make(ExprKind::Name, first);
  if (AcceptSymbol("*")) {
    auto star = Make(ExprKind::Star, first);
    star->qualifier = first.text;
    return star;
  }
  Token second = Peek();
  second.text = ParseName();
  if (AtSymbol("(")) return ParseFunction(second, first.text);
  auto expr = Make(ExprKind::Name, second);
  expr->qualifier = first.text;
  return expr;
}

ExprPtr Parser::ParseFunction(Token name, std::string_view schema) {
  auto expr = Make(ExprKind::Function, name);
  expr->qualifier = schema;
  ExpectSymbol("(");
  if (AtSymbol("*")) {
    Adopt(*expr, Make(ExprKind::Star, Take()));
  } else if (!AtSymbol(")")) {
    expr->distinct = Accept(Keyword::Distinct);
    if (SameWord(name.text, "DATEDIFF")) {
      Adopt(*expr, ParseDatePart());
      ExpectSymbol(",");
    }
    do {
      Adopt(*expr, At(Keyword::Default) ? Make(ExprKind::Default, Take()) : ParseExpr());
    } while (AcceptSymbol(","));
  }
  ExpectSymbol(")");
  if (Accept(Keyword::Over)) {
    expr->hasOver = true;
    ExpectSymbol("(");
    expr->over = ParseOrderBy();
    ExpectSymbol(")");
  }
  return expr;
}

// A word of the language, not a column.
ExprPtr Parser::ParseDatePart() {
  for (const std::string_view part : {"DAY", "MONTH", "YEAR"})
    if (AtWord(part)) {
      auto expr = Make(ExprKind::DatePart, Take());
      expr->text = part;
      return expr;
    }
  Unexpected("DAY, MONTH or YEAR");
}

ExprPtr Parser::ParseCast(const Token& name) {
  auto expr = Make(ExprKind::Cast, name);
  ExpectSymbol("(");
  Adopt(*expr, ParseExpr());
  Expect(Keyword::As, "AS");
  ParseTypeName(*expr);
  ExpectSymbol(")");
  return expr;
}

ExprPtr Parser::ParseConvert(const Token& name) {
  auto expr = Make(ExprKind::Cast, name);
  ExpectSymbol("(");
  ParseTypeName(*expr);
  ExpectSymbol(",");
  Adopt(*expr, ParseExpr());
  ExpectSymbol(")");
  return expr;
}

void Parser::ParseTypeName(Expr& cast) {
  cast.text = ParseName();
  if (!AcceptSymbol("(")) return;
  if (AtWord("MAX")) {
    Take();
  } else {
    cast.length = ParseCount();
    if (AcceptSymbol(",")) cast.scale = ParseCount();
  }
  ExpectSymbol(")");
}

}  // namespace ktl::tsql
