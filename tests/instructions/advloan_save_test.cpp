#include <fstream>

#include "database/connection_string.h"
#include "entry_fixture.h"
#include "frame/workstation_objects.h"
#include "runtime/text.h"
#include "start/connect.h"
#include "support/private_server.h"

namespace ktl {
namespace {

// Everything is wrong at first; each act mends one thing and the next check speaks.
TEST_F(EntryScreen, ChecksSpeakOneAtATimeInTheirOrder) {
  company.Advance(18, 1, "Salary Advance", 100);
  company.Lock(24325);
  Run("INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR) VALUES (17, 24322)");
  modAdvLoan& s = Open(Advance);
  const auto refused = [&](const char* text, const Control* focus, const std::string& title) {
    Click(s.cmdSave);
    EXPECT_EQ(desk.LastBox().icon, Icon::Information) << text;
    EXPECT_EQ(desk.LastBox().title, title) << text;
    EXPECT_EQ(desk.TakeTexts(), Texts{text});
    EXPECT_TRUE(!focus || s.Focus() == focus) << text;
  };
  const auto typed = [&](TextBox& box, const char* text, const char* told, const Control& focus) {
    box.SetText(text);
    refused(told, &focus, session.title);
  };
  const auto named = [&](const std::string& name, const char* told, const Control& focus) {
    s.cmbALName.SetText(name);
    refused(told, &focus, session.title);
  };
  const auto ran = [&](const char* sql, const char* told, const Control* focus, const std::string& title) {
    Run(sql);
    refused(told, focus, title);
  };
  const char* const noDate = "Specify date. Format dd/mm/yyyy.";
  const char* const noInstalment = "Specify installment amount.";
  typed(s.txtAdvAmount, "9999999999.999", "Amount should be less than 9,99,99,99,999.99", s.txtAdvAmount);
  typed(s.txtAdvAmount, "0", "Enter serial number.", s.txtSerialNo);
  for (const char* const serial : {"2147483648", "1.5", "-1", "99999999999999999999"})
    typed(s.txtSerialNo, serial, "Enter serial number.", s.txtSerialNo);
  typed(s.txtSerialNo, "2147483647", "Select employee.", s.employee.cmbEmpName);
  Pick(s.employee.cmbEmpName, "Asha Rao");
  Click(s.cmdNew);
  named("", "Specify the advance name.", s.cmbALName);
  named(std::string(51, 'n'), "Advance name should be within 50 characters", s.cmbALName);
  named("O'Neill's \"%[|", "Select Advance Name.", s.cmbALName);
  named("SALARY ADVANCE", noDate, s.txtAdvDate);
  typed(s.txtAdvDate, "29/02/2025", noDate, s.txtAdvDate);
  typed(s.txtAdvDate, "31/03/2024", "Given date cannot be before 'Start Month' set.", s.txtAdvDate);
  typed(s.txtAdvDate, "15/09/2026", "Specify amount.", s.txtAdvAmount);
  s.txtAdvAmount.SetText("12,345.60");
  typed(s.txtInterestAmt, "1e308", "Interest Amount should be less than 9,99,99,99,999.99", s.txtInterestAmt);
  typed(s.txtInterestAmt, "100", noInstalment, s.recovery.txtInstlAmt);
  typed(s.recovery.txtInstlAmt, "0.00", noInstalment, s.recovery.txtInstlAmt);
  typed(s.recovery.txtInstlAmt, "99999999999", "Installment Amount should be less than 9,99,99,99,999.99",
        s.recovery.txtInstlAmt);
  Tick(s.recovery.optInstlCount);
  typed(s.recovery.txtInstlAmt, "12445.61", "Specify number of installments.", s.recovery.txtNoOfInstlmnts);
  Tick(s.recovery.optInstlLumpSum);
  typed(s.recovery.txtRecvrFrom, "13/2026", "Specify 'Recovery from' Month/Year.", s.recovery.txtRecvrFrom);
  typed(s.recovery.txtRecvrFrom, "Aug/2026", "Recovery month cannot be before the advance date.",
        s.recovery.txtRecvrFrom);
  typed(s.recovery.txtRecvrFrom, "Sep/2026",
        "Installment amount cannot exceed the sum of advance taken and interest.", s.recovery.txtInstlAmt);
  s.recovery.txtInstlAmt.SetText("12445.60");
  ran("UPDATE MAS_EMPLOYEE SET DOJ = '16/Sep/2026' WHERE EMPID = 17",
      "Advance date should be later than date of joining.", &s.txtAdvDate, session.title);
  ran("UPDATE MAS_EMPLOYEE SET DOJ = '15/Sep/2026', DOL = '14/Sep/2026' WHERE EMPID = 17",
      "Advance date should be before date of leaving.", &s.txtAdvDate, session.title);
  ran("UPDATE MAS_EMPLOYEE SET DOL = '15/Sep/2026' WHERE EMPID = 17",
      "1 Month(s) locked. Cannot Save/Update.", nullptr, session.title);
  ran("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0", "Employee has been locked. Cannot Save/Update.", nullptr,
      "Permission Denied");
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN") + Rows("SELECT COUNT(*) FROM INS_EMIDETAIL"), "10");
  Run("DELETE FROM SEC_EMPLOCK");
  typed(s.txtRemarks, std::string(4001, 'r').c_str(), "Remarks should be within 4000 characters",
        s.txtRemarks);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "1");
  s.txtRemarks.SetText(std::string(4000, 'r'));
  EXPECT_EQ(Press(s.cmdSave), Texts{"Updated"});
  EXPECT_EQ(Schedule(), "24321|1|12445.6|12445.6");
}

TEST_F(EntryScreen, LimitsOfTheNameComeFirstUnderAdvancedManagement) {
  Run("UPDATE INS_MASTER SET AMTLIMIT = 20000 WHERE SINAME = 'Festival Advance'");
  modAdvLoan& entry = BeginNew(Advance, "Festival Advance", "", "20000.01");
  EXPECT_TRUE(entry.recovery.optInstlCount.Value());
  EXPECT_EQ(entry.recovery.txtNoOfInstlmnts.Text(), "6");
  entry.recovery.txtNoOfInstlmnts.SetText("7");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Amount should be less than : 20000"});
  entry.txtAdvAmount.SetText("20000");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"No.of Installments should be less than : 6"});
  entry.recovery.txtNoOfInstlmnts.SetText("6");
  company.Advance(17, 9, "Festival Advance", 100);
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Festival Advance can be given only 1 times in a service"});
  // A count that no longer shows refuses nothing.
  Run("UPDATE INS_MASTER SET ALLOWLIMIT = NULL");
  entry.cmbALName.SetText("");
  entry.cmbALName.SetText("Festival Advance");
  entry.recovery.txtNoOfInstlmnts.SetText("7");
  entry.RefreshDetail();
  ClickRow(entry.fpgAdvLoan, 0);
  EXPECT_EQ(entry.recovery.txtNoOfInstlmnts.Text(), "");
  entry.recovery.txtNoOfInstlmnts.SetText("7");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Updated"});
}

