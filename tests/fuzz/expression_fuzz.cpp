// Any bytes as a formula, with tokens to put in: the evaluator must answer, the same answer every time, and a
// value that has a text.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "formula/clsExprEval.h"

namespace {

// Not `assert`, which a release build leaves out.
void Require(bool condition) {
  if (!condition) std::abort();
}

bool IsAnswer(const ktl::Value& value) {
  return value.IsNull() || (value.IsDouble() ? std::isfinite(value.real()) : !value.IsInteger());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ktl::clsExprEval evaluator([] { return *ktl::Date::FromYmd(2010, 8, 15, 10, 30, 0); });
  static const ktl::TokenTable components{{"{B}", "12000"}, {"", "1"}, {"{N}", "\"Accounts\""}, {"qq", "(q"}};
  static const ktl::TokenTable fields{{"{D}", "CDATE(\"01/Apr/2010\")"}, {"\xC3\xA9", "\xC3\xA9\xC3\xA9"}};

  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const ktl::Value value = evaluator.EvaluateExpression(text, components, fields);
  Require(IsAnswer(value));
  Require(evaluator.EvaluateExpression(text, components, fields) == value);
  static_cast<void>(value.TextOrEmpty());
  return 0;
}
