// The yearly benefit beside its main statement written by hand, the month-by-month view, and exports.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>

#include "bench_session.h"
#include "benefit/frmSepInt.h"
#include "benefit/yearly_run.h"
#include "peak_memory.h"
#include "raw_store.h"
#include "screen/person.h"
#include "screen/progress.h"
#include "workbook/grid_workbook.h"

namespace ktl {
namespace {

constexpr const char* kYear = "2026 - 2027";

BenchSize SizeOf(const benchmark::State& state) {
  return std::array{Usual(10000), kLarge, kLong}[static_cast<std::size_t>(state.range(0))];
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond)->Arg(0);
  if (IsLargeMeasured()) bench->Arg(1)->Arg(2);
}

// Everybody pays tax, and every loan and advance has a benefit. Made once for the measurements of a size.
const std::filesystem::path& BenefitCompany(const BenchSize& size) {
  static std::filesystem::path company;
  static BenchSize made;
  if (made == size) return company;
  company = ScratchCompany(size);
  made = size;
  Bench bench(company);
  bench.Connect(company);
  Connection& cn = bench.session->Cn;
  cn.Execute("UPDATE INS_MASTER SET SEPPIYN = 1, SBIIFBYN = 1 WHERE SITYPE <= 2");
  cn.Execute("UPDATE MAS_EMPLOYEE SET TDSYN = 1");
  cn.Execute("UPDATE INS_EMIDETAIL SET MDFPRNAMT = MDFYAMT, MDFINTAMT = 0 WHERE SITYPE <= 2");
  return company;
}

struct BenefitBench {
  explicit BenefitBench(const BenchSize& size) : company(BenefitCompany(size)), bench(company) {
    bench.Connect(company);
  }

  std::filesystem::path company;
  Bench bench;
};

// A new year: a row is added for each employee. Run again, each of them is changed.
enum class Run { First, Again };
void RunTheYear(benchmark::State& state, Run run) {
  BenefitBench bench(SizeOf(state));
  Session& session = *bench.bench.session;
  Screen toy("toy");
  Progress progress(session.desk, toy);
  const BenefitYear year = BenefitYearOf(session, kYear);
  const auto calculate = [&] { RecalculateBenefit(session, progress, year, LoanRule::EveryLoan); };
  if (run == Run::Again) calculate();
  const PeakMemory peak;
  for (auto _ : state) {
    state.PauseTiming();
    if (run == Run::First) session.Cn.Execute("DELETE FROM MAS_LOANINTUPDATE");
    session.Cn.MakeDurable();
    state.ResumeTiming();
    calculate();
    session.Cn.MakeDurable();
  }
  state.counters["MB"] = peak.Megabytes();
  state.counters["employees"] = double(session.data.Long("SELECT COUNT(*) FROM MAS_LOANINTUPDATE"));
}
BENCHMARK_CAPTURE(RunTheYear, First, Run::First)->Apply(Sizes);
BENCHMARK_CAPTURE(RunTheYear, Again, Run::Again)->Apply(Sizes);

// The rest behind the year once a loan, the balances of its twelve months by a window, the rate once a name.
constexpr const char* kByHand = R"sql(
WITH NAMED AS MATERIALIZED (
  SELECT SITYPE, SINAME, coalesce(
    (SELECT INTEREST FROM MAS_LOANINT WHERE FINANCIALYEAR = '2026' AND instr(LOANNAME, '#$#' || M.SINAME || '#$#')),
    (SELECT INTEREST FROM MAS_LOANINT WHERE FINANCIALYEAR = '2026' AND LOANNAME = '')) / 100 AS RATE
  FROM INS_MASTER M WHERE SITYPE <= 2 AND SEPPIYN = 1 AND SBIIFBYN = 1),
LOANS AS MATERIALIZED (
  SELECT A.EMPID, A.SITYPE, A.SERIALNO, RATE, A.ACTAMT,
    (SELECT total(MDFPRNAMT) FROM INS_EMIDETAIL L WHERE L.EMPID = A.EMPID AND L.SITYPE = A.SITYPE
      AND L.SERIALNO = A.SERIALNO AND L.MONTHYEAR > 24327) AS REST,
    (SELECT count(*) FROM INS_RECEIPTS C WHERE C.EMPID = A.EMPID AND C.SITYPE <= 2 AND C.SERIALNO = A.SERIALNO) AS PAID
  FROM INS_ADVLOAN A JOIN NAMED N ON N.SITYPE = A.SITYPE AND N.SINAME = A.SINAME
    JOIN MAS_EMPLOYEE E ON E.EMPID = A.EMPID WHERE E.TDSYN = 1),
MONTHS AS (
  SELECT N.EMPID, N.SITYPE, N.SERIALNO, N.RATE, N.ACTAMT, D.MDFPRNAMT, coalesce(D.MDFINTAMT, 0) AS CHARGED,
    REST + sum(D.MDFPRNAMT) OVER (PARTITION BY N.EMPID, N.SITYPE, N.SERIALNO ORDER BY D.MONTHYEAR DESC)
    - CASE WHEN PAID THEN coalesce((SELECT sum(RCPTAMT) FROM INS_RECEIPTS C WHERE C.EMPID = N.EMPID AND C.SITYPE <= 2
        AND C.SERIALNO = N.SERIALNO AND strftime('%Y', RCPTDATE) * 12 + strftime('%m', RCPTDATE) <= D.MONTHYEAR), 0)
      ELSE 0 END AS BALANCE
  FROM LOANS N CROSS JOIN INS_EMIDETAIL D WHERE D.EMPID = N.EMPID AND D.SITYPE = N.SITYPE
    AND D.SERIALNO = N.SERIALNO AND D.MONTHYEAR BETWEEN 24316 AND 24327)
SELECT EMPID, sum(ACTAMT), sum(PRINCIPAL), sum(OPENING), sum(BENCHMARK), sum(INTEREST), sum(BENEFIT) FROM (
  SELECT EMPID, ACTAMT, sum(MDFPRNAMT) AS PRINCIPAL, max(BALANCE) AS OPENING,
    sum(round(BALANCE * RATE / 12, 2)) AS BENCHMARK, sum(CHARGED) AS INTEREST,
    sum(round(BALANCE * RATE / 12, 2) - CHARGED) AS BENEFIT
  FROM MONTHS WHERE round(BALANCE * RATE / 12, 2) > CHARGED GROUP BY EMPID, SITYPE, SERIALNO)
GROUP BY EMPID)sql";