TEST_F(EntryScreen, FlatInterestIsOneFigureAndTheScheduleCarriesBoth) {
  modAdvLoan& entry = BeginNew(Advance, "Festival Advance", "15_8,2026", "12,000");
  EXPECT_EQ(entry.txtAdvDate.Text(), "15/08/2026");
  EXPECT_EQ(entry.recovery.txtRecvrFrom.Text(), "Aug/2026");
  EXPECT_EQ(entry.txtAdvAmount.Text(), "12000.00");
  EXPECT_EQ(entry.txtInterestAmt.Text(), "600");
  Click(entry.cmdSave);
  EXPECT_EQ(Rows("SELECT COUNT(*), MIN(EMIAMT), MAX(MDFPRNAMT), MIN(ACTPRNAMT), MAX(INTAMT), MAX(INSTID) "
                 "FROM INS_EMIDETAIL"),
            "6|2100|2100|2100|NULL|0");
  EXPECT_EQ(Rows("SELECT SIDATE, ACTAMT, INTAMT FROM INS_ADVLOAN"), "15/08/2026|12000|600");
  // The screen is ready for the next one.
  EXPECT_EQ(entry.txtSerialNo.Text(), "2");
  EXPECT_EQ(entry.cmbALName.Text(), "");
  EXPECT_EQ(entry.tabDetails.Current(), 0u);
}

