#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <sstream>

#include "common/amounts.h"
#include "console/script_desk.h"
#include "frame/session.h"
#include "start/startup.h"
#include "support/fake_machine.h"
#include "support/sample_company.h"

// Every screen that writes, against everything that keeps it from writing.

namespace ktl {
namespace {

enum Guard : unsigned { kRight = 1, kReadOnly = 2, kLockedEmployee = 4, kEmployeeMonths = 8, kMonths = 16 };
constexpr unsigned kUnaudited = 32;  // leaves no audit line, as told
constexpr unsigned kAllGuards = kRight | kReadOnly | kLockedEmployee | kEmployeeMonths | kMonths;

// What an operator does on the sample company, and what must keep him from it.
struct Deed {
  const char* what;
  const char* commandLine;
  const char* script;
  int right;        // of the button that writes, 0 for none
  unsigned guards;  // of Guard
};

constexpr Deed kDeeds[] = {
    {"a new advance", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nclick cmdNew\npick cmbALName Tour Advance\ntext txtAdvDate 01/10/2026\n"
     "text txtAdvAmount 900\ntext txtInstlAmt 300\ntext txtRecvrFrom Nov/2026\nclick cmdSave\nanswer No\n",
     200, kAllGuards},
    {"an advance changed", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nrow fpgAdvLoan 1\ntext txtRemarks later\nanswer Yes\nclick cmdSave\n", 200,
     kRight | kReadOnly | kLockedEmployee},
    {"an advance deleted", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nrow fpgAdvLoan 1\nanswer Yes\nclick cmdDelete\n", 201, kAllGuards},
    {"a month deleted in the list", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nrow fpgAdvLoan 1\ntickcell fpgEMI 5 1 on\nanswer Yes\nanswer Cancel\n"
     "click cmdEMIDelete\n",
     206, kAllGuards},
    {"a month marked as recovered", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nrow fpgAdvLoan 1\ntickcell fpgEMI 5 4 on\n", 0,
     kReadOnly | kLockedEmployee | kUnaudited},
    {"a month saved in the editor", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nrow fpgAdvLoan 1\nclick cmdEmi\nrow fpgEMIDetail 2\ntext txtAmount 990\n"
     "answer Yes\nclick cmdSave\n",
     218, kAllGuards},
    {"a month deleted in the editor", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nrow fpgAdvLoan 1\nclick cmdEmi\nrow fpgEMIDetail 5\nanswer Yes\n"
     "answer Cancel\nclick cmdDelete\n",
     219, kAllGuards},
    {"interest by the panel", "1501#False#0#0",
     "pick cmbEmpName Kavita Mehta\nrow fpgAdvLoan 1\nclick cmdEmi\ntick chkIntRateRedBal on\ntext txtInt 6\n"
     "text txtIntFrom Oct/2026\nclick cmdIntCalculate\n",
     218, kAllGuards | kUnaudited},
    {"a receipt", "1501#False#0#0",
     "pick cmbEmpName Hema Varma\nrow fpgAdvLoan 1\nclick cmdReceipts\nclick cmdNew\ntext txtRcptDate "
     "15/10/2026\ntext txtAmount 100\nanswer Yes\nclick cmdSave\nanswer No\n",
     220, kRight | kReadOnly | kLockedEmployee | kMonths},
    {"a receipt deleted", "1501#False#0#0",
     "pick cmbEmpName Ajay Tiwari\nrow fpgAdvLoan 1\nclick cmdReceipts\nrow fpgReceipts 1\nanswer Yes\n"
     "answer No\nclick cmdDelete\n",
     221, kRight | kReadOnly | kLockedEmployee | kMonths},
    {"interest typed", "1502#False#0#0",
     "pick cmbEmpName Bharat Fernandes\nrow fpgAdvLoan 1\nclick cmdIntrCalc\ncell fpgSIMaster 12 5 45\n"
     "click cmdSave\n",
     0, kReadOnly | kLockedEmployee | kMonths},
    // The tax flags are raised before the months are tested, as told.
    {"a new premium", "1503#False#0#0",
     "pick cmbEmpName Bhavna Shetty\npick cmbPolicyName Household Policy\ntext txtPolicyNo HH/24\n"
     "text txtStartMonth Nov/2026\ntext txtEndMonth Mar/2027\ntext txtPolicyAmount 900\n"
     "pick cmbInstitution Narmada General Cover\nclick cmdSave\nanswer No\n",
     251, kRight | kReadOnly | kLockedEmployee},
    {"a premium deleted", "1503#False#0#0",
     "pick cmbEmpName Bhavna Shetty\nrow fpgOtherDetail 1\nanswer Yes\nclick cmdDelete\n", 252, kAllGuards},
    {"a month of a premium deleted", "1503#False#0#0",
     "pick cmbEmpName Bhavna Shetty\nrow fpgOtherDetail 1\ntickcell fpgEMI 24 1 on\nanswer Yes\n"
     "click cmdEMIDelete\nanswer No\n",
     254, kAllGuards},
    {"the report", "1501#False#0#0", "click cmdReport\n", 900, kRight | kUnaudited},
    {"the summary of an employee", "1501#False#0#0", "pick cmbEmpName Hema Varma\nclick lblSummary\n", 612,
     kRight | kUnaudited},
    {"a house", "1502#False#0#0",
     "pick cmbEmpName Firoz Tiwari\nrow fpgAdvLoan 1\nclick cmdTDSDet\npick cmbHType Let Out\nclick cmdSave\n",
     0, kReadOnly | kLockedEmployee | kUnaudited},
    {"a year of a house", "1502#False#0#0",
     "pick cmbEmpName Firoz Tiwari\nrow fpgAdvLoan 1\nclick cmdTDSDet\npick cmbFinYear 2027-2028\n"
     "text txtPrcpAmt 5\ntext txtInterestAmt 5\nclick cmdAdd\n",
     0, kReadOnly | kLockedEmployee | kUnaudited},
    {"a year of a house removed", "1502#False#0#0",
     "pick cmbEmpName Firoz Tiwari\nrow fpgAdvLoan 1\nclick cmdTDSDet\nrow fpgEMIDetail 1\nanswer Yes\n"
     "click cmdRemove\n",
     0, kReadOnly | kLockedEmployee | kUnaudited},
    {"a house deleted", "1502#False#0#0",
     "pick cmbEmpName Firoz Tiwari\nrow fpgAdvLoan 1\nclick cmdTDSDet\nanswer Yes\nclick cmdDelete\n", 0,
     kReadOnly | kLockedEmployee | kUnaudited},
    {"loans deleted together", "1502#False#0#0",
     "menu mnuBulkDelete\npick cmbFromMonth Jul/2026\nclick cmdLoad\ntickcell fpgBulkDelete 8 1 on\nanswer Yes\n"
     "click cmdDelete\n",
     226, kRight | kReadOnly | kLockedEmployee | kMonths},
    {"an advance for many", "1501#False#0#0",
     "click cmdMultiAllot\ntick lstEmployee 22 on\npick cmbSIName Tour Advance\ntext txtAdvDate 01/10/2026\n"
     "text txtAdvAmount 900\ntext txtInstlAmt 300\ntext txtRecvrFrom Nov/2026\nclick cmdSave\n",
     213, kAllGuards},
    {"a name", "1501#False#0#0",
     "click cmdMaster\ntext txtSIName Wedding Advance\ntext txtDedPref 9\nclick cmdSave\n", 209,
     kRight | kReadOnly},
    {"a name deleted", "1502#False#0#0", "click cmdMaster\nrow fpgSIMaster 6\nanswer Yes\nclick cmdDelete\n",
     235, kRight | kReadOnly},
    {"the month view", "1500,48,Oct/2026#False#0#0", "cell fpgEMIDetail 1 4 600\nclick cmdUpdate\n", 341,
     kAllGuards},
    {"month locks", "1511#False#0#0", "tickcell fpgLockMonth 12 3 on\nclick cmdSave\n", 0, kReadOnly},
    {"recoveries put off", "1509,24321#False#0#0", "click cmdDisplay\nclick cmdAdjust\n", 0,
     kReadOnly | kLockedEmployee | kEmployeeMonths | kMonths},
    {"recoveries folded after leaving", "1508,6#False#0#0",
     "tickcell fpgGrid 1 3 on\nanswer Yes\nclick cmdAdjust\n", 0, kReadOnly | kLockedEmployee | kMonths},
    {"recoveries given up after leaving", "1508,6#False#0#0",
     "tickcell fpgGrid 1 3 on\nanswer Yes\nclick cmdClear\n", 0, kReadOnly | kLockedEmployee},
    {"a benchmark rate", "1510#False#0#0",
     "click cmdInt\npick cmbFinYear 2024 - 2025\ntext txtIntAmt 8\nclick cmdSave\n", 0, kReadOnly},
    {"a benchmark rate deleted", "1510#False#0#0",
     "click cmdInt\nrow fpgInterest 5\nanswer Yes\nclick cmdDelete\n", 0, kReadOnly},
    {"the yearly benefit", "1510#False#0#0", "click cmdUpdate\n", 0, kReadOnly | kUnaudited},
    {"a benefit edited", "1510#False#0#0",
     "pick cmbFinYear 2025 - 2026\nclick cmdUpdate\ncell fpgUpdate 1 8 7\n", 0, kReadOnly | kUnaudited},
    {"benefits ported", "1510#False#0#0", "click cmdUpdate\ntick chkAll on\nclick cmdPort\n", 0, kReadOnly},
};

class Guards : public testing::TestWithParam<Deed> {
 protected:
  static void SetUpTestSuite() { sample = std::make_unique<test::SampleCompany>(); }
  static void TearDownTestSuite() { sample.reset(); }

  // Which tables the deed changes on the sample, set up by the statements, for the user.
  std::set<std::string> Changed(const std::string& setUp, const std::string& user) {
    sample->Reset();
    const std::string company = sample->ConnectionString();
    {
      Connection cn;
      cn.Open(company);
      if (!setUp.empty()) cn.Execute(setUp);
    }
    FakeMachine machine;
    machine.clock.now = *Date::FromYmd(2026, 10, 15, 10, 0);
    machine.folder.path = sample->Folder().string();
    machine.settings.Set("Settings", "DefLnk", clsGenCmn::FnStrEncryptWord(company));
    machine.settings.Set("Settings", "DBType", "SQL");
    machine.settings.Set("Settings", "User", user);
    sample->Remember();
    Play(machine);
    std::set<std::string> changed = sample->Changed();
    changed.erase("HVN_ATTENDANCE");  // written, as told, while the audit is on
    if (!machine.siblings.started.empty()) changed.insert("a program started");
    return changed;
  }

  std::string transcript;

 private:
  void Play(FakeMachine& machine) {
    std::istringstream script(GetParam().script);
    std::ostringstream out;
    ScriptDesk desk(script, out);
    Session session(machine.machine(), desk);
    try {
      EXPECT_EQ(RunProgram(session, GetParam().commandLine), 0);
    } catch (const ScriptError& error) {  // a control that is off
      out << error.what();
    }
    transcript = out.str();
  }

  static std::unique_ptr<test::SampleCompany> sample;
};

std::unique_ptr<test::SampleCompany> Guards::sample;

TEST_P(Guards, KeepEveryDeedFromBeingDone) {
  const Deed& deed = GetParam();
  std::set<std::string> written = Changed("", "ADMIN");
  EXPECT_EQ(written.erase("SEC_AUDITTRAIL"), (deed.guards & kUnaudited) == 0 ? 1U : 0U) << transcript;
  EXPECT_FALSE(written.empty()) << transcript;
  EXPECT_EQ(Changed("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 0", "ADMIN"), written)
      << "audit switched off\n"
      << transcript;

  const std::string refuse = fmt::format(
      "INSERT INTO SEC_BUTDET (BUTID, FORMID, BUTNAME) VALUES (900, 48, '*Report*'); DELETE FROM SEC_BUTPER; "
      "INSERT INTO SEC_BUTPER (BUTID, GROUPID, BUTALLOWYN) VALUES ({}, 2, 0)",
      deed.right);
  const struct {
    Guard guard;
    const char* what;
    std::string setUp;
    const char* user;
  } guards[] = {
      {kRight, "a refused button", refuse, "PAYCLERK"},
      {kReadOnly, "a user who may only read", "", "VIEWER"},
      {kLockedEmployee, "a locked employee", "UPDATE MAS_EMPLOYEE SET LOCKYN = 1", "ADMIN"},
      {kEmployeeMonths, "locked months of the employee",
       "DELETE FROM SEC_EMPLOCK; INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR, LOCKYN) SELECT E.EMPID, M.MONTHYEAR, "
       "1 FROM MAS_EMPLOYEE E, MAS_MONTHYEAR M",
       "ADMIN"},
      {kMonths, "locked months", "UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1", "ADMIN"},
  };
  for (const auto& each : guards) {
    if ((deed.guards & each.guard) == 0) continue;
    EXPECT_EQ(Changed(each.setUp, each.user), std::set<std::string>()) << each.what << "\n" << transcript;
    if (each.guard == kRight) {
      EXPECT_NE(transcript.find("Permission denied."), std::string::npos) << transcript;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, Guards, testing::ValuesIn(kDeeds), [](const auto& deed) {
  std::string name = deed.param.what;
  std::ranges::replace(name, ' ', '_');
  return name;
});

}  // namespace
}  // namespace ktl
