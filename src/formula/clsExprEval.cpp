#include "formula/clsExprEval.h"

#include <array>
#include <exception>

#include "formula/expression_faults.h"
#include "formula/expression_program.h"
#include "runtime/errors.h"
#include "runtime/text.h"

namespace ktl {
namespace {

struct Rewriting {
  std::string_view from;
  std::string_view to;
};

// The users' names of the functions, in the order of their replacing. No word bounds are looked for: a name
// that holds another one is torn, and so is a literal.
constexpr auto kFunctionNames = std::to_array<Rewriting>({
    {"KLIF", "IIF"},
    {"KLBETWEEN", "FNINTKLBETWEEN"},
    {"KLROUND", "FNDBLKLROUND"},
    {"KLSUBJECTTOMAX", "FNDBLKLSUBJECTTOMAX"},
    {"KLSUBJECTTOMIN", "FNDBLKLSUBJECTTOMIN"},
    {"KLDAYDIFF", "FNLNGKLDAYSDIFF"},
    {"KLMONTHDIFF", "FNLNGKLMONTHSDIFF"},
    {"KLYEARDIFF", "FNLNGKLYEARSDIFF"},
    {"KLSYSTEMDATE", "FNDTEKLSYSTEMDATE"},
    {"KLMONTHYEAR", "FNLNGKLMONTHYEAR"},
});

char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c; }

// Where the token, upper-cased, stands in an upper-case text. Formulas meet hundreds of tokens that they do
// not hold, so the token itself is not copied.
std::size_t FindUpperCased(std::string_view text, std::string_view token, std::size_t from) {
  const char first = UpperAscii(token[0]);
  for (std::size_t at = text.find(first, from); at != text.npos; at = text.find(first, at + 1)) {
    if (token.size() > text.size() - at) break;
    std::size_t same = 1;
    while (same < token.size() && text[at + same] == UpperAscii(token[same])) ++same;
    if (same == token.size()) return at;
  }
  return text.npos;
}

void ReplaceToken(std::string& text, std::string_view token, std::string_view with) {
  std::size_t at = FindUpperCased(text, token, 0);
  if (at == text.npos) return;
  std::string replaced;
  std::size_t done = 0;
  for (; at != text.npos; at = FindUpperCased(text, token, done)) {
    CheckLength(replaced.size() + (at - done) + with.size());
    replaced.append(text, done, at - done).append(with);
    done = at + token.size();
  }
  text = replaced.append(text, done);
}

bool IsAscii(std::string_view text) {
  for (const char c : text)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

void ReplaceTokens(std::string& text, const TokenTable& table) {
  for (const TokenRow& row : table) {
    if (row.token.empty()) continue;
    const bool isAscii = IsAscii(row.token);
    if (isAscii && FindUpperCased(text, row.token, 0) == text.npos) continue;
    ReplaceToken(text, isAscii ? row.token : UpperCase(row.token), UpperCase(row.text));
  }
}

// What stands between the first and the last single quote.
std::string ExtractQuotedName(const std::string& strMessage) {
  const std::size_t first = strMessage.find('\'');
  const std::size_t last = strMessage.rfind('\'');
  return first == last ? std::string() : strMessage.substr(first + 1, last - first - 1);
}

std::string ErrorText(const RuntimeError& error) {
  switch (static_cast<ExpressionFault>(error.number())) {
    case ExpressionFault::DivisionByZero:
      return "ERROR: Divide By Zero Error";
    case ExpressionFault::UnknownFunction:
      return "ERROR: Invalid function '" + ExtractQuotedName(error.description()) + "'";
    case ExpressionFault::WrongArgumentCount:
      return "ERROR: Invalid argument";
    case ExpressionFault::UndefinedName:
      return "ERROR: Variable not defined '" + ExtractQuotedName(error.description()) + "'";
    case ExpressionFault::ClosingParenthesisExpected:
      return "ERROR: Missing closing braces )";
    case ExpressionFault::EndOfStatementExpected:
      return "ERROR: Either bad syntax or ( missing";
    default:
      return "ERROR: Invalid expression";
  }
}

}  // namespace

// Upper-casing comes first though the users' tokens are looked for in any case: the outcome is the same.
std::string clsExprEval::FinalText(std::string_view strExpression, const TokenTable& arrFirst,
                                   const TokenTable& arrSecond) {
  std::string text = UpperCase(strExpression);
  ReplaceTokens(text, arrFirst);
  ReplaceTokens(text, arrSecond);
  for (const Rewriting& name : kFunctionNames) ReplaceToken(text, name.from, name.to);
  return text;
}

Value clsExprEval::EvaluateExpression(std::string_view strExpression, const TokenTable& arrFirst,
                                      const TokenTable& arrSecond) const {
  try {
    return RunExpression(ParseExpression(FinalText(strExpression, arrFirst, arrSecond)), now_);
  } catch (const RuntimeError& error) {
    return ErrorText(error);
  } catch (const std::exception&) {
    return "ERROR: Invalid expression";
  }
}

}  // namespace ktl