TEST_F(EntryScreen, ReducingBalanceLooksLockedCanBeTypedAndRefreshesTheTotalInterest) {
  modAdvLoan& entry = BeginNew(Advance, "Medical Advance", "01/10/2026", "12000");
  EXPECT_EQ(entry.txtInterestAmt.backColour, kToolTipColour);
  EXPECT_FALSE(entry.txtInterestAmt.locked);
  Tick(entry.recovery.optInstlCount);
  Type(entry.recovery.txtNoOfInstlmnts, "4");
  Click(entry.cmdSave);
  EXPECT_EQ(Rows("SELECT EMIAMT, MDFYAMT, INTAMT, MDFPRNAMT FROM INS_EMIDETAIL ORDER BY COUNTER"),
            "3120|3120|120|NULL\n3090|3090|90|NULL\n3060|3060|60|NULL\n3030|3030|30|NULL");
  EXPECT_EQ(Rows("SELECT INTAMT FROM INS_ADVLOAN"), "300");
  // Without advanced management the same name gives a flat schedule and no refresh.
  session.features.switches["ADVMGALYN"] = false;
  BeginNew(Advance, "Medical Advance", "01/10/2026", "300");
  Type(screen->recovery.txtInstlAmt, "100");
  Click(screen->cmdSave);
  EXPECT_EQ(Schedule(2), "24322|1|100|100\n24323|2|100|100\n24324|3|100|100");
}

TEST_F(EntryScreen, SavingALoanWritesItsRowScheduleAuditAndFlags) {
  company.Salary(17, 24322, 40000, 30000);
  company.Salary(17, 24320, 40000, 30000);
  Run("INSERT INTO HVN_ATTENDANCE (EMPID, MONTHYEAR, UNITLOCKYN) VALUES (17, 24322, 0), (17, 24323, 1), (18, "
      "24322, 0)");
  machine.folder.markers.insert("BrookfieldFarmCustom.dat");
  Run("INSERT INTO CUS_LOANSLNOTABLE (EMPID, SERIALNO, AUTOSLNO) VALUES (17, 1, 4), (18, 1, 7)");
  modAdvLoan& entry = EnterLoan();
  Type(entry.txtRemarks, "Asha's [#1] loan | \"new\"");
  Type(entry.recovery.txtRecvrFrom, "10\\2026");
  Click(entry.cmdSave);
  EXPECT_EQ(Rows("SELECT SINAME, LOANACNO, SIDATE, ACTAMT, INTAMT, REMARKS FROM INS_ADVLOAN"),
            "Car Loan|ACC/1|15/09/2026|3000|0|Asha's [#1] loan | \"new\"");
  EXPECT_EQ(Schedule(), "24322|1|1000|1000\n24323|2|1000|1000\n24324|3|1000|1000");
  EXPECT_EQ(Rows("SELECT DISTINCT INSTID FROM INS_EMIDETAIL"), "5");
  EXPECT_EQ(LastAudit(),
            "19|17|Standing Instructions - Loan Added|Loan Added::SI Type = Loan:SI Name = Car Loan:A/c No. "
            "= ACC/1:Date = 15/Sep/2026:Amount = 3000:Interest Amount = 0:Remarks = Ashas 1 loan  "
            "new:Recover From Month = Oct/2026:Installments Amount = 1000.00");
  EXPECT_EQ(Rows("SELECT MONTHYEAR, EDITMODEYN FROM SLC_SALARYCALC_E ORDER BY MONTHYEAR"),
            "24320|0\n24322|1");
  EXPECT_EQ(Rows("SELECT EMPID, MONTHYEAR, EDITMODEYN FROM HVN_ATTENDANCE ORDER BY EMPID, MONTHYEAR"),
            "17|24322|1\n17|24323|0\n18|24322|0");
  EXPECT_EQ(Rows("SELECT EMPID, AUTOSLNO FROM CUS_LOANSLNOTABLE ORDER BY EMPID"), "17|8\n18|7");
}

