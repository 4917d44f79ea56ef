// What the evaluation of a formula costs, from its text with nothing kept from the last time, beside the same
// arithmetic in plain C++ and, where it is installed, beside muparser on a formula that both can read.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "formula/clsExprEval.h"
#include "formula/expression_program.h"
#ifdef KTL_HAS_MUPARSER
#include <muParser.h>
#endif

namespace {

constexpr const char* kSalaryFormula =
    R"(KLIF(12000 > 10000, KLRound(12000 * 0.12, 1, "N"), KLSubjectToMax(12000 / 30 * 26, 9000)))";
// The same as it is parsed, with the names rewritten and the letters upper.
constexpr const char* kRewrittenFormula =
    R"(IIF(12000 > 10000, FNDBLKLROUND(12000 * 0.12, 1, "N"), FNDBLKLSUBJECTTOMAX(12000 / 30 * 26, 9000)))";
constexpr const char* kPlainFormula = "(12000 * 0.4 + 12000 * 0.12 - 1250.5) / 30 * (26 - 2) + 2 ^ 3 * 150";

ktl::Date Today() { return *ktl::Date::FromYmd(2010, 8, 15); }

void Evaluate(benchmark::State& state, const char* formula, const ktl::TokenTable& tokens = {}) {
  const ktl::clsExprEval evaluator(Today);
  if (!evaluator.EvaluateExpression(formula, tokens).IsDouble()) return state.SkipWithError("no number");
  for (auto _ : state) benchmark::DoNotOptimize(evaluator.EvaluateExpression(formula, tokens));
}

void SalaryFormula(benchmark::State& state) { Evaluate(state, kSalaryFormula); }
BENCHMARK(SalaryFormula);

// As an employee's evaluation does it: hundreds of tokens looked for, few found.
void SalaryFormulaAmongTokens(benchmark::State& state) {
  ktl::TokenTable tokens;
  for (int i = 0; i < state.range(0); ++i)
    tokens.push_back({"Component{HEAD" + std::to_string(i) + "}", "100.25"});
  Evaluate(state, "KLRound(Component{HEAD3} * 0.12 + Component{HEAD17}, 1, \"N\")", tokens);
}
BENCHMARK(SalaryFormulaAmongTokens)->Arg(160)->Arg(400);

void SalaryFormulaParsing(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(ktl::ParseExpression(kRewrittenFormula));
}
BENCHMARK(SalaryFormulaParsing);

// What a kept parsed form would still cost.
void SalaryFormulaParsedBefore(benchmark::State& state) {
  const ktl::ExpressionProgram program = ktl::ParseExpression(kRewrittenFormula);
  const std::function<ktl::Date()> now = Today;
  for (auto _ : state) benchmark::DoNotOptimize(ktl::RunExpression(program, now));
}
BENCHMARK(SalaryFormulaParsedBefore);

double RoundedToNearest(double value, double roundTo) {
  const double whole = std::floor(value);
  const double remainder = whole - std::trunc(whole / roundTo) * roundTo + (value - whole);
  if (remainder <= 0) return value;
  return std::floor(value / roundTo) * roundTo + (remainder < roundTo / 2 ? 0 : roundTo);
}

// Both results of the choice are worked out, as the formula does it.
void SalaryArithmetic(benchmark::State& state) {
  double basic = 12000;
  for (auto _ : state) {
    benchmark::DoNotOptimize(basic);
    const double rounded = RoundedToNearest(basic * 0.12, 1);
    const double limited = std::min(basic / 30 * 26, 9000.0);
    benchmark::DoNotOptimize(basic > 10000 ? rounded : limited);
  }
}
BENCHMARK(SalaryArithmetic);

void PlainFormula(benchmark::State& state) { Evaluate(state, kPlainFormula); }
BENCHMARK(PlainFormula);

void PlainArithmetic(benchmark::State& state) {
  double basic = 12000;
  for (auto _ : state) {
    benchmark::DoNotOptimize(basic);
    benchmark::DoNotOptimize((basic * 0.4 + basic * 0.12 - 1250.5) / 30 * (26 - 2) +
                             std::pow(2.0, 3.0) * 150);
  }
}
BENCHMARK(PlainArithmetic);

#ifdef KTL_HAS_MUPARSER
// Built anew for every evaluation, as a formula that comes with other numbers each time asks for.
void PlainFormulaMuparser(benchmark::State& state) {
  for (auto _ : state) {
    mu::Parser parser;
    parser.SetExpr(kPlainFormula);
    benchmark::DoNotOptimize(parser.Eval());
  }
}
BENCHMARK(PlainFormulaMuparser);

// One parser for all evaluations; a new text is parsed again.
void PlainFormulaMuparserReused(benchmark::State& state) {
  mu::Parser parser;
  for (auto _ : state) {
    parser.SetExpr(kPlainFormula);
    benchmark::DoNotOptimize(parser.Eval());
  }
}
BENCHMARK(PlainFormulaMuparserReused);
#endif

}  // namespace

BENCHMARK_MAIN();
