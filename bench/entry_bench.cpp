// The entry of advances and loans on companies of 100, 1,000 and 10,000 employees: opening it, choosing an
// employee, saving a loan of 360 instalments beside the same rows through raw prepared statements.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "bench_session.h"
#include "database/recordset.h"
#include "instructions/modAdvLoan.h"

namespace ktl {
namespace {

void StartToOpenEntry(benchmark::State& state) {
  const int employees = static_cast<int>(state.range(0));
  BenchCompany(employees);
  for (auto _ : state) {
    Bench bench(employees);
    if (RunProgram(*bench.session, "1502#False#0#0") != 0) state.SkipWithError("not opened");
  }
}
BENCHMARK(StartToOpenEntry)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void ChooseEmployee(benchmark::State& state) {
  const int employees = static_cast<int>(state.range(0));
  const auto company = BenchCompany(employees);
  Bench bench(company);
  bench.Connect(company);
  modAdvLoan entry(*bench.session, InstructionType::Loan);
  entry.Load();
  std::vector<std::string> borrowers;
  for (Recordset rs(bench.session->Cn, "SELECT EMPID FROM INS_ADVLOAN WHERE SITYPE = 2 GROUP BY EMPID");
       !rs.Eof(); rs.MoveNext()) {
    borrowers.push_back(rs[0].ToText());
  }
  std::size_t next = 0;
  for (auto _ : state) {
    entry.employee.cmbEmpName.SetBoundText(borrowers[next++ % borrowers.size()]);
    entry.txtSerialNo.SetText("1");  // with its schedule and receipts
  }
}
BENCHMARK(ChooseEmployee)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void SaveLoanOf360(benchmark::State& state) {
  const auto company = ScratchCompany();
  Bench bench(company);
  bench.Connect(company);
  AdvLoanEntry entry = LoanOf360();
  for (auto _ : state) {
    ++entry.key.serial;
    WriteAdvLoan(*bench.session, entry);
  }
}
BENCHMARK(SaveLoanOf360)->Unit(benchmark::kMillisecond);

// The floor: the same instruction and months by prepared statements, each row its own commit.
void SaveLoanOf360Floor(benchmark::State& state) {
  const auto company = ScratchCompany();
  sqlite3* db = nullptr;
  sqlite3_open(company.c_str(), &db);
  sqlite3_exec(db, "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL", nullptr, nullptr, nullptr);
  sqlite3_stmt* month = nullptr;
  sqlite3_prepare_v2(
      db,
      "INSERT INTO INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, COUNTER, EMIAMT, MDFYAMT, "
      "ACTPRNAMT, MDFPRNAMT, INSTID) VALUES (100, ?1, 2, ?2, ?3, 1000.0, 1000.0, 1000.0, 1000.0, 1)",
      -1, &month, nullptr);
  sqlite3_stmt* instruction = nullptr;
  sqlite3_prepare_v2(
      db,
      "INSERT INTO INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME, SIDATE, ACTAMT, INTAMT) VALUES (100, "
      "?1, 2, 'Consumer Loan', '2026-10-15', 360000.0, 0.0)",
      -1, &instruction, nullptr);
  int serial = 1000;
  for (auto _ : state) {
    ++serial;
    sqlite3_bind_int(instruction, 1, serial);
    if (sqlite3_step(instruction) != SQLITE_DONE) state.SkipWithError(sqlite3_errmsg(db));
    sqlite3_reset(instruction);
    for (int i = 1; i <= kInstalments; ++i) {
      sqlite3_bind_int(month, 1, serial);
      sqlite3_bind_int(month, 2, 24322 + i);
      sqlite3_bind_int(month, 3, i);
      if (sqlite3_step(month) != SQLITE_DONE) state.SkipWithError(sqlite3_errmsg(db));
      sqlite3_reset(month);
    }
  }
  sqlite3_finalize(month);
  sqlite3_finalize(instruction);
  sqlite3_close(db);
}
BENCHMARK(SaveLoanOf360Floor)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ktl

BENCHMARK_MAIN();
