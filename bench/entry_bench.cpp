// The entry of advances and loans on companies of 100, 1,000 and 10,000 employees, and on one of 7,000,000
// instalments where KTL_BENCH_LARGE is set: opening it, choosing an employee, the click on Save of a loan of
// 360 instalments beside the same rows through raw prepared statements.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench_session.h"
#include "raw_store.h"

namespace ktl {
namespace {

void StartToOpenEntry(benchmark::State& state, BenchSize size) {
  const auto company = BenchCompany(size);
  for (auto _ : state) {
    Bench bench(company);
    if (RunProgram(*bench.session, "1502#False#0#0") != 0) state.SkipWithError("not opened");
  }
}

void ChooseEmployee(benchmark::State& state, BenchSize size) {
  LoanClerk clerk(BenchCompany(size));
  std::vector<std::string> borrowers;
  for (Recordset rs(clerk.session().Cn, "SELECT EMPID FROM INS_ADVLOAN WHERE SITYPE = 2 GROUP BY EMPID");
       !rs.Eof(); rs.MoveNext()) {
    borrowers.push_back(rs[0].ToText());
  }
  std::size_t next = 0;
  for (auto _ : state) {
    clerk.entry().employee.cmbEmpName.SetBoundText(borrowers[next++ % borrowers.size()]);
    clerk.entry().txtSerialNo.SetText("1");  // with its schedule and receipts
  }
}

enum class Schedule { Plain, Reducing };

std::filesystem::path CompanyToSaveIn(BenchSize size, Schedule schedule) {
  const auto company = ScratchCompany(size);
  if (schedule == Schedule::Reducing) {
    Connection cn;
    cn.Open(ConnectionStringOf(company));
    cn.Execute("UPDATE INS_MASTER SET REDUCINGBALYN = 1, INTRRATE = 1 WHERE SINAME = 'Consumer Loan'");
  }
  return company;
}

void ClickSaveOf360(benchmark::State& state, BenchSize size, Schedule schedule) {
  LoanClerk clerk(CompanyToSaveIn(size, schedule));
  const auto employees = clerk.Employees();
  std::size_t next = 0;
  for (auto _ : state) {
    state.PauseTiming();
    clerk.Type(employees[next++ % employees.size()], kInstalments);
    state.ResumeTiming();
    if (!clerk.Save()) state.SkipWithError("not saved");
  }
}

// The floor: the same instruction and months by prepared statements in one commit.
void SaveOf360Floor(benchmark::State& state, BenchSize size, Schedule schedule) {
  const auto company = CompanyToSaveIn(size, schedule);
  const auto employees = LoanClerk(company).Employees();
  const RawStore store(company);
  const auto instruction = store.Prepare(
      "INSERT INTO INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME, SIDATE, ACTAMT, INTAMT) VALUES (?1, 1000, "
      "2, "
      "'Consumer Loan', '2026-10-15', 360000.0, 0.0)");
  const auto month = store.Prepare(
      "INSERT INTO INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, COUNTER, EMIAMT, MDFYAMT, ACTPRNAMT, "
      "MDFPRNAMT, INTAMT, INSTID) VALUES (?1, 1000, 2, ?2, ?3, 1000.0, 1000.0, 1000.0, 1000.0, ?4, 1)");
  const auto begin = store.Prepare("BEGIN IMMEDIATE"), commit = store.Prepare("COMMIT");
  constexpr int kFirstMonth = 24323;  // Nov/2026
  std::size_t next = 0;
  for (auto _ : state) {
    const int employee = std::stoi(employees[next++]);
    store.Read(begin);
    store.Run(instruction, employee);
    for (int i = 0; i < kInstalments; ++i) {
      if (schedule == Schedule::Plain)
        store.Run(month, employee, kFirstMonth + i, i + 1);
      else
        store.Run(month, employee, kFirstMonth + i, i + 1, 10.0 * (kInstalments - i));
    }
    store.Read(commit);
  }
}

void RegisterOf(const std::string& name, BenchSize size) {
  const auto add = [&](const std::string& what, auto function, auto... arguments) {
    benchmark::RegisterBenchmark((what + "/" + name).c_str(), function, size, arguments...)
        ->Unit(benchmark::kMillisecond);
  };
  add("StartToOpenEntry", StartToOpenEntry);
  add("ChooseEmployee", ChooseEmployee);
  if (size.employees < 10000) return;
  for (const auto& [kind, schedule] :
       {std::pair("Plain", Schedule::Plain), {"Reducing", Schedule::Reducing}}) {
    add(std::string("ClickSaveOf360/") + kind, ClickSaveOf360, schedule);
    add(std::string("SaveOf360Floor/") + kind, SaveOf360Floor, schedule);
  }
}

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  for (const int employees : {100, 1000, 10000})
    ktl::RegisterOf(std::to_string(employees), ktl::Usual(employees));
  if (ktl::IsLargeMeasured()) ktl::RegisterOf("7000000", ktl::kLarge);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
