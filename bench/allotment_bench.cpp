// One advance for 10,000 employees, and the loans of many deleted together: each beside the same rows through
// raw prepared statements with the same commits, in the same order.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "bench_session.h"
#include "instructions/frmAdvLoanBulkDelete.h"
#include "instructions/modMultiAllot.h"
#include "raw_store.h"

namespace ktl {
namespace {

constexpr int kMonths = 24;
constexpr int kFirstMonth = 24323;  // Nov/2026
constexpr std::size_t kDeleted = 1000;

enum class Amount { Typed, ByFormula };

BenchSize SizeOf(const benchmark::State& state) {
  if (state.range(0) <= 1) return state.range(0) == 0 ? kLarge : kLong;
  return Usual(static_cast<int>(state.range(0)));
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond)->Arg(10000);
  if (IsLargeMeasured()) bench->Arg(0);
}

void SizesOfLists(benchmark::internal::Benchmark* bench) {
  Sizes(bench);
  if (IsLargeMeasured()) bench->Arg(1);
}

// Nobody is locked or gone, so that all get something; by formula the same as typed.
std::filesystem::path CompanyOfMany(const BenchSize& size) {
  const auto company = ScratchCompany(size);
  Connection cn;
  cn.Open(ConnectionStringOf(company));
  cn.Execute("UPDATE MAS_EMPLOYEE SET DOL = NULL, DOJ = '01/Apr/2010', lockyn = 0");
  cn.Execute("DELETE FROM SEC_EMPLOCK");
  cn.Execute(
      "UPDATE MAS_FORMULA SET FORMULA = "
      "'KLIF(EmpDet{Department} = \"Finance\", 1.1, 1) * Component{BASIC} / Days{Salary Calendar Days} * "
      "Days{Pay Days} * 0 + 24000' WHERE FORMULAID = 1");
  return company;
}

// 24,000 for everybody, 1,000 a month, ready to be saved.
struct AllotBench {
  AllotBench(const std::filesystem::path& company, Amount amount, std::size_t employees) : bench(company) {
    bench.desk.answer = Answer::Yes;
    bench.Connect(company);
    screen = std::make_unique<modMultiAllot>(*bench.session, InstructionType::Advance);
    screen->Load();
    screen->chkSelEmployee.SetValue(true);
    for (std::size_t each = employees; each < screen->lstEmployee.rows.size(); ++each)
      screen->lstEmployee.rows[each].ticked = false;
    screen->cmbSIName.SetText("Salary Advance");
    screen->txtAdvDate.SetText("15/10/2026");
    screen->txtAdvAmount.SetText("24000");
    screen->recovery.optInstlLumpSum.SetValue(true);
    screen->recovery.txtInstlAmt.SetText("1000");
    screen->recovery.txtRecvrFrom.SetText("Nov/2026");
    if (amount == Amount::Typed) return;
    screen->formula.cmbFormula.ChooseRow(0);
    screen->txtMonths.SetText("1");
    screen->formula.cmdAccept.onClick();
  }
  void Save() { screen->cmdSave.onClick(); }

  Bench bench;
  std::unique_ptr<modMultiAllot> screen;
};

// Of the whole process, the system's share included.
double ProcessorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

// The most memory that the process held since it was forgotten, in MB.
void ForgetPeakMemory() { std::ofstream("/proc/self/clear_refs") << "5"; }
double PeakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (double kilobytes = 0; word == "VmHWM:" && status >> kilobytes) return kilobytes / 1024;
  return 0;
}

void Allot(benchmark::State& state, Amount amount, std::size_t employees) {
  for (auto _ : state) {
    state.PauseTiming();
    {
      AllotBench bench(CompanyOfMany(SizeOf(state)), amount, employees);
      state.ResumeTiming();
      bench.Save();
      state.PauseTiming();
      state.counters["notes"] = double(bench.screen->fpgNotes.rows.size());
      if (bench.bench.desk.saved != 1) state.SkipWithError("not saved");
    }
    state.ResumeTiming();
  }
}
BENCHMARK_CAPTURE(Allot, ToAll, Amount::Typed, 10000)->Apply(Sizes)->Arg(1000)->Iterations(2);
BENCHMARK_CAPTURE(Allot, To5000, Amount::Typed, 5000)->Apply(Sizes)->Iterations(2);
BENCHMARK_CAPTURE(Allot, To1000, Amount::Typed, 1000)->Apply(Sizes)->Iterations(2);
BENCHMARK_CAPTURE(Allot, ToAllByFormula, Amount::ByFormula, 10000)->Apply(Sizes)->Iterations(2);

