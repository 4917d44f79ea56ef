// The entry of premiums on companies of 100, 1,000 and 10,000 employees: choosing an employee with his first
// policy, and the click on Save of a policy of 360 months beside the same rows through raw prepared
// statements in one transaction.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench_session.h"
#include "premium/modInsGInsSSS.h"
#include "raw_store.h"

namespace ktl {
namespace {

// A person at the entry of insurance.
class PremiumClerk {
 public:
  explicit PremiumClerk(const std::filesystem::path& company) : bench_((UseLocalStore(), company)) {
    bench_.Connect(company);
    entry_ = std::make_unique<modInsGInsSSS>(*bench_.session, InstructionType::Insurance);
    entry_->Load();
  }

  // 360 months of 500 from Nov/2026, not saved yet.
  void Type(const std::string& employee) {
    entry_->employee.cmbEmpName.SetBoundText(employee);
    entry_->cmdNew_Click();
    entry_->cmbPolicyName.SetText("Life Cover Policy");
    entry_->cmbInstitution.SetBoundText("4");
    entry_->txtPolicyNo.SetText("BENCH/" + employee);
    entry_->txtStartMonth.SetText("Nov/2026");
    entry_->txtEndMonth.SetText("Oct/2056");
    entry_->txtPolicyAmount.SetText("500");
  }
  bool Save() {
    const int before = bench_.desk.saved;
    entry_->cmdSave.onClick();
    return bench_.desk.saved == before + 1;
  }

  Session& session() { return *bench_.session; }
  modInsGInsSSS& entry() { return *entry_; }

 private:
  // The tax flags ask the store that was made beside the companies.
  static void UseLocalStore() { setenv("KTL_FOLDER", std::filesystem::temp_directory_path().c_str(), 1); }

  Bench bench_;
  std::unique_ptr<modInsGInsSSS> entry_;
};

std::vector<std::string> Texts(Session& session, const char* sql) {
  std::vector<std::string> texts;
  for (Recordset rs(session.Cn, sql); !rs.Eof(); rs.MoveNext()) texts.push_back(rs[0].ToText());
  return texts;
}

std::vector<std::string> Employees(Session& session) {
  return Texts(session,
               "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID > 60 AND DOL IS NULL AND DOJ < '01/Jan/2026' AND "
               "EMPID NOT IN (SELECT EMPID FROM SEC_EMPLOCK)");
}

void ChooseInsured(benchmark::State& state, int employees) {
  PremiumClerk clerk(BenchCompany(employees));
  const auto insured = Texts(clerk.session(), "SELECT EMPID FROM INS_OTHER WHERE SITYPE = 3 GROUP BY EMPID");
  std::size_t next = 0;
  for (auto _ : state) {
    clerk.entry().employee.cmbEmpName.SetBoundText(insured[next++ % insured.size()]);
    clerk.entry().txtSerialNo.SetText("1");
  }
}

void ClickSaveOf360(benchmark::State& state, int employees) {
  PremiumClerk clerk(ScratchCompany(Usual(employees)));
  const auto all = Employees(clerk.session());
  std::size_t next = 0;
  for (auto _ : state) {
    state.PauseTiming();
    clerk.Type(all[next++ % all.size()]);
    state.ResumeTiming();
    if (!clerk.Save()) state.SkipWithError("not saved");
  }
}

void SaveOf360Floor(benchmark::State& state, int employees) {
  const auto company = ScratchCompany(Usual(employees));
  const auto all = Employees(PremiumClerk(company).session());
  const RawStore store(company);
  const auto begin = store.Prepare("BEGIN IMMEDIATE"), commit = store.Prepare("COMMIT");
  const auto instruction = store.Prepare(
      "INSERT INTO INS_OTHER (EMPID, SERIALNO, SITYPE, OTHNAME, OTHNO, STARTMY, ENDMY) VALUES (?1, ?2, 3, "
      "'Life Cover Policy', 'BENCH', 24323, 24682)");
  const auto month = store.Prepare(
      "INSERT INTO INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, COUNTER, EMIAMT, MDFYAMT, INSTID) "
      "VALUES (?1, ?4, 3, ?2, ?3, 500.0, 500.0, 4)");
  constexpr int kFirstMonth = 24323;
  int next = 0;
  for (auto _ : state) {
    const int employee = std::stoi(all[static_cast<std::size_t>(next) % all.size()]);
    const int serial = 1000 + next++;
    store.Step(begin);
    store.Run(instruction, employee, serial);
    for (int i = 0; i < kInstalments; ++i) store.Run(month, employee, kFirstMonth + i, i + 1, serial);
    store.Step(commit);
  }
}

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  const auto add = [](const std::string& name, auto function, int employees) {
    benchmark::RegisterBenchmark((name + "/" + std::to_string(employees)).c_str(), function, employees)
        ->Unit(benchmark::kMillisecond);
  };
  for (const int employees : {100, 1000, 10000}) {
    add("ChooseInsured", ktl::ChooseInsured, employees);
    add("ClickSaveOf360", ktl::ClickSaveOf360, employees);
    add("SaveOf360Floor", ktl::SaveOf360Floor, employees);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
