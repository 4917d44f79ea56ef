#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench_company.h"
#include "database/recordset.h"
#include "frame/options.h"
#include "frame/session.h"
#include "instructions/advloan_write.h"
#include "instructions/modAdvLoan.h"
#include "machine/real_machine.h"
#include "quiet_desk.h"
#include "start/connect.h"
#include "start/startup.h"

namespace ktl {

// A session with a settings store of its own, so that the user's stays as it is.
struct Bench {
  explicit Bench(const std::filesystem::path& company, const std::string& name = "bench")
      : Bench(AddressOf(company.string()), name) {}
  Bench(const CompanyAddress& company, const std::string& name) {
    const auto settings = std::filesystem::temp_directory_path() / ("ktl-" + name + "-settings.ini");
    std::filesystem::remove(settings);
    setenv("KTL_SETTINGS", settings.c_str(), 1);
    WriteSettings(settings, company);
    real = std::make_unique<RealMachine>("bench");
    session = std::make_unique<Session>(real->machine(), desk);
  }

  void Connect(const std::filesystem::path& company) { Connect(AddressOf(company.string())); }
  void Connect(const CompanyAddress& company) {
    OpenConnection(*session, company.connectionString);
    LoadOptionSet(*session);
  }

  QuietDesk desk;
  std::unique_ptr<RealMachine> real;
  std::unique_ptr<Session> session;
};

// A copy of the company of that size, to write into: a new one, but on a server the program's own of a run
// before, as it left it.
inline std::filesystem::path ScratchCompany(const BenchSize& size = Usual(1000)) {
  if (!BenchServer().empty()) return CompanyOnServer(size, program_invocation_short_name + std::string("-"));
  const auto scratch = std::filesystem::temp_directory_path() / "ktl-bench-scratch.kldb";
  for (const char* ending : {"", "-wal", "-shm"}) std::filesystem::remove(scratch.string() + ending);
  std::filesystem::copy_file(BenchFile(size), scratch);
  return scratch;
}

inline constexpr int kInstalments = 360;

// A loan of 360 instalments of 1000 from Nov/2026, not saved yet.
inline AdvLoanEntry LoanOf360() {
  AdvLoanEntry entry{.key = {100, InstructionType::Loan, 1000}, .institution = 1, .newRecord = true};
  entry.ReadTyped({.name = "Consumer Loan",
                   .date = "15/10/2026",
                   .amount = "360000",
                   .instalment = "1000",
                   .recoverFrom = "Nov/2026"});
  return entry;
}

// A person at the entry of loans.
class LoanClerk {
 public:
  explicit LoanClerk(const std::filesystem::path& company, const std::string& name = "bench")
      : LoanClerk(AddressOf(company.string()), name) {}
  LoanClerk(const CompanyAddress& company, const std::string& name) : bench_(company, name) {
    bench_.Connect(company);
    entry_ = std::make_unique<modAdvLoan>(*bench_.session, InstructionType::Loan);
    entry_->Load();
  }

  // Who is in service and not locked, beyond the few whose loans are made up one by one.
  std::vector<std::string> Employees() {
    std::vector<std::string> employees;
    Recordset rs(
        bench_.session->Cn,
        "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID > 60 AND DOL IS NULL AND DOJ < '01/Jan/2026' AND "
        "EMPID NOT IN (SELECT EMPID FROM SEC_EMPLOCK)");
    for (; !rs.Eof(); rs.MoveNext()) employees.push_back(rs[0].ToText());
    return employees;
  }

  // A new loan of 1000 a month, typed but not saved.
  void Type(const std::string& employee, int months) {
    entry_->employee.cmbEmpName.SetBoundText(employee);
    entry_->cmdNew_Click();
    entry_->cmbALName.SetText("Consumer Loan");
    entry_->cmbInstitution.SetBoundText("1");
    entry_->txtLoanAccNo.SetText("BENCH/" + employee + "/" + entry_->txtSerialNo.Text());
    entry_->txtAdvDate.SetText("15/10/2026");
    entry_->txtAdvAmount.SetText(std::to_string(1000 * months));
    entry_->recovery.txtInstlAmt.SetText("1000");
    entry_->recovery.txtRecvrFrom.SetText("Nov/2026");
  }

  // The click on Save; false when the person was not told that it is done.
  bool Save() {
    const int before = bench_.desk.saved;
    entry_->cmdSave.onClick();
    return bench_.desk.saved == before + 1;
  }

  Session& session() { return *bench_.session; }
  QuietDesk& desk() { return bench_.desk; }
  modAdvLoan& entry() { return *entry_; }

 private:
  Bench bench_;
  std::unique_ptr<modAdvLoan> entry_;
};

}  // namespace ktl