// What a formula costs over a typed amount: both in turns, the least processor time of each.
void FormulaSurcharge(benchmark::State& state) {
  constexpr int kRounds = 4;
  for (auto _ : state) {
    double least[] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    double peak = 0;
    for (int round = 0; round < kRounds; ++round) {
      for (const Amount amount : {Amount::Typed, Amount::ByFormula}) {
        AllotBench bench(CompanyOfMany(SizeOf(state)), amount, 10000);
        ForgetPeakMemory();
        const double before = ProcessorSeconds();
        bench.Save();
        const double taken = ProcessorSeconds() - before;
        least[int(amount)] = std::min(least[int(amount)], taken);
        if (amount == Amount::ByFormula) peak = std::max(peak, PeakMemory());
        if (bench.bench.desk.saved != 1) state.SkipWithError("not saved");
      }
    }
    state.SetIterationTime(least[1] - least[0]);
    state.counters["typed_s"] = least[0];
    state.counters["formula_s"] = least[1];
    state.counters["peak_MB"] = peak;
  }
}
BENCHMARK(FormulaSurcharge)->Apply(Sizes)->Arg(1000)->Iterations(1)->UseManualTime();

constexpr const char* kAudit =
    "INSERT INTO SEC_AUDITTRAIL (LOGDATE, USERNAME, MENUNO, EMPID, ACTIONTEXT, DETAILTEXT, EXTRATEXT, WINUSER) "
    "VALUES ('2026-10-15 00:00:00', 'ADMIN', 19, ?1, 'Standing Instructions - Advance Added', 'Advance Added::SI "
    "Type = Advance:SI Name = Salary Advance:Date = 15/Oct/2026:Amount = 24000:Interest Amount = 0:Recover From "
    "Month = Nov/2026:Installments Amount = 1000.00:Remarks = ', '', '')";

// As the screen lists them.
std::vector<int> FirstByName(const std::filesystem::path& company, std::size_t count) {
  std::vector<int> employees;
  Connection cn;
  cn.Open(ConnectionStringOf(company));
  Recordset rs(cn, "SELECT EMPID FROM MAS_EMPLOYEE ORDER BY EMPNAME");
  for (; !rs.Eof() && employees.size() < count; rs.MoveNext())
    employees.push_back(static_cast<int>(rs[0].ToLong()));
  return employees;
}

void AllotFloor(benchmark::State& state, std::size_t count) {
  for (auto _ : state) {
    state.PauseTiming();
    const auto company = CompanyOfMany(SizeOf(state));
    const auto employees = FirstByName(company, count);
    const RawStore store(company);
    const auto begin = store.Prepare("BEGIN IMMEDIATE"), commit = store.Prepare("COMMIT");
    const auto service = store.Prepare("SELECT DOJ, DOL FROM MAS_EMPLOYEE WHERE EMPID = ?1");
    const auto serial =
        store.Prepare("SELECT MAX(SERIALNO) FROM INS_ADVLOAN WHERE EMPID = ?1 AND SITYPE = 1");
    const auto instruction = store.Prepare(
        "INSERT INTO INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME, LOANACNO, SIDATE, ACTAMT, INTAMT, REMARKS) VALUES "
        "(?1, 1000, 1, 'Salary Advance', '', '2026-10-15', 24000.0, 0.0, '')");
    const auto month = store.Prepare(
        "INSERT INTO INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, COUNTER, EMIAMT, MDFYAMT, INSTID) VALUES "
        "(?1, 1000, 1, ?2, ?3, 1000.0, 1000.0, 0)");
    const auto audit = store.Prepare(kAudit);
    state.ResumeTiming();
    for (const int employee : employees) {
      store.Read(service, employee);
      store.Read(begin);
      store.Read(serial, employee);
      store.Run(instruction, employee);
      for (int each = 0; each < kMonths; ++each) store.Run(month, employee, kFirstMonth + each, each + 1);
      store.Run(audit, employee);
      store.Read(commit);
    }
  }
}
BENCHMARK_CAPTURE(AllotFloor, ToAll, 10000)->Apply(Sizes)->Arg(1000)->Iterations(2);
BENCHMARK_CAPTURE(AllotFloor, To5000, 5000)->Apply(Sizes)->Iterations(2);
BENCHMARK_CAPTURE(AllotFloor, To1000, 1000)->Apply(Sizes)->Iterations(2);

