#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "runtime/date.h"
#include "runtime/value.h"

namespace ktl {

// One row of a token table: what to look for in a formula and what to put in its place. A row with an empty
// token does nothing.
struct TokenRow {
  std::string token;
  std::string text;
  const char* source = "";  // where the text came from, for those who ask
};
using TokenTable = std::vector<TokenRow>;

// Turns the text of a salary formula into one value.
class clsExprEval {
 public:
  // `now` answers the date and time for the formulas that ask.
  explicit clsExprEval(std::function<Date()> now) : now_(std::move(now)) {}

  // The rows of the first table replace their tokens one after the other, then those of the second: plain
  // substrings in any case, inside literals too; a later row sees what the earlier ones put in. Then the
  // whole text, literals and substituted values included, is upper-cased and evaluated. Answers a number
  // (always a double), a date, a boolean, a text, empty or null, or one of these texts; nothing is ever
  // thrown:
  //   ERROR: Divide By Zero Error                  ERROR: Missing closing braces )
  //   ERROR: Invalid function 'NAME'               ERROR: Either bad syntax or ( missing
  //   ERROR: Variable not defined 'NAME'           ERROR: Invalid expression
  //   ERROR: Invalid argument
  Value EvaluateExpression(std::string_view strExpression, const TokenTable& arrFirst = {},
                           const TokenTable& arrSecond = {}) const;

  // The text that is evaluated: tokens replaced, functions under their own names, upper case. May throw for a
  // text that grows out of all bounds.
  static std::string FinalText(std::string_view strExpression, const TokenTable& arrFirst = {},
                               const TokenTable& arrSecond = {});

 private:
  std::function<Date()> now_;
};

}  // namespace ktl