TEST_F(EntryScreen, ADatabaseWithoutAttendanceSavesAllTheSame) {
  Run("DROP TABLE HVN_ATTENDANCE");
  EXPECT_EQ(Press(EnterLoan().cmdSave), Texts{"Updated"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM CUS_LOANSLNOTABLE"), "0");
}

TEST_F(EntryScreen, LoanAccountAndInstitutionAreAskedFor) {
  company.Loan(18, 1, "Car Loan", 500).With("LOANACNO", "ACC/1");
  modAdvLoan& entry = EnterLoan();
  entry.cmbInstitution.SetText("Nobody's Bank");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Select institution."});
  entry.cmbInstitution.SetText("Deccan Bank");
  entry.txtLoanAccNo.SetText("  ");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Specify the Loan account number."});
  entry.txtLoanAccNo.SetText("acc/1 ");
  EXPECT_EQ(Press(entry.cmdSave, {Answer::No}),
            Texts{"Loan Account number already exist(s). Do you want to continue ?"});
  EXPECT_EQ(entry.Focus(), &entry.txtLoanAccNo);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "1");
  Click(entry.cmdSave);  // Yes is the default
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "2");
}

TEST_F(EntryScreen, TheTenureIsAskedAboutAboveThirtyYears) {
  modAdvLoan& entry = EnterAdvance();
  const auto saveWith = [&](const char* amount, const char* instalment) {
    screen->txtAdvAmount.SetText(amount);
    screen->recovery.txtInstlAmt.SetText(instalment);
    return Press(screen->cmdSave);
  };
  const std::vector<std::string> question{"Re-payment tenure exceeds 30 years.\r\nDo you want to continue?"};
  EXPECT_EQ(saveWith("36051", "100"), question);  // 360.51 rounds to 361; the default answer is No
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
  // Months past the year 9999 cannot be: refused before anything is written.
  EXPECT_EQ(saveWith("9999999999.99", "0.01"), Texts{"6\tOverflow"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
  // Not the count but the last month decides: 5000 by 99999 in tens is 500 months.
  Tick(entry.recovery.optInstlCount);
  Tick(entry.recovery.optNearTenRupee);
  entry.recovery.txtNoOfInstlmnts.SetText("99999");
  EXPECT_EQ(saveWith("5000", ""), question);
  Tick(entry.recovery.optInstlLumpSum);
  entry.recovery.txtRecvrFrom.SetText("Nov/9999");
  EXPECT_EQ(saveWith("201", "100"), Texts{"6\tOverflow"});
  EXPECT_EQ(saveWith("200", "100"), Texts{"Updated"});
  EnterAdvance();
  EXPECT_EQ(saveWith("36050", "100"), Texts{"Updated"});  // 360.5 rounds to 360
  EXPECT_EQ(Rows("SELECT COUNT(*), MIN(EMIAMT) FROM INS_EMIDETAIL WHERE SERIALNO = 2"), "361|50");

  modAdvLoan& byCount = EnterAdvance();
  Tick(byCount.recovery.optInstlCount);
  Type(byCount.recovery.txtNoOfInstlmnts, "361");
  Click(byCount.cmdSave);
  EXPECT_EQ(desk.LastBox().text, question.front());
  EXPECT_EQ(desk.LastBox().icon, Icon::Exclamation);
}

TEST_F(EntryScreen, FailuresOfTheCountLeaveTheInstructionWithoutASchedule) {
  const auto failsOf = [&](const char* count, const char* amount, const char* error, int serial) {
    modAdvLoan& entry = EnterAdvance();
    Type(entry.txtAdvAmount, amount);
    entry.recovery.txtInstlAmt.SetText("");
    Tick(entry.recovery.optInstlCount);
    Type(entry.recovery.txtNoOfInstlmnts, count);
    EXPECT_EQ(Press(entry.cmdSave), Texts{error});
    EXPECT_EQ(Rows("SELECT MAX(SERIALNO) FROM INS_ADVLOAN"), std::to_string(serial));
    Click(entry.cmdSave);  // an edit: no schedule comes of it
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_EMIDETAIL"), "0");
    desk.TakeTexts();
  };
  failsOf("0", "10000", "11\tDivision by zero", 1);
  failsOf("9", "4", "13\tType mismatch", 2);
}

TEST_F(EntryScreen, NoRecoverySavesWithoutMonthsButStillChecksTheInstalment) {
  modAdvLoan& entry = EnterAdvance();
  Tick(entry.recovery.chkNoRecovery, true);
  entry.recovery.txtRecvrFrom.SetText("");
  entry.recovery.txtInstlAmt.SetText("10000.01");
  EXPECT_EQ(Press(entry.cmdSave),
            Texts{"Installment amount cannot exceed the sum of advance taken and interest."});
  entry.recovery.txtInstlAmt.SetText("");
  Click(entry.cmdSave);
  EXPECT_EQ(Schedule(), "");
  EXPECT_NE(LastAudit().find(":Remarks = :No Recovery = Yes"), std::string::npos);
}

TEST_F(EntryScreen, AnAmountBelowZeroWritesNothingAndSaysNothing) {
  modAdvLoan& entry = EnterAdvance();
  entry.txtAdvAmount.SetText("-5");
  entry.recovery.txtInstlAmt.SetText("");
  Tick(entry.recovery.chkNoRecovery, true);
  Tick(entry.recovery.optInstlCount);
  Click(entry.cmdSave);
  EXPECT_TRUE(desk.TakeTexts().empty());
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
}

TEST_F(EntryScreen, AChangeWritesTheInstructionAloneAndFlagsItsMonths) {
  Click(EnterAdvance().cmdSave);
  company.Salary(17, 24323, 40000, 30000);
  Run("DELETE FROM SLC_SALARYCALC_D");  // not recovered by it
  ClickRow(screen->fpgAdvLoan, 0);
  EXPECT_FALSE(screen->recovery.fmeInstallment.IsShown());
  EXPECT_TRUE(screen->txtAdvAmount.locked);
  Type(screen->txtRemarks, "changed");
  Type(screen->txtInterestAmt, "50");
  Click(screen->cmdSave);
  EXPECT_EQ(Rows("SELECT ACTAMT, INTAMT, REMARKS FROM INS_ADVLOAN"), "10000|50|changed");
  EXPECT_EQ(Rows("SELECT COUNT(*), SUM(EMIAMT) FROM INS_EMIDETAIL"), "10|10000");
  EXPECT_EQ(Rows("SELECT EDITMODEYN FROM SLC_SALARYCALC_E"), "1");
  EXPECT_NE(LastAudit().find("Advance Added::SI Type = Advance"), std::string::npos);
}

TEST_F(EntryScreen, ADeductedInstructionAsksAndStaysOnTheScreen) {
  const std::string question = "EMI already deducted. Do you want to modify the detail ?";
  company.Advance(17, 1, "Salary Advance", 2000, "01/Apr/2026");
  company.Emi(17, 1, 1, 1, 24320, 1000).With("EMIRECVYN", 1);
  company.Emi(17, 1, 1, 2, 24321, 1000);
  modAdvLoan& entry = OpenOnFirst(Advance);
  Type(entry.txtRemarks, "second thoughts");
  Click(entry.cmdSave);  // No is the default
  EXPECT_EQ(Rows("SELECT REMARKS FROM INS_ADVLOAN"), "NULL");
  desk.WillAnswer({Answer::Yes});
  Click(entry.cmdSave);
  EXPECT_EQ(Rows("SELECT REMARKS FROM INS_ADVLOAN"), "second thoughts");
  EXPECT_EQ(entry.txtSerialNo.Text(), "1");
  EXPECT_EQ(entry.fpgAdvLoan.activeRow, 0u);
  EXPECT_EQ(desk.TakeTexts(), (Texts{question, question, "Updated"}));
}

TEST_F(EntryScreen, ASeparateInterestNameOpensTheInterestOfTheLoan) {
  modAdvLoan& entry = EnterAdvance();
  Pick(entry.cmbALName, "Welfare Advance");
  EXPECT_TRUE(entry.txtInterestAmt.locked);
  EXPECT_EQ(entry.txtInterestAmt.backColour, kWindowColour);
  Type(entry.recovery.txtInstlAmt, "5000");
  std::string principal;
  session.doors.interestEditor.LeadTo([&](Session&, InstructionParent&) {
    principal = machine.settings.Get("Settings", "ICPrcpl");
    return std::make_unique<Screen>("modInterestMaster");
  });
  Click(entry.cmdSave);
  EXPECT_EQ(desk.ShownScreens(), Texts{"modInterestMaster"});
  EXPECT_EQ(principal, "10000.00");
  EXPECT_EQ(machine.settings.Get("Settings", "ICPrcpl"), "");
}

TEST_F(EntryScreen, WhatTheInterestEditorStoredStays) {
  company.Advance(17, 1, "Welfare Advance", 10000, "01/Sep/2026").With("INTAMT", 50.0);
  session.doors.interestEditor.LeadTo([&](Session&, InstructionParent&) {
    if (desk.ShownScreens().empty()) Run("UPDATE INS_ADVLOAN SET INTAMT = 300");  // not after the save again
    return std::make_unique<Screen>("modInterestMaster");
  });
  modAdvLoan& entry = OpenOnFirst(Advance);
  Type(entry.txtRemarks, "half typed");
  Click(entry.cmdIntrCalc);
  EXPECT_EQ(entry.txtInterestAmt.Text() + " " + entry.txtRemarks.Text(), "300.00 half typed");
  EXPECT_EQ(entry.Totals().interest, 300);
  Click(entry.cmdSave);
  EXPECT_EQ(Rows("SELECT INTAMT, REMARKS FROM INS_ADVLOAN"), "300|half typed");
}

// The grants stand there for the workstation PC1.
TEST_F(EntryScreen, TheRightsThatTheGuideOfServersTellsAreEnough) {
  if (!test::CompaniesAreOnServer()) GTEST_SKIP() << "a test of servers";
  const auto& server = *test::PrivateServer::Shared();
  const std::string database = ConnectionSetting(company.ConnectionString(), "Database");
  const std::string user = "ktl" + database;
  server.Run("CREATE USER " + user);
  std::ifstream guide(KTL_TEST_DATA "/../../docs/servers.md");
  int grants = 0;
  for (std::string line; std::getline(guide, line);)
    if (line.starts_with("    GRANT") && line.ends_with("TO 'ktl'@'%';"))
      server.Run(ReplaceAll(ReplaceAll(Trim(line), "payroll.", database + "."), "'ktl'@'%'", user)), ++grants;
  EXPECT_EQ(grants, 3);
  Run("UPDATE MAS_OPTSET SET CLASSSECURITYN = 1");
  Run("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 1");
  OpenConnection(session, ReplaceAll(company.ConnectionString(), "User ID=root", "User ID=" + user));
  PrepareWorkstationObjects(session);
  PrepareWorkstationObjects(session);
  LoadFeatureSet(session);
  EnterAdvance();
  EXPECT_EQ(Press(screen->cmdSave), Texts{"Updated"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_EMIDETAIL") + Rows("SELECT COUNT(*) FROM SEC_AUDITTRAIL"), "101");
  ClickRow(screen->fpgAdvLoan, 0);
  Press(screen->cmdDelete, {Answer::Yes});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
  session.Cn.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR = 24321");
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM SEC_MONTHLOCKHISTORY"), "1");
  EXPECT_THROW(session.Cn.Execute("DROP TABLE MAS_EMPLOYEE"), DatabaseError);
  server.Run("DROP USER " + user);
}

}  // namespace
}  // namespace ktl