struct BulkBench {
  explicit BulkBench(const std::filesystem::path& company) : bench(company) {
    bench.desk.answer = Answer::Yes;
    bench.Connect(company);
    screen = std::make_unique<frmAdvLoanBulkDelete>(*bench.session, InstructionType::Loan);
    screen->Load();
  }
  void List() { screen->cmdLoad.onClick(); }
  void TickFirst() {
    for (std::size_t row = 0, ticked = 0; ticked < kDeleted; ++row) {
      if (screen->fpgBulkDelete.IsLocked(row, frmAdvLoanBulkDelete::kTick)) continue;
      screen->fpgBulkDelete.At(row, frmAdvLoanBulkDelete::kTick).text = "1";
      ++ticked;
    }
  }

  Bench bench;
  std::unique_ptr<frmAdvLoanBulkDelete> screen;
};

void ListAllLoans(benchmark::State& state) {
  BulkBench bench(BenchCompany(SizeOf(state)));
  for (auto _ : state) bench.List();
  state.counters["loans"] = double(bench.screen->fpgBulkDelete.rows.size());
}
BENCHMARK(ListAllLoans)->Apply(SizesOfLists);

std::filesystem::path UnlockedCompany(const BenchSize& size) {
  const auto company = ScratchCompany(size);
  Connection cn;
  cn.Open(ConnectionStringOf(company));
  cn.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
  return company;
}

void DeleteLoans(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    {
      BulkBench bench(UnlockedCompany(SizeOf(state)));
      bench.List();
      const std::size_t before = bench.screen->fpgBulkDelete.rows.size();
      bench.TickFirst();
      state.ResumeTiming();
      bench.screen->cmdDelete.onClick();
      state.PauseTiming();
      if (bench.screen->fpgBulkDelete.rows.size() + kDeleted != before) state.SkipWithError("not deleted");
    }
    state.ResumeTiming();
  }
}
BENCHMARK(DeleteLoans)->Apply(Sizes)->Iterations(2);

// The same, with the list read again behind it as the screen does.
void DeleteLoansFloor(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    const auto company = UnlockedCompany(SizeOf(state));
    std::vector<InstructionKey> keys;
    BulkBench bench(company);
    bench.List();
    for (const GridRow& row : bench.screen->fpgBulkDelete.rows) {
      if (keys.size() == kDeleted) break;
      keys.push_back({std::stol(row.cells[frmAdvLoanBulkDelete::kEmpId].text), InstructionType::Loan,
                      std::stol(row.cells[frmAdvLoanBulkDelete::kSerial].text)});
    }
    const RawStore store(company);
    const auto of = [&store](const std::string& text) {
      return store.Prepare((text + " WHERE EMPID = ?1 AND SITYPE = 2 AND SERIALNO = ?2").c_str());
    };
    const std::string months =
        "MONTHYEAR IN (SELECT MONTHYEAR FROM INS_EMIDETAIL WHERE EMPID = ?1 AND SITYPE = 2 AND SERIALNO = ?2)";
    const auto begin = store.Prepare("BEGIN IMMEDIATE"), commit = store.Prepare("COMMIT");
    const auto seen = of("SELECT MAX(COUNTER), MAX(MONTHYEAR), SUM(MDFYAMT) FROM INS_EMIDETAIL");
    const auto salary =
        store.Prepare(("UPDATE SLC_SALARYCALC_E SET EDITMODEYN = 1 WHERE EMPID = ?1 AND " + months).c_str());
    const auto attendance = store.Prepare(("UPDATE HVN_ATTENDANCE SET EDITMODEYN = 1 WHERE EMPID = ?1 AND "
                                           "ifnull(UNITLOCKYN, 0) <> 1 AND " +
                                           months)
                                              .c_str());
    const RawStore::Statement deletes[] = {of("DELETE FROM INS_HLOAN_VAL"), of("DELETE FROM INS_HLOAN"),
                                           of("DELETE FROM INS_RECEIPTS"), of("DELETE FROM INS_EMIDETAIL"),
                                           of("DELETE FROM INS_ADVLOAN")};
    const auto audit = store.Prepare(kAudit);
    state.ResumeTiming();
    for (const InstructionKey& key : keys) {
      const int employee = static_cast<int>(key.employee), serial = static_cast<int>(key.serial);
      store.Read(begin);
      store.Read(seen, employee, serial);
      store.Read(salary, employee, serial);
      store.Read(attendance, employee, serial);
      for (const auto& each : deletes) store.Read(each, employee, serial);
      store.Run(audit, employee);
      store.Read(commit);
    }
    bench.List();
  }
}
BENCHMARK(DeleteLoansFloor)->Apply(Sizes)->Iterations(2);

}  // namespace
}  // namespace ktl

BENCHMARK_MAIN();
