// The deduction preference over a month in which 2,000 employees are short, beside the same statements
// through the bare library, and the recoveries of one employee who has left.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bench_session.h"
#include "raw_store.h"
#include "recovery/modSIDetails.h"
#include "recovery/modSalSIAdj.h"
#include "screen/person.h"

namespace ktl {
namespace {

constexpr int kMonth = 24321;  // Sep/2026
constexpr int kShort = 2000;

BenchSize SizeOf(const benchmark::State& state) { return state.range(0) == 0 ? Usual(10000) : kLarge; }

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond)->Arg(0);
  if (IsLargeMeasured()) bench->Arg(1);
}

// A copy in which the loans of 2,000 employees have taken more than their pay of the month.
std::filesystem::path ShortCompany(const BenchSize& size) {
  const std::filesystem::path company = ScratchCompany(size);
  Bench bench(company);
  bench.Connect(company);
  Connection& cn = bench.session->Cn;
  cn.Execute("UPDATE SLC_SALARYCALC_E SET NETAMOUNT = 1000, INDICATOR = 0 WHERE MONTHYEAR = 24321");
  cn.Execute(
      "UPDATE SLC_SALARYCALC_E SET NETAMOUNT = -5000 WHERE MONTHYEAR = 24321 AND EMPID IN (SELECT DISTINCT TOP "
      "2000 EMPID FROM INS_EMIDETAIL WHERE MONTHYEAR = 24321 AND SITYPE = 2 AND MDFYAMT > 0 AND EMPID > 60 AND "
      "EMPID NOT IN (SELECT EMPID FROM SEC_EMPLOCK) ORDER BY EMPID)");
  return company;
}

struct PreferenceBench {
  explicit PreferenceBench(const BenchSize& size)
      : company(ShortCompany(size)), bench(company), screen(*MakeScreen()) {}

  modSalSIAdj* MakeScreen() {
    bench.Connect(company);
    owned = std::make_unique<modSalSIAdj>(*bench.session, kMonth);
    owned->Load();
    return owned.get();
  }
  void Display() { screen.cmdDisplay.onClick(); }

  std::filesystem::path company;
  Bench bench;
  std::unique_ptr<modSalSIAdj> owned;
  modSalSIAdj& screen;
};

void ListTheShort(benchmark::State& state) {
  PreferenceBench bench(SizeOf(state));
  for (auto _ : state) bench.Display();
  state.counters["rows"] = double(bench.screen.fpgDedPref.rows.size());
  if (bench.screen.fpgDedPref.rows.size() < kShort) state.SkipWithError("rows missing");
}
BENCHMARK(ListTheShort)->Apply(Sizes);

void TickOneRecovery(benchmark::State& state) {
  PreferenceBench bench(SizeOf(state));
  bench.Display();
  const std::size_t line = bench.screen.fpgDedPref.rows.size() - 1;
  bool on = bench.screen.fpgDedPref.IsTicked(line, modSalSIAdj::kTick);
  for (auto _ : state) TickCell(bench.screen.fpgDedPref, line, modSalSIAdj::kTick, on = !on);
}
BENCHMARK(TickOneRecovery)->Apply(Sizes);

void AdjustAll(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    {
      PreferenceBench bench(SizeOf(state));
      bench.Display();
      double ticked = 0;
      for (const GridRow& row : bench.screen.fpgDedPref.rows)
        ticked += row.cells[modSalSIAdj::kTick].text == "1";
      state.counters["ticked"] = ticked;
      state.ResumeTiming();
      bench.screen.cmdAdjust.onClick();
      state.PauseTiming();
      if (!bench.screen.IsUnloaded()) state.SkipWithError("not adjusted");
    }
    state.ResumeTiming();
  }
}
BENCHMARK(AdjustAll)->Apply(Sizes)->Iterations(3);

}  // namespace
}  // namespace ktl

BENCHMARK_MAIN();
