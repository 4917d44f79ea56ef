// One formula, and the days of one month, for all employees of a sample company; beside each other the figure
// of the program and that of the bare reads which nobody can do without: three prepared statements an
// employee. The company grows from 100 to 10,000 employees: the microseconds an employee tell whether the
// figure grows with it.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "company/company.h"
#include "company/raw_database.h"
#include "database/recordset.h"
#include "formula/clsEvalFormula.h"
#include "frame/session.h"
#include "machine/real_machine.h"

namespace {

constexpr const char* kFormula =
    R"(KLIF(EmpDet{Department} = "Finance", 1.1, 1) * Component{BASIC} / Days{Salary Calendar Days} * Days{Pay Days})";
constexpr long kFormulaId = 900;
constexpr long kPeriodMonth = 24321;      // Sep/2026, under advanced leave
constexpr long kAttendanceMonth = 24305;  // May/2025, by attendance

// A sample company in the temporary folder, made once a size.
std::filesystem::path CompanyOf(int employees) {
  static std::map<int, std::filesystem::path> made;
  auto& file = made[employees];
  if (!file.empty()) return file;
  file =
      std::filesystem::temp_directory_path() / ("ktl-formula-bench-" + std::to_string(employees) + ".kldb");
  ktl::CompanyOptions options;
  options.file = file;
  options.force = true;
  options.sample.employees = employees;
  ktl::CreateCompany(options);
  return file;
}

// Nobody is asked and nothing shown.
class SilentDesk final : public ktl::Desk {
 public:
  ktl::Answer MsgBox(const ktl::MessageBox& box) override { return ktl::DefaultAnswerOf(box); }
  void ShowModal(ktl::Screen&) override {}
};

struct Office {
  explicit Office(int employees) : real("formula_bench"), session(real.machine(), desk) {
    session.Cn.Open("Provider=SQLite;Data Source=" + CompanyOf(employees).string() + ";");
    ktl::LoadCaptions(session);
    ktl::LoadOptionSet(session);
    session.Cn.Execute("DELETE FROM MAS_FORMULA WHERE FORMULAID = 900");
    session.Cn.Execute(std::string("INSERT INTO MAS_FORMULA (FORMULAID, FORMULA) VALUES (900, '") + kFormula +
                       "')");
  }
  ktl::RealMachine real;
  SilentDesk desk;
  ktl::Session session;
};

ktl::DayRange Days(ktl::Session& session, long month) {
  return ktl::clsNODNDP(session).SetMonthCalcDates(month);
}

struct Member {
  long empId, empDetId, attHeadId;
};

std::vector<Member> Members(ktl::Session& session) {
  std::vector<Member> members;
  ktl::Recordset rows(session.Cn,
                      "SELECT EMPID, MAX(EMPDETID) AS D, MAX(ATTHEADID) AS H FROM MAS_EMPLOYEEDET GROUP BY "
                      "EMPID ORDER BY EMPID");
  for (; !rows.Eof(); rows.MoveNext())
    members.push_back({rows[0].ToLong(), rows[1].ToLong(), rows[2].ToLong()});
  return members;
}

// What the process holds now, in MB; the making of the company has its own peak before.
double HeldMemory() {
  long size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

void Report(benchmark::State& state, std::size_t employees, double heldBefore) {
  state.SetItemsProcessed(static_cast<std::int64_t>(employees));
  state.counters["grown_MB"] = HeldMemory() - heldBefore;
}

void Formula(benchmark::State& state) {
  Office office(static_cast<int>(state.range(0)));
  const auto members = Members(office.session);
  const ktl::DayRange month = Days(office.session, kPeriodMonth);
  const double held = HeldMemory();
  double sum = 0;
  for (auto _ : state) {
    ktl::clsEvalFormula engine(office.session);
    for (const Member& member : members)
      sum += engine.FnDblEvalFormula(kFormulaId, member.empId, member.empDetId, kPeriodMonth, month.first,
                                     month.last);
  }
  if (sum == 0) state.SkipWithError("no amounts");
  Report(state, members.size(), held);
}

template <class DayCounter>
void CountAll(benchmark::State& state, Office& office, DayCounter& counter, long monthYear) {
  const auto members = Members(office.session);
  const ktl::DayRange month = Days(office.session, monthYear);
  const double held = HeldMemory();
  double sum = 0;
  for (auto _ : state) {
    for (const Member& member : members)
      sum += counter.SetNODNDP({member.empId, member.empDetId, monthYear, member.attHeadId, month}).present;
  }
  if (sum == 0) state.SkipWithError("no days");
  Report(state, members.size(), held);
}

void DaysByAttendance(benchmark::State& state) {
  Office office(static_cast<int>(state.range(0)));
  ktl::clsNODNDP counter(office.session);
  CountAll(state, office, counter, kAttendanceMonth);
}

void DaysByPeriod(benchmark::State& state) {
  Office office(static_cast<int>(state.range(0)));
  ktl::modAttSetting settings(office.session);
  ktl::clsNODNDPCALC counter(office.session, settings);
  CountAll(state, office, counter, kPeriodMonth);
}

// The floor: the salary rate, the detail row and the leave of each employee.
void BareReads(benchmark::State& state) {
  ktl::RawDatabase database(CompanyOf(static_cast<int>(state.range(0))).string());
  const int employees = static_cast<int>(state.range(0));
  ktl::RawStatement rate(database,
                         "SELECT * FROM SLC_SALARYRATE_E WHERE EMPID = ? ORDER BY MONTHYEAR DESC LIMIT 1");
  ktl::RawStatement detail(database, "SELECT * FROM MAS_EMPLOYEEDET WHERE EMPID = ?");
  ktl::RawStatement leave(database,
                          "SELECT * FROM LEV_DETAILS WHERE EMPID = ? AND LEAVEDATE BETWEEN '2026-09-01' AND "
                          "'2026-09-30'");
  const double held = HeldMemory();
  for (auto _ : state) {
    for (int employee = 1; employee <= employees; ++employee) {
      for (ktl::RawStatement* statement : {&rate, &detail, &leave}) {
        statement->Bind(1, employee);
        while (statement->Step()) benchmark::ClobberMemory();
        statement->Reset();
      }
    }
  }
  Report(state, static_cast<std::size_t>(employees), held);
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(100)->Arg(1000)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
}
BENCHMARK(BareReads)->Apply(Sizes);
BENCHMARK(Formula)->Apply(Sizes);
BENCHMARK(DaysByAttendance)->Apply(Sizes);
BENCHMARK(DaysByPeriod)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
