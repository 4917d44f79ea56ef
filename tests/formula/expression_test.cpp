#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "formula/clsExprEval.h"
#include "runtime/errors.h"

namespace ktl {
namespace {

// Evaluated on 15/Aug/2010 at 10:30.
Value Evaluate(std::string_view text, const TokenTable& first = {}, const TokenTable& second = {}) {
  const clsExprEval evaluator([] { return *Date::FromYmd(2010, 8, 15, 10, 30, 0); });
  return evaluator.EvaluateExpression(text, first, second);
}

// The kind of a value and its text, so that a number and the text of a number differ.
std::string Shown(const Value& value) {
  if (value.IsNull()) return "null";
  if (value.IsEmpty()) return "empty";
  if (value.IsText()) return '"' + value.ToText() + '"';
  return value.ToText();
}

using Cases = std::vector<std::pair<std::string, const char*>>;

void ExpectAll(const Cases& cases, const TokenTable& first = {}, const TokenTable& second = {}) {
  for (const auto& [expression, shown] : cases)
    EXPECT_EQ(Shown(Evaluate(expression, first, second)), shown) << expression.substr(0, 100);
}

void ExpectEach(const char* shown, const std::vector<std::string>& expressions) {
  for (const auto& expression : expressions) ExpectAll({{expression, shown}});
}

constexpr const char* kBadSyntax = "\"ERROR: Either bad syntax or ( missing\"";
constexpr const char* kInvalid = "\"ERROR: Invalid expression\"";

// expressions.tsv: an expression, a tab, what it gives.
TEST(Expression, GivesWhatTheTableSays) {
  std::ifstream table(KTL_TEST_DATA "/expressions.tsv");
  std::size_t cases = 0;
  for (std::string line; std::getline(table, line);) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos) continue;  // a heading
    EXPECT_EQ(Shown(Evaluate(line.substr(0, tab))), line.substr(tab + 1)) << line;
    ++cases;
  }
  EXPECT_GT(cases, 235);
}

TEST(Expression, StandsOnOneLine) {
  ExpectAll({{" .5\t", "0.5"},
             {"", "\"ERROR: Invalid expression\""},
             {"1\n+ 2", "\"ERROR: Invalid expression\""},
             {"1 + 2\r\n", "\"ERROR: Invalid expression\""},
             {"\"a\nb\"", "\"ERROR: Invalid expression\""}});
}

TEST(Expression, PutsTokensInBeforeAnythingElse) {
  const TokenTable components = {
      {"Component{BASIC}", "12000"}, {"", "never"}, {"(Grade)", "\"m1\""}, {"Long", "Short"}, {"short", "7"}};
  const TokenTable fields = {{"empdet{dept}", "\"Accounts\""}, {"7", "8"}};
  ExpectAll(
      {
          {"COMPONENT{basic} * 2", "24000"},
          {"(GRADE) = \"M1\"", "True"},
          {"(grade) & \"(grade)\"", kBadSyntax},  // the quotes come in inside the literal and end it
          {"long", "8"},  // Long, short, 7, 8: each row sees what the ones before put in
          {"EmpDet{Dept}", "\"ACCOUNTS\""},
          {"\"prolonged\"", "\"PRO8ED\""},
          {"\"klif\"", "\"IIF\""},
          {"unit + 1", "\"ERROR: Variable not defined 'UNIT'\""},
      },
      components, fields);
  ExpectAll({{"(name) = \"x\"", kBadSyntax}, {"\"\" & Café", "\"3\""}},
            {{"(name)", "\"5\" pipe\""}, {"café", "3"}});
}

std::string Repeat(std::string_view part, std::size_t times) {
  std::string text;
  while (times-- > 0) text += part;
  return text;
}

TEST(Expression, SurvivesAnyText) {
  constexpr std::size_t kMany = 1 << 20;
  ExpectAll({{Repeat("(", 500) + "1" + Repeat(")", 500), "1"},
             {"1" + Repeat("+1", kMany / 2), "524289"},
             {"Len(\"" + Repeat("\"\"", kMany / 2) + "\")", "524288"},
             {"Len(" + Repeat("\"x\"&", 10000) + "1)", "10001"},
             {"InStr(String(4000000, 65), String(2000000, 65) & 1)", "0"},
             {"InStrRev(String(4000000, 65), 1 & String(2000000, 65))", "0"}});
  ExpectEach(kInvalid, {Repeat("(", kMany), Repeat("-", kMany) + "1", Repeat("Not ", kMany) + "1",
                        Repeat("Abs(", kMany), Repeat("KLIF", kMany / 4), Repeat("\"x\"&", kMany / 4) + "1",
                        "Len(String(2000000000, 65))", Repeat("A", 256), std::string("1 +\0 1", 6),
                        "Left(\"\xC3\xC3\x80\xFF\", 2) = \xFF"});
  EXPECT_EQ(Shown(clsExprEval([]() -> Date { throw RuntimeError::Overflow(); }).EvaluateExpression("Now")),
            kInvalid);
}

}  // namespace
}  // namespace ktl
