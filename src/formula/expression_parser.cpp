#include <string>

#include "formula/expression_faults.h"
#include "formula/expression_lexer.h"
#include "formula/expression_program.h"
#include "runtime/text.h"

namespace ktl {
namespace {

using Action = ExpressionProgram::Action;

// A formula nested deeper than this is refused before it can exhaust the stack.
constexpr int kDeepest = 2000;

// About so many bytes of a formula make a step of its program.
constexpr std::size_t kBytesPerStep = 6;

// Higher binds tighter.
int Precedence(Operator op) {
  switch (op) {
    case Operator::Imp:
      return 1;
    case Operator::Eqv:
      return 2;
    case Operator::Xor:
      return 3;
    case Operator::Or:
      return 4;
    case Operator::And:
      return 5;
    case Operator::Not:
      return 6;
    case Operator::Concatenate:
      return 8;
    case Operator::Add:
    case Operator::Subtract:
      return 9;
    case Operator::Mod:
      return 10;
    case Operator::IntegerDivide:
      return 11;
    case Operator::Multiply:
    case Operator::Divide:
      return 12;
    case Operator::Negate:
      return 13;
    case Operator::Power:
      return 14;
    default:
      return 7;  // the comparisons
  }
}

RuntimeError SyntaxError() { return Fault(ExpressionFault::Syntax, "Syntax error"); }

class Parser {
 public:
  explicit Parser(std::string_view text) : lexer_(text) {
    program_.steps.reserve(text.size() / kBytesPerStep + 1);
    program_.constants.reserve(text.size() / kBytesPerStep + 1);
    Advance();
  }

  ExpressionProgram Parse() {
    ParseBinary(0);
    if (next_.symbol == Symbol::LineBreak) throw SyntaxError();
    if (next_.symbol != Symbol::End)
      throw Fault(ExpressionFault::EndOfStatementExpected, "Expected end of statement");
    return std::move(program_);
  }

 private:
  void Advance() { next_ = lexer_.Next(); }
  bool NextIs(Symbol symbol) const { return next_.symbol == symbol; }
  bool NextIsOperator(int lowest) const {
    return NextIs(Symbol::Operator) && next_.op != Operator::Not && Precedence(next_.op) >= lowest;
  }

  void ParseBinary(int lowest);
  void ParseOperand();
  void ParsePrefix();
  void ParseName();
  std::uint32_t ParseArguments();
  void Close();
  void PushConstant(Value value);
  std::uint32_t Keep(Value value);

  ExpressionLexer lexer_;
  Lexeme next_;
  int depth_ = 0;
  ExpressionProgram program_;
};

// Operators of the given precedence and above; all of them, the power too, group from the left.
void Parser::ParseBinary(int lowest) {
  if (++depth_ > kDeepest) throw RuntimeError(28, "Out of stack space");
  ParseOperand();
  while (NextIsOperator(lowest)) {
    const Operator op = next_.op;
    Advance();
    ParseBinary(Precedence(op) + 1);
    program_.steps.push_back({.action = Action::Binary, .op = op});
  }
  --depth_;
}

void Parser::ParseOperand() {
  switch (next_.symbol) {
    case Symbol::Number:
      return PushConstant(next_.number);
    case Symbol::Text:
      return PushConstant(ReplaceAll(std::string(next_.text), "\"\"", "\""));
    case Symbol::True:
      return PushConstant(true);
    case Symbol::False:
      return PushConstant(false);
    case Symbol::Null:
      return PushConstant(Null());
    case Symbol::Empty:
      return PushConstant(Empty());
    case Symbol::Name:
      return ParseName();
    case Symbol::Operator:
      return ParsePrefix();
    case Symbol::OpenParenthesis:
      Advance();
      ParseBinary(0);
      return Close();
    default:
      throw SyntaxError();
  }
}

// A sign binds looser than the power: -2 ^ 2 is -4, and 2 ^ -1 is one half.
void Parser::ParsePrefix() {
  const Operator prefix = next_.op == Operator::Subtract ? Operator::Negate : next_.op;
  Advance();
  switch (prefix) {
    case Operator::Negate:
    case Operator::Add:
      ParseBinary(Precedence(Operator::Power));
      break;
    case Operator::Not:
      ParseBinary(Precedence(Operator::Not) + 1);
      break;
    default:
      throw SyntaxError();
  }
  if (prefix != Operator::Add) program_.steps.push_back({.action = Action::Unary, .op = prefix});
}

// Whether a name is known and takes so many arguments is judged when it is reached.
void Parser::ParseName() {
  const std::string_view name = next_.text;
  const ExpressionFunction* const function = FindFunction(name);
  Advance();
  const bool called = NextIs(Symbol::OpenParenthesis);
  const std::uint32_t arguments = called ? ParseArguments() : 0;
  if (function != nullptr)
    program_.steps.push_back({.action = Action::Call, .arguments = arguments, .function = function});
  else
    program_.steps.push_back({.action = called ? Action::CallUnknown : Action::UndefinedName,
                              .constant = Keep(name),
                              .arguments = arguments});
}

std::uint32_t Parser::ParseArguments() {
  Advance();
  if (NextIs(Symbol::CloseParenthesis)) {
    Advance();
    return 0;
  }
  ParseBinary(0);
  std::uint32_t count = 1;
  for (; NextIs(Symbol::Comma); ++count) {
    Advance();
    ParseBinary(0);
  }
  Close();
  return count;
}

void Parser::Close() {
  if (!NextIs(Symbol::CloseParenthesis))
    throw Fault(ExpressionFault::ClosingParenthesisExpected, "Expected ')'");
  Advance();
}

void Parser::PushConstant(Value value) {
  program_.steps.push_back({.action = Action::Push, .constant = Keep(std::move(value))});
  Advance();
}

std::uint32_t Parser::Keep(Value value) {
  program_.constants.push_back(std::move(value));
  return static_cast<std::uint32_t>(program_.constants.size() - 1);
}

}  // namespace

ExpressionProgram ParseExpression(std::string_view text) { return Parser(text).Parse(); }

}  // namespace ktl
