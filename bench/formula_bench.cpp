// One formula, and the days of one month, for all employees of a sample company: each employee alone, and all
// of them in one run. Beside them the bare reads which nobody can do without (salary rate, detail row,
// leave), prepared by hand on a database opened as the program opens it: three statements an employee, and
// three for all. The company grows from 100 to 10,000 employees, and at 10,000 from 600,000 to 7,000,000
// instalments: the microseconds an employee tell whether the figure grows with it.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <fstream>

#include "bench_company.h"
#include "database/drivers/sqlite_file.h"
#include "database/recordset.h"
#include "formula/day_count_run.h"
#include "formula/formula_run.h"
#include "frame/session.h"
#include "machine/real_machine.h"
#include "quiet_desk.h"
#include "start/connect.h"

namespace {

constexpr const char* kFormula =
    R"(KLIF(EmpDet{Department} = "Finance", 1.1, 1) * Component{BASIC} / Days{Salary Calendar Days} * Days{Pay Days})";
constexpr long kFormulaId = 900;
constexpr long kPeriodMonth = 24321;      // Sep/2026, under advanced leave
constexpr long kAttendanceMonth = 24305;  // May/2025, by attendance

ktl::BenchSize SizeOf(const benchmark::State& state) {
  const int employees = static_cast<int>(state.range(0));
  return {employees, static_cast<int>(state.range(1)), ktl::Usual(employees).loans};
}

struct Office {
  explicit Office(const benchmark::State& state) : real("formula_bench"), session(real.machine(), desk) {
    ktl::OpenConnection(session, ktl::ConnectionStringOf(ktl::BenchCompany(SizeOf(state))));
    ktl::LoadCaptions(session);
    ktl::LoadOptionSet(session);
    session.Cn.Execute("DELETE FROM MAS_FORMULA WHERE FORMULAID = 900");
    session.Cn.Execute(std::string("INSERT INTO MAS_FORMULA (FORMULAID, FORMULA) VALUES (900, '") + kFormula +
                       "')");
    for (ktl::Recordset rows(
             session.Cn,
             "SELECT EMPID, MAX(EMPDETID) AS D, MAX(ATTHEADID) AS H FROM MAS_EMPLOYEEDET GROUP "
             "BY EMPID ORDER BY EMPID");
         !rows.Eof(); rows.MoveNext())
      members.push_back({rows[0].ToLong(), rows[1].ToLong(), rows[2].ToLong()});
  }

