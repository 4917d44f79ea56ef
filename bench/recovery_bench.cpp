// The editor of a schedule and the interest editor on a loan of 360 months: a change spread over the schedule
// beside the same work through raw prepared statements, opening the editor on companies of 100, 1,000 and
// 10,000 employees, and interest computed and saved; the month view and the month locks.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bench_session.h"
#include "instructions/month_list.h"
#include "raw_store.h"
#include "recovery/modEMIDet.h"
#include "recovery/modEMIEmp.h"
#include "recovery/modInterestMaster.h"
#include "recovery/modLockMonth.h"

namespace ktl {
namespace {

// The entry of loans, opened on a loan of 360 months in a scratch company.
struct LoanBench {
  explicit LoanBench(int employees) : company(ScratchCompany(Usual(employees))), bench(company) {
    bench.Connect(company);
    const AdvLoanEntry loan = LoanOf360();
    WriteAdvLoan(*bench.session, loan);
    bench.desk.answer = Answer::Yes;
    entry = std::make_unique<modAdvLoan>(*bench.session, InstructionType::Loan);
    entry->Load();
    entry->employee.cmbEmpName.SetBoundText(std::to_string(loan.key.employee));
    entry->txtSerialNo.SetText(std::to_string(loan.key.serial));
  }

  std::filesystem::path company;
  Bench bench;
  std::unique_ptr<modAdvLoan> entry;
};

// 359 rupees taken from the first month are one rupee for each of the 359 behind it, and back again.
constexpr double kFull = 1000;
constexpr double kLowered = kFull - (kInstalments - 1);

constexpr int kFirstMonth = 24323;  // Nov/2026

void SpreadOver360(benchmark::State& state) {
  LoanBench loan(1000);
  modEMIDet editor(*loan.bench.session, *loan.entry);
  editor.Load();
  bool lowered = false;
  for (auto _ : state) {
    lowered = !lowered;
    editor.fpgEMIDetail.activeRow = 0;
    editor.ShowEmiRow(0);
    editor.txtAmount.SetText(std::to_string(lowered ? kLowered : kFull));
    editor.cmdSave_Click();
    const double last = std::stod(editor.fpgEMIDetail.Text(kInstalments - 1, modEMIDet::kModifiedAmount));
    if (last != (lowered ? kFull + 1 : kFull)) state.SkipWithError("not spread");
  }
}
BENCHMARK(SpreadOver360)->Unit(benchmark::kMillisecond);

// The floor: the same 360 months written one by one in one commit, and the schedule read as often: by the
// entry screen before and after the spreading, by the spreading, and by the editor's list.
void SpreadOver360Floor(benchmark::State& state) {
  const LoanBench loan(1000);
  const RawStore store(loan.company);
  const auto write = store.Prepare(
      "UPDATE INS_EMIDETAIL SET MDFYAMT = ?1 WHERE EMPID = 100 AND SITYPE = 2 AND SERIALNO = 1000 AND "
      "MONTHYEAR = ?2");
  const auto schedule = store.Prepare(
      "SELECT E.COUNTER, E.MONTHYEAR, E.EMIAMT, E.ACTPRNAMT, E.ACTINTAMT, E.MDFPRNAMT, E.MDFINTAMT, "
      "E.MDFYAMT, "
      "I.INSTNAME, E.REMARKS FROM INS_EMIDETAIL E JOIN MAS_INSTITUTION I ON E.INSTID = I.INSTID WHERE "
      "E.EMPID = "
      "100 AND E.SERIALNO = 1000 AND E.SITYPE = 2 AND I.TYPEID = 2 ORDER BY E.MONTHYEAR");
  const auto begin = store.Prepare("BEGIN IMMEDIATE"), commit = store.Prepare("COMMIT");
  constexpr int kReads = 4;
  double amount = kFull;
  for (auto _ : state) {
    amount = amount == kFull ? kFull + 1 : kFull;
    store.Read(begin);
    for (int month = 0; month < kInstalments; ++month) store.Run(write, amount, kFirstMonth + month);
    store.Read(commit);
    for (int read = 0; read < kReads; ++read) {
      if (store.Read(schedule) != kInstalments) state.SkipWithError("months missing");
    }
  }
}
BENCHMARK(SpreadOver360Floor)->Unit(benchmark::kMillisecond);

void OpenEditorOf360(benchmark::State& state) {
  LoanBench loan(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    modEMIDet editor(*loan.bench.session, *loan.entry);
    loan.bench.desk.ShowModal(editor);
    if (editor.fpgEMIDetail.rows.size() != kInstalments) state.SkipWithError("months missing");
  }
}
BENCHMARK(OpenEditorOf360)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void InterestOver360(benchmark::State& state) {
  LoanBench loan(1000);
  modInterestMaster editor(*loan.bench.session, *loan.entry);
  editor.Load();
  editor.cmdUpdate_Click();
  for (auto _ : state) {
    editor.txtInterestRate.SetText("12");
    editor.cmdUpdateRedBal_Click();
    editor.cmdSave_Click();
    // 360,000 at 12 % a year: 3,600 in the first month.
    if (editor.fpgSIMaster.Text(0, modInterestMaster::kModifiedInterest) != "3600.00")
      state.SkipWithError("not computed");
  }
}
BENCHMARK(InterestOver360)->Unit(benchmark::kMillisecond);

// The floor: for each month the old amounts read, the new ones written, and both flags of the employee
// raised, in one commit; the months read before and after.
void InterestOver360Floor(benchmark::State& state) {
  const LoanBench loan(1000);
  const RawStore store(loan.company);
  constexpr const char* kMonths =
      "SELECT E.MONTHYEAR, E.ACTPRNAMT, E.ACTINTAMT, E.EMIAMT, E.MDFPRNAMT, E.MDFINTAMT, E.MDFYAMT FROM "
      "INS_EMIDETAIL E JOIN INS_ADVLOAN A ON E.EMPID = A.EMPID AND E.SITYPE = A.SITYPE AND E.SERIALNO = "
      "A.SERIALNO WHERE E.EMPID = 100 AND E.SITYPE = 2 AND E.SERIALNO = 1000 AND A.SINAME = 'Consumer Loan'";
  const auto list = store.Prepare((kMonths + std::string(" ORDER BY E.MONTHYEAR")).c_str());
  const auto old = store.Prepare((kMonths + std::string(" AND E.MONTHYEAR = ?1")).c_str());
  const auto write = store.Prepare(
      "UPDATE INS_EMIDETAIL SET ACTPRNAMT = 1000.0, ACTINTAMT = ?2, EMIAMT = 1000.0 + ?2, MDFPRNAMT = "
      "1000.0, "
      "MDFINTAMT = ?2, MDFYAMT = 1000.0 + ?2 FROM INS_ADVLOAN A WHERE INS_EMIDETAIL.EMPID = A.EMPID AND "
      "INS_EMIDETAIL.SITYPE = A.SITYPE AND INS_EMIDETAIL.SERIALNO = A.SERIALNO AND A.EMPID = 100 AND "
      "A.SITYPE = 2 "
      "AND A.SERIALNO = 1000 AND A.SINAME = 'Consumer Loan' AND MONTHYEAR = ?1");
  const auto salary =
      store.Prepare("UPDATE SLC_SALARYCALC_E SET EDITMODEYN = 1 WHERE EMPID = 100 AND MONTHYEAR = ?1");
  const auto attendance = store.Prepare(
      "UPDATE HVN_ATTENDANCE SET EDITMODEYN = 1 WHERE EMPID = 100 AND MONTHYEAR = ?1 AND "
      "ifnull(UNITLOCKYN, 0) <> 1");
  const auto begin = store.Prepare("BEGIN IMMEDIATE"), commit = store.Prepare("COMMIT");
  double interest = 10;
  for (auto _ : state) {
    interest = interest == 10 ? 11 : 10;
    store.Read(list);
    store.Read(begin);
    for (int month = kFirstMonth; month < kFirstMonth + kInstalments; ++month) {
      store.Read(old, month);
      store.Run(write, month, interest);
      store.Read(salary, month);
      store.Read(attendance, month);
    }
    store.Read(commit);
    store.Read(list);
  }
}
BENCHMARK(InterestOver360Floor)->Unit(benchmark::kMillisecond);

// The month view of one employee, opened by itself on his newest month.
void OpenMonthView(benchmark::State& state, const BenchSize& size) {
  Bench bench(BenchCompany(size));
  bench.Connect(BenchCompany(size));
  const long employee = bench.session->data.Long("SELECT MAX(EMPID) FROM INS_EMIDETAIL");
  for (auto _ : state) {
    modEMIEmp view(*bench.session, {employee});
    bench.desk.ShowModal(view);
    if (view.fpgEMIDetail.rows.empty()) state.SkipWithError("nothing shown");
  }
}
BENCHMARK_CAPTURE(OpenMonthView, 600000, Usual(10000))->Unit(benchmark::kMillisecond);

// What opening would cost with the months as the statement lists them.
void MonthListAsSaid(benchmark::State& state, const BenchSize& size) {
  Bench bench(BenchCompany(size));
  bench.Connect(BenchCompany(size));
  for (auto _ : state) benchmark::DoNotOptimize(bench.session->Cn.Query(kMonthList.said).rows.size());
}
BENCHMARK_CAPTURE(MonthListAsSaid, 600000, Usual(10000))->Unit(benchmark::kMillisecond);

// 600 months saved, one of them changed, with the audit trail on: every month is asked for its old locks.
void SaveLocksOf600Months(benchmark::State& state) {
  constexpr int kMonths = 600;
  const auto company = ScratchCompany();
  Bench bench(company);
  bench.Connect(company);
  Session& session = *bench.session;
  session.Cn.Execute("DELETE FROM MAS_MONTHYEAR");
  for (int month = 0; month < kMonths; ++month)
    session.Cn.Execute(session.Sql("INSERT INTO MAS_MONTHYEAR (MONTHYEAR) VALUES ({})", kFirstMonth - month));
  session.auditOn = true;
  modLockMonth locks(session);
  locks.Load();
  for (auto _ : state) {
    GridCell& lock = locks.fpgLockMonth.At(0, modLockMonth::kMonthLock);
    lock.text = lock.text == "1" ? "0" : "1";
    locks.fpgLockMonth_CellChange(0, modLockMonth::kMonthLock);
    const int before = bench.desk.saved;
    locks.cmdSave_Click();
    if (bench.desk.saved == before || locks.fpgLockMonth.rows.size() != kMonths)
      state.SkipWithError("not saved");
  }
}
BENCHMARK(SaveLocksOf600Months)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  if (ktl::IsLargeMeasured()) {
    for (const auto& [name, run] : {std::pair{"OpenMonthView/7000000", &ktl::OpenMonthView},
                                    std::pair{"MonthListAsSaid/7000000", &ktl::MonthListAsSaid}})
      benchmark::RegisterBenchmark(name, run, ktl::kLarge)->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
