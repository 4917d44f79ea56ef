// The editor of a schedule and the interest editor on a loan of 360 months: a change spread over the schedule
// beside the same work through raw prepared statements, opening the editor on companies of 100, 1,000 and
// 10,000 employees, and interest computed and saved.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <memory>
#include <string>

#include "bench_session.h"
#include "instructions/modAdvLoan.h"
#include "recovery/modEMIDet.h"
#include "recovery/modInterestMaster.h"

namespace ktl {
namespace {

// The entry of loans, opened on a loan of 360 months in a scratch company.
struct LoanBench {
  explicit LoanBench(int employees) : company(ScratchCompany(employees)), bench(company) {
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

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Prepared = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

Prepared Prepare(sqlite3* db, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(db, sql, -1, &statement, nullptr);
  return Prepared(statement);
}

// The rows of the statement, every column looked at.
int ReadAll(sqlite3_stmt* statement) {
  int rows = 0;
  for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
    for (int column = 0; column < sqlite3_column_count(statement); ++column)
      benchmark::DoNotOptimize(sqlite3_column_text(statement, column));
  }
  sqlite3_reset(statement);
  return rows;
}

// The floor: the same 360 months written one by one, each its own commit, and the schedule read as often: by
// the entry screen before and after the spreading, by the spreading, and by the editor's list.
void SpreadOver360Floor(benchmark::State& state) {
  const LoanBench loan(1000);
  sqlite3* db = nullptr;
  sqlite3_open(loan.company.c_str(), &db);
  sqlite3_exec(db, "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL", nullptr, nullptr, nullptr);
  {
    const Prepared write = Prepare(db,
                                   "UPDATE INS_EMIDETAIL SET MDFYAMT = ?1 WHERE EMPID = 100 AND SITYPE = 2 "
                                   "AND SERIALNO = 1000 AND MONTHYEAR = ?2");
    const Prepared schedule = Prepare(
        db,
        "SELECT E.COUNTER, E.MONTHYEAR, E.EMIAMT, E.ACTPRNAMT, E.ACTINTAMT, E.MDFPRNAMT, E.MDFINTAMT, "
        "E.MDFYAMT, I.INSTNAME, E.REMARKS FROM INS_EMIDETAIL E JOIN MAS_INSTITUTION I ON E.INSTID = I.INSTID "
        "WHERE E.EMPID = 100 AND E.SERIALNO = 1000 AND E.SITYPE = 2 AND I.TYPEID = 2 ORDER BY E.MONTHYEAR");
    constexpr int kReads = 4;
    constexpr int kFirstMonth = 24323;  // Nov/2026
    double amount = kFull;
    for (auto _ : state) {
      amount = amount == kFull ? kFull + 1 : kFull;
      for (int month = 0; month < kInstalments; ++month) {
        sqlite3_bind_double(write.get(), 1, amount);
        sqlite3_bind_int(write.get(), 2, kFirstMonth + month);
        if (sqlite3_step(write.get()) != SQLITE_DONE) state.SkipWithError(sqlite3_errmsg(db));
        sqlite3_reset(write.get());
        if (sqlite3_changes(db) != 1) state.SkipWithError("no month written");
      }
      for (int read = 0; read < kReads; ++read) {
        if (ReadAll(schedule.get()) != kInstalments) state.SkipWithError("months missing");
      }
    }
  }
  sqlite3_close(db);
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

}  // namespace
}  // namespace ktl

BENCHMARK_MAIN();