void MainStatementByHand(benchmark::State& state) {
  const RawStore store(BenefitCompany(SizeOf(state)));
  int rows = 0;
  for (auto _ : state) rows = store.Read(store.Prepare(kByHand));
  state.counters["employees"] = rows;
}
BENCHMARK(MainStatementByHand)->Apply(Sizes);

void MainStatementAsSaid(benchmark::State& state) {
  BenefitBench bench(SizeOf(state));
  Session& session = *bench.bench.session;
  const YearlyStatements statements =
      WriteYearlyStatements(session, BenefitYearOf(session, kYear), LoanRule::EveryLoan);
  for (auto _ : state) benchmark::DoNotOptimize(session.Cn.Query(statements.main.said));
}
BENCHMARK(MainStatementAsSaid)->Apply(Sizes)->Iterations(1);

struct MonthsBench : BenefitBench {
  explicit MonthsBench(const BenchSize& size) : BenefitBench(size) {
    screen = std::make_unique<frmSepInt>(*bench.session);
    screen->Load();
  }
  std::unique_ptr<frmSepInt> screen;
};

void ListTheHolders(benchmark::State& state) {
  MonthsBench bench(SizeOf(state));
  bench.screen->cmbLoan.SetText("");
  for (auto _ : state) bench.screen->ChooseYearOrLoan();
  state.counters["rows"] = double(bench.screen->fpgSepInt.rows.size());
}
BENCHMARK(ListTheHolders)->Apply(Sizes);

void ClickAHolder(benchmark::State& state) {
  MonthsBench bench(SizeOf(state));
  bench.screen->cmbLoan.SetText("Vehicle Loan");
  std::size_t row = 0;
  for (auto _ : state)
    ClickRow(bench.screen->fpgSepInt, row = (row + 7) % bench.screen->fpgSepInt.rows.size());
}
BENCHMARK(ClickAHolder)->Apply(Sizes);

void Export(benchmark::State& state) {
  const std::filesystem::path company = BenchCompany(1000);
  Bench bench(company);
  bench.Connect(company);
  Screen toy("toy");
  Grid grid(toy, "fpgToy");
  for (int column = 0; column < 10; ++column)
    grid.columns.push_back(
        {fmt::format("Column {}", column), column < 4 ? CellType::Text : CellType::Number});
  for (int row = 0; row < state.range(0); ++row) {
    const std::size_t line = grid.AddRow();
    for (std::size_t column = 0; column < 10; ++column)
      grid.At(line, column).text =
          column < 4 ? fmt::format("Text {} of {}", column, row) : fmt::format("{}.25", row);
  }
  const PeakMemory peak;
  for (auto _ : state) {
    const std::string file = ExportGridToWorkbook(*bench.session, grid, "Bench");
    state.PauseTiming();
    std::filesystem::remove(file);
    state.ResumeTiming();
  }
  state.counters["MB"] = peak.Megabytes();
}
BENCHMARK(Export)->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000);

}  // namespace
}  // namespace ktl

BENCHMARK_MAIN();
