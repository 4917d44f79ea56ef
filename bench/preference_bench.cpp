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
  // A recovery whose last month it is gets a new one instead, which costs about the same.
  bool HasNextMonth(const GridRow& row) {
    return bench.session->Cn.HasRows(
        "SELECT 1 FROM INS_EMIDETAIL WHERE SITYPE = 2 AND MONTHYEAR = 24322 AND EMPID = " +
        row.cells[modSalSIAdj::kEmpId].text + " AND SERIALNO = " + row.cells[modSalSIAdj::kSerial].text);
  }

  bool IsReducing(const GridRow& row) {
    return bench.session->Cn.HasRows(
        "SELECT 1 FROM INS_MASTER WHERE SITYPE = 2 AND REDUCINGBALYN = 1 AND SINAME = '" +
        row.cells[modSalSIAdj::kInstruction].text + "'");
  }

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

// What adjusting says for each ticked row, prepared: the instalment and both locks of the employee read
// again, the kind of the loan, the old and the new amount for the audit; then the month, both flags, the
// later months and the next one of them, and the audit line. One commit a row on both sides.
class AdjustFloor {
 public:
  explicit AdjustFloor(const std::filesystem::path& company) : store_(company) {}

  void Run(int employee, int serial, double moved, bool apart) const {
    store_.Read(begin_);
    store_.Read(month_, employee, serial);
    store_.Read(locked_, employee);
    store_.Read(monthLocked_, employee);
    store_.Read(reducing_, employee, serial);
    if (apart) store_.Read(makeApart_, employee, serial);
    store_.Read(newAmount_, employee, serial, moved);
    store_.Read(oldAmount_, employee, serial);
    store_.Run(take_, employee, serial, moved);
    if (apart) {
      store_.Read(interest_, employee, serial);
      store_.Run(components_, employee, serial, moved);
    }
    store_.Read(salary_, employee);
    store_.Read(hasAttendance_);
    store_.Read(attendance_, employee);
    store_.Read(later_, employee, serial);
    store_.Run(give_, employee, serial, moved);
    if (apart) {
      store_.Read(nextInterest_, employee, serial);
      store_.Run(nextComponents_, employee, serial, moved);
    }
    store_.Run(audit_, employee);
    store_.Read(commit_);
  }

 private:
  RawStore::Statement Of(const std::string& text) const { return store_.Prepare(text.c_str()); }

  RawStore store_;
  const std::string key_ = "EMPID = ?1 AND SITYPE = 2 AND SERIALNO = ?2 AND MONTHYEAR ";
  const std::string where_ = " WHERE " + key_ + "= 24321";
  RawStore::Statement begin_ = Of("BEGIN IMMEDIATE"), commit_ = Of("COMMIT");
  RawStore::Statement month_ = Of("SELECT MDFYAMT FROM INS_EMIDETAIL" + where_);
  RawStore::Statement locked_ = Of("SELECT ifnull(lockyn, 0) FROM MAS_EMPLOYEE WHERE EMPID = ?1");
  RawStore::Statement monthLocked_ = Of(
      "SELECT EXISTS (SELECT 1 FROM MAS_OPTSETFEATURE WHERE EMPLOCKYN = 1) AND EXISTS (SELECT 1 FROM SEC_EMPLOCK "
      "WHERE EMPID = ?1 AND LOCKYN = 1 AND MONTHYEAR BETWEEN 24321 AND 99999)");
  RawStore::Statement reducing_ = Of(
      "SELECT REDUCINGBALYN FROM INS_MASTER WHERE SITYPE = 2 AND SINAME = (SELECT SINAME FROM INS_ADVLOAN WHERE "
      "EMPID = ?1 AND SERIALNO = ?2 AND SITYPE = 2)");
  RawStore::Statement newAmount_ = Of("SELECT MDFYAMT - ?3 FROM INS_EMIDETAIL" + where_);
  RawStore::Statement oldAmount_ = Of("SELECT MDFYAMT FROM INS_EMIDETAIL" + where_);
  RawStore::Statement take_ = Of("UPDATE INS_EMIDETAIL SET MDFYAMT = MDFYAMT - ?3" + where_);
  RawStore::Statement salary_ =
      Of("UPDATE SLC_SALARYCALC_E SET EDITMODEYN = 1 WHERE EMPID = ?1 AND MONTHYEAR = 24321");
  RawStore::Statement hasAttendance_ = Of("SELECT * FROM HVN_ATTENDANCE LIMIT 1");
  RawStore::Statement attendance_ = Of(
      "UPDATE HVN_ATTENDANCE SET EDITMODEYN = 1 WHERE EMPID = ?1 AND MONTHYEAR = 24321 AND ifnull(UNITLOCKYN, 0) "
      "<> 1");
  RawStore::Statement later_ = Of(
      "SELECT * FROM INS_EMIDETAIL E WHERE " + key_ +
      "> 24321 AND NOT (EXISTS (SELECT 1 FROM SLC_SALARYCALC_E S WHERE S.EMPID = E.EMPID AND S.MONTHYEAR = "
      "E.MONTHYEAR) AND EXISTS (SELECT 1 FROM SLC_SALARYCALC_D)) ORDER BY MONTHYEAR");
  RawStore::Statement give_ = Of("UPDATE INS_EMIDETAIL SET MDFYAMT = MDFYAMT + ?3 WHERE " + key_ + "= 24322");
  RawStore::Statement makeApart_ = Of(
      "UPDATE INS_EMIDETAIL SET ACTINTAMT = ifnull(INTAMT, 0), MDFINTAMT = ifnull(INTAMT, 0), ACTPRNAMT = "
      "ifnull(EMIAMT, 0) - ifnull(INTAMT, 0), MDFPRNAMT = ifnull(MDFYAMT, 0) - ifnull(INTAMT, 0) WHERE EMPID = ?1 "
      "AND SITYPE = 2 AND SERIALNO = ?2 AND ACTPRNAMT IS NULL AND ACTINTAMT IS NULL AND MDFPRNAMT IS NULL AND "
      "MDFINTAMT IS NULL");
  RawStore::Statement interest_ = Of("SELECT MDFINTAMT FROM INS_EMIDETAIL" + where_);
  RawStore::Statement components_ =
      Of("UPDATE INS_EMIDETAIL SET MDFPRNAMT = MDFPRNAMT - ?3, MDFINTAMT = 0" + where_);
  RawStore::Statement nextInterest_ = Of("SELECT MDFINTAMT FROM INS_EMIDETAIL WHERE " + key_ + "= 24322");
  RawStore::Statement nextComponents_ = Of(
      "UPDATE INS_EMIDETAIL SET MDFPRNAMT = MDFPRNAMT + ?3, MDFINTAMT = MDFINTAMT WHERE " + key_ + "= 24322");
  RawStore::Statement audit_ = Of(
      "INSERT INTO SEC_AUDITTRAIL (LOGDATE, USERNAME, MENUNO, EMPID, ACTIONTEXT, DETAILTEXT, EXTRATEXT, WINUSER) "
      "VALUES ('2026-10-15 00:00:00', 'ADMIN', 19, ?1, 'Salary Editor -> Apply Deduction Preference', 'Salary "
      "Editor -> Apply Deduction Preference:::SI Type = Loan:SI Name = Consumer Loan:Serial No. = 1:Adjustment "
      "Type = Add to next month::Month/Year = Sep/2026:EMI Amount = 0 (1000)::Month/Year = Oct/2026:EMI Amount = "
      "2000 (1000)', '', '')");
};