  struct Member {
    long empId, empDetId, attHeadId;
  };
  ktl::RealMachine real;
  ktl::QuietDesk desk;
  ktl::Session session;
  std::vector<Member> members;
};

ktl::DayRange MonthOf(ktl::Session& session, long month) {
  return ktl::clsNODNDP(session).SetMonthCalcDates(month);
}

// What the process holds now, in MB; the making of the company has its own peak before.
double HeldMemory() {
  long size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

// Runs the work for all employees; it answers their sum, so that none of it is left out.
template <class Work>
void ForAll(benchmark::State& state, const Work& work) {
  const double held = HeldMemory();
  double sum = 0;
  for (auto _ : state) sum += work();
  if (sum == 0) state.SkipWithError("nothing came out");
  state.SetItemsProcessed(state.range(0));
  state.counters["grown_MB"] = HeldMemory() - held;
}

void FormulaAlone(benchmark::State& state) {
  Office office(state);
  const ktl::DayRange month = MonthOf(office.session, kPeriodMonth);
  ForAll(state, [&] {
    ktl::clsEvalFormula engine(office.session);
    double sum = 0;
    for (const auto& member : office.members) {
      if (const auto detail = ktl::DetailRowOfMonth(office.session, member.empId, kPeriodMonth))
        sum +=
            engine.FnDblEvalFormula(kFormulaId, member.empId, *detail, kPeriodMonth, month.first, month.last);
    }
    return sum;
  });
}

void FormulaRun(benchmark::State& state) {
  Office office(state);
  const ktl::DayRange month = MonthOf(office.session, kPeriodMonth);
  std::vector<long> employees;
  for (const auto& member : office.members) employees.push_back(member.empId);
  ForAll(state, [&] {
    ktl::FormulaRun run(office.session, {.formulaId = kFormulaId, .monthYear = kPeriodMonth, .period = month},
                        employees);
    double sum = 0;
    for (const long employee : employees) sum += run.AmountOf(employee);
    return sum;
  });
}

template <class Counter>
double CountAll(const Office& office, Counter& counter, long monthYear, const ktl::DayRange& month) {
  double sum = 0;
  for (const auto& member : office.members)
    sum += counter.SetNODNDP({member.empId, member.empDetId, monthYear, member.attHeadId, month}).present;
  return sum;
}

void DaysRun(benchmark::State& state, ktl::DayCountRun::Rules rules, long monthYear) {
  Office office(state);
  const ktl::DayRange month = MonthOf(office.session, monthYear);
  ForAll(state, [&] {
    std::vector<ktl::RunPerson> people;
    for (const auto& member : office.members) people.push_back({member.empId, member.empDetId});
    ktl::DayCountRun run(office.session, rules, std::move(people));
    return CountAll(office, run, monthYear, month);
  });
}

void AttendanceAlone(benchmark::State& state) {
  Office office(state);
  const ktl::DayRange month = MonthOf(office.session, kAttendanceMonth);
  ktl::clsNODNDP counter(office.session);
  ForAll(state, [&] { return CountAll(office, counter, kAttendanceMonth, month); });
}

void AttendanceRun(benchmark::State& state) {
  DaysRun(state, ktl::DayCountRun::Rules::Attendance, kAttendanceMonth);
}

void PeriodAlone(benchmark::State& state) {
  Office office(state);
  const ktl::DayRange month = MonthOf(office.session, kPeriodMonth);
  ktl::modAttSetting settings(office.session);
  ktl::clsNODNDPCALC counter(office.session, settings);
  ForAll(state, [&] { return CountAll(office, counter, kPeriodMonth, month); });
}

void PeriodRun(benchmark::State& state) {
  DaysRun(state, ktl::DayCountRun::Rules::AdvancedLeave, kPeriodMonth);
}

// Every column of every row is taken over, as a program that works with them does it.
double TakeRows(ktl::SqliteStatement& statement) {
  double taken = 0;
  for (; statement.Step(); ++taken)
    for (std::size_t column = 0; column < statement.ColumnCount(); ++column)
      benchmark::DoNotOptimize(statement.Column(column));
  statement.Reset();
  return taken;
}

void FloorByEmployee(benchmark::State& state) {
  const auto database =
      ktl::OpenSqliteFile(ktl::BenchFile(SizeOf(state)).string(), ktl::FileKind::Company, 60);
  ktl::SqliteStatement rate(database.handle(),
                            "SELECT * FROM SLC_SALARYRATE_E WHERE EMPID = ? ORDER BY MONTHYEAR DESC LIMIT 1");
  ktl::SqliteStatement detail(database.handle(), "SELECT * FROM MAS_EMPLOYEEDET WHERE EMPID = ?");
  ktl::SqliteStatement leave(
      database.handle(),
      "SELECT * FROM LEV_DETAILS WHERE EMPID = ? AND LEAVEDATE BETWEEN '2026-09-01' AND '2026-09-30'");
  ForAll(state, [&] {
    double taken = 0;
    for (long employee = 1; employee <= state.range(0); ++employee) {
      for (ktl::SqliteStatement* statement : {&rate, &detail, &leave}) {
        statement->Bind(0, employee);
        taken += TakeRows(*statement);
      }
    }
    return taken;
  });
}

void FloorByTable(benchmark::State& state) {
  const auto database =
      ktl::OpenSqliteFile(ktl::BenchFile(SizeOf(state)).string(), ktl::FileKind::Company, 60);
  ktl::SqliteStatement rate(database.handle(),
                            "SELECT * FROM SLC_SALARYRATE_E E WHERE MONTHYEAR = (SELECT max(MONTHYEAR) FROM "
                            "SLC_SALARYRATE_E WHERE EMPID = E.EMPID) ORDER BY EMPID");
  ktl::SqliteStatement detail(database.handle(), "SELECT * FROM MAS_EMPLOYEEDET ORDER BY EMPID");
  ktl::SqliteStatement leave(
      database.handle(),
      "SELECT * FROM LEV_DETAILS WHERE LEAVEDATE BETWEEN '2026-09-01' AND '2026-09-30' ORDER BY EMPID");
  ForAll(state, [&] { return TakeRows(rate) + TakeRows(detail) + TakeRows(leave); });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int employees : {100, 1000, 10000}) benchmark->Args({employees, employees * 60});
  benchmark->Args({10000, 7000000})->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
}
BENCHMARK(FloorByEmployee)->Apply(Sizes);
BENCHMARK(FloorByTable)->Apply(Sizes);
BENCHMARK(FormulaAlone)->Apply(Sizes);
BENCHMARK(FormulaRun)->Apply(Sizes);
BENCHMARK(AttendanceAlone)->Apply(Sizes);
BENCHMARK(AttendanceRun)->Apply(Sizes);
BENCHMARK(PeriodAlone)->Apply(Sizes);
BENCHMARK(PeriodRun)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