void AdjustAllFloor(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    struct Ticked {
      int employee, serial;
      double moved;
      bool apart;
    };
    std::vector<Ticked> ticked;
    std::unique_ptr<AdjustFloor> floor;
    {
      PreferenceBench bench(SizeOf(state));
      bench.Display();
      for (const GridRow& row : bench.screen.fpgDedPref.rows) {
        const auto number = [&row](std::size_t column) { return std::stod(row.cells[column].text); };
        if (number(modSalSIAdj::kTick) == 0 || !bench.HasNextMonth(row)) continue;
        ticked.push_back({int(number(modSalSIAdj::kEmpId)), int(number(modSalSIAdj::kSerial)),
                          number(modSalSIAdj::kAdjusted), bench.IsReducing(row)});
      }
      floor = std::make_unique<AdjustFloor>(bench.company);
    }
    state.counters["ticked"] = double(ticked.size());
    state.ResumeTiming();
    for (const Ticked& row : ticked) floor->Run(row.employee, row.serial, row.moved, row.apart);
  }
}
BENCHMARK(AdjustAllFloor)->Apply(Sizes)->Iterations(3);

// An employee with several instructions who left in the middle of them.
constexpr int kLeaver = 100;

std::filesystem::path LeaverCompany(const BenchSize& size) {
  const std::filesystem::path company = ScratchCompany(size);
  Bench bench(company);
  bench.Connect(company);
  bench.session->Cn.Execute("UPDATE MAS_EMPLOYEE SET DOL = '15/Jan/2026', lockyn = 0 WHERE EMPID = 100");
  return company;
}

void OpenLeaving(benchmark::State& state) {
  const std::filesystem::path company = LeaverCompany(SizeOf(state));
  Bench bench(company);
  bench.Connect(company);
  for (auto _ : state) {
    modSIDetails screen(*bench.session, kLeaver);
    bench.desk.ShowModal(screen);
    state.counters["rows"] = double(screen.fpgGrid.rows.size());
    if (screen.fpgGrid.rows.empty()) state.SkipWithError("nothing pending");
  }
}
BENCHMARK(OpenLeaving)->Apply(Sizes);

void FoldAll(benchmark::State& state) {
  const std::filesystem::path company = LeaverCompany(SizeOf(state));
  Bench bench(company);
  bench.Connect(company);
  bench.desk.answer = Answer::Yes;
  modSIDetails screen(*bench.session, kLeaver);
  screen.Load();
  for (auto _ : state) {
    screen.chkSelectAll.SetValue(true);
    screen.cmdAdjust.onClick();
    if (screen.fpgGrid.rows.empty()) state.SkipWithError("nothing pending");
  }
}
BENCHMARK(FoldAll)->Apply(Sizes);

}  // namespace
}  // namespace ktl

BENCHMARK_MAIN();
