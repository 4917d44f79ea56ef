#include "premium/modInsGInsSSS.h"

#include <random>

#include "common/amounts.h"
#include "common/month_year.h"
#include "premium/premium_write.h"
#include "premium_fixture.h"

namespace ktl {
namespace {

TEST_F(PremiumScreen, TypesDifferInWhatTheyShow) {
  const struct {
    InstructionType type;
    bool period, allot, policy;
    const char *total, *caption, *report;
  } cases[] = {
      {Insurance, true, false, true, "Total Premium", "Insurance", "1523#False#0#0"},
      {Sss, false, false, true, "Total \r\nSSS", "SSS", "1524#False#0#0"},
      {GroupInsurance, true, true, true, "Total Premium", "Group Insurance", "1525#False#0#0"},
      {Incentive, true, true, false, "Total \r\nPay Extra", "Pay Extra", "1527#False#0#0"},
  };
  // The company's own word; an empty one gives way to the default.
  Run("UPDATE MAS_PULLDOWNVALUES SET PDLISTDESC = 'Pay Extra' WHERE REFID = 5 AND PDID = 7;"
      "UPDATE MAS_PULLDOWNVALUES SET PDLISTDESC = '' WHERE REFID = 5 AND PDID = 4");
  for (const auto& c : cases) {
    modInsGInsSSS& entry = Open(c.type);
    EXPECT_EQ(entry.caption, c.caption);
    EXPECT_EQ(entry.period.fmePeriod.visible, c.period);
    EXPECT_EQ(entry.cmdMultiAllot.enabled, c.allot);
    for (const Control* control :
         std::initializer_list<const Control*>{&entry.lblPolicyNo, &entry.txtPolicyNo, &entry.lblInstitution,
                                               &entry.cmbInstitution, &entry.cmdInstitution})
      EXPECT_EQ(control->IsShown(), c.policy) << control->name();
    EXPECT_NE(entry.incentive.chkPF.IsShown(), c.policy);
    for (const auto column : {PremiumGrid::kPf, PremiumGrid::kEsiPercent, PremiumGrid::kPt})
      EXPECT_EQ(entry.fpgOtherDetail.columns[column].hidden, c.policy);
    EXPECT_EQ(entry.overview.lblOthTotal.caption, c.total);
    EXPECT_EQ(entry.fpgOtherDetail.columns[PremiumGrid::kNumber].caption, c.caption + std::string(" No."));
    Click(entry.cmdReport);
    EXPECT_EQ(machine.siblings.started.back().arguments, c.report);
  }
}

TEST_F(PremiumScreen, WhoIsInAFundMayCountForIt) {
  const struct {
    const char* rows;
    bool pf, esi, pt;
  } cases[] = {
      {"UPDATE MAS_EMPLOYEE SET PFYN = 0, PTZEROYN = 1", false, false, false},
      {"INSERT INTO MAS_EMPLOYEEEXT (EMPID, PFYN) VALUES (17, 0), (17, 1), (18, 1)", true, false, false},
      {"UPDATE MAS_EMPLOYEE SET ESIYN = 1, PTZEROYN = 0", true, true, true},
  };
  for (const auto& c : cases) {
    Run(c.rows);
    const IncentiveFrame& funds = OpenOn(Incentive).incentive;
    EXPECT_TRUE(funds.chkPF.enabled == c.pf && funds.txtPFPer.enabled == c.pf) << c.rows;
    EXPECT_TRUE(funds.chkESI.enabled == c.esi && funds.txtESIPer.enabled == c.esi) << c.rows;
    EXPECT_EQ(funds.chkPT.enabled, c.pt) << c.rows;
  }
}

TEST_F(PremiumScreen, ALockedEmployeeIsToldAndNotAskedAbout) {
  Run("UPDATE MAS_EMPLOYEE SET lockyn = 1 WHERE EMPID = 18");
  modInsGInsSSS& entry = OpenOn(GroupInsurance, "Binod Sen");
  EXPECT_EQ(entry.employee.lblEmpName.caption, " Employee Left ");
  EXPECT_EQ(entry.cmdSave.whyDisabled, "The employee is locked.");
  Type(entry.txtRemarks, "half typed");
  EXPECT_EQ(Press(entry.cmdNew), Texts{});  // what cannot be saved is not asked about
  Pick(entry.employee.cmbEmpName, "Asha Rao");
  EXPECT_TRUE(entry.cmdSave.enabled);
  session.ReadOnlyUser = true;
  EXPECT_FALSE(OpenOn(GroupInsurance).cmdMultiAllot.enabled);
}

TEST_F(PremiumScreen, AGroupWithoutTheRightIsRefusedEveryButton) {
  session.MultiLoginYN = true;
  Run("INSERT INTO SEC_USERLIST (UserID, USERNAME, GROUPID) VALUES (2, 'RAVI', 7)");
  for (int button = 249; button < 300; ++button)
    company.Row("SEC_BUTPER").With("BUTID", button).With("GROUPID", 7).With("BUTALLOWYN", 0);
  Stored(GroupInsurance, 1, 2);
  modInsGInsSSS& entry = OpenOnFirst(GroupInsurance);
  for (Button* button : {&entry.cmdMaster, &entry.cmdInstitution, &entry.cmdSave, &entry.cmdDelete,
                         &entry.cmdMonthly, &entry.cmdMultiAllot, &entry.cmdEMIDelete, &entry.cmdEmiDet})
    EXPECT_EQ(Press(*button), Texts{"Permission denied."}) << button->name();
  Type(entry.txtRemarks, "half typed");
  EXPECT_EQ(Press(entry.cmdNew, {Answer::Yes}).back(), "Permission denied.");
  EXPECT_EQ(entry.txtRemarks.Text(), "half typed");
  entry.cmdFmeFormula.tag = entry.cmdReport.tag = entry.formula.cmdAccept.tag = "1NA";
  for (Button* button : {&entry.cmdFmeFormula, &entry.cmdReport})
    EXPECT_EQ(Press(*button), Texts{"Permission denied."}) << button->name();
  entry.formula.Show(true);
  EXPECT_EQ(Press(entry.formula.cmdAccept), Texts{"Permission denied."});
}

TEST_F(PremiumScreen, WhatIsTypedIsAskedAboutBeforeItGoes) {
  const std::string question = "Do you want to Save entered details?";
  modInsGInsSSS& entry = OpenOn(Insurance);
  EXPECT_EQ(Press(entry.cmdNew), Texts{});
  EnterInto(entry, "Apr/2026", "May/2026", "500");
  EXPECT_EQ(Press(entry.cmdNew, {Answer::Cancel}), Texts{question});
  EXPECT_EQ(entry.txtPolicyNo.Text(), "P/1");
  EXPECT_EQ(Press(entry.cmdNew, {Answer::Yes}), (Texts{question, "Updated"}));
  EXPECT_EQ(entry.txtSerialNo.Text(), "2");
  Tick(entry.period.optYearly);
  EXPECT_EQ(Press(entry.cmdNew, {Answer::No}), Texts{question});
  EXPECT_TRUE(entry.period.optMonthly.Value());
  Type(entry.txtPolicyNo, "P/2");
  EXPECT_EQ(Press(entry.cmdClose, {Answer::Yes}), (Texts{question, "Specify the insurance name."}));
  EXPECT_FALSE(entry.IsUnloaded());
  Type(entry.employee.cmbEmpName, "");
  EXPECT_FALSE(entry.txtPolicyNo.IsUsable() || entry.cmbPolicyName.IsUsable());
  EXPECT_EQ(Press(entry.cmdNew), Texts{"Select employee."});
  EXPECT_EQ(Press(entry.cmdClose), Texts{});
  EXPECT_TRUE(entry.IsUnloaded());
  EXPECT_EQ(machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "0");
}

TEST_F(PremiumScreen, PaidMonthsAndTotalsComeFromTheTypesColumn) {
  Stored(Insurance, 1, 4);
  Run("UPDATE INS_EMIDETAIL SET EMIAMT = 0 WHERE COUNTER = 3;"  // stays while something is left of it
      "UPDATE INS_EMIDETAIL SET EMIAMT = 0, MDFYAMT = 0 WHERE COUNTER = 4");
  for (const int month : {24316, 24317}) company.Salary(17, month, 0, 0);
  Run("UPDATE SLC_SALARYCALC_D SET SSS = 900, INSURANCE = CASE WHEN SALID = (SELECT MIN(SALID) FROM "
      "SLC_SALARYCALC_E) THEN 500 ELSE -1 END");
  modInsGInsSSS& entry = OpenOnFirst(Insurance);
  EXPECT_EQ(entry.fpgEMI.rows.size(), 3u);
  EXPECT_EQ(entry.RecoveredMonths(), std::set<long>{24316});
  EXPECT_EQ(entry.fpgEMI.At(0, PremiumScheduleGrid::kMonth).backColour, kPaymentDoneColour);
  EXPECT_EQ(entry.overview.txtOthTotal.Text() + "|" + entry.overview.txtTotalDedSalary.Text() + "|" +
                entry.overview.txtTotalDue.Text(),
            "1,500.00|499.00|1,001.00");
  EXPECT_EQ(entry.Subject().amounts, "1,500.00, due 1,000.00");
  OpenOn(GroupInsurance);
  EXPECT_EQ(screen->overview.txtTotalDue.Text(), "0.00");
}

TEST_F(PremiumScreen, ADeleteAsksAndTakesTheInstructionWithItsSchedule) {
  modInsGInsSSS& entry = OpenOn(Insurance);
  EXPECT_EQ(Press(entry.cmdDelete), Texts{"No records to delete."});
  for (const long serial : {1, 2}) Stored(Insurance, serial, 3);
  Stored(Sss, 1, 1);
  OpenOn(Insurance);
  EXPECT_EQ(Press(screen->cmdDelete), Texts{"Select Insurance record to delete."});
  EXPECT_EQ(Press(screen->cmdEmiDet), Texts{"Select a Insurance record."});
  OpenOnFirst(Insurance);
  const std::string question = "Delete selected Insurance?";
  EXPECT_EQ(Press(screen->cmdDelete), Texts{question});  // No is the default
  for (const int month : {24316, 24318}) company.Lock(month);
  EXPECT_EQ(Press(screen->cmdDelete, {Answer::Yes}),
            (Texts{question,
                   "Apr/2026, Jun/2026 of the EMI month(s) has/have been locked.\r\nDelete these EMI(s) to "
                   "delete the selected Insurance.\r\nUnlock the month(s)"}));
  EXPECT_TRUE(screen->fpgEMI.IsTicked(0, 0) && !screen->fpgEMI.IsTicked(1, 0) &&
              screen->fpgEMI.IsTicked(2, 0));
  Run("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0; INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR) VALUES (17, 24317)");
  EXPECT_EQ(Press(screen->cmdDelete, {Answer::Yes}).back(),
            "Emloyee has been locked one of the EMI month(s). Cannot Delete");
  EXPECT_EQ(Rows("SELECT COUNT(*), SUM(EMIAMT) FROM INS_EMIDETAIL"), "7|3500");
  Run("DELETE FROM SEC_EMPLOCK");
  company.Salary(17, 24318, 0, 0);
  const std::string log = folder.path() / "log";
  session.Cn.SetStatementLog(log);
  EXPECT_EQ(Press(screen->cmdDelete, {Answer::Yes}), Texts{question});
  std::string statements = ReadAll(log);
  for (const char* next :
       {"Update INS_EMIDETAIL Set EMIAMT = 0 Where", "Update SLC_SALARYCALC_E", "UPDATE  HVN_ATTENDANCE",
        "Delete From INS_EMIDETAIL", "Delete From INS_OTHER", "INC_PORTEDSTAT", "UpdateAuditTrail"}) {
    ASSERT_NE(statements.find(next), std::string::npos) << next;
    statements.erase(0, statements.find(next));
  }
  EXPECT_EQ(
      Rows("SELECT SITYPE, SERIALNO, COUNT(*), SUM(EMIAMT) FROM INS_EMIDETAIL GROUP BY SITYPE, SERIALNO"),
      "3|2|3|1500\n4|1|1|500");
  EXPECT_EQ(Rows("SELECT SITYPE, SERIALNO FROM INS_OTHER ORDER BY SITYPE"), "3|2\n4|1");
  EXPECT_EQ(Rows("SELECT EDITMODEYN FROM SLC_SALARYCALC_E"), "1");
  EXPECT_EQ(Rows("SELECT EMPID, FINYEAR, INSURANCEYN FROM INC_PORTEDSTAT"), "17|2026|1");
  EXPECT_EQ(screen->txtSerialNo.Text() + screen->cmbPolicyName.Text(), "3");
  EXPECT_EQ(Audits(),
            "19|17|Standing Instructions - Insurance Deleted|:::SI Type = Insurance:SI Name = Life "
            "Cover:Policy Number = P/1:Start Month = Apr/2026:End Month = Jun/2026:Amount/Month = "
            "500.00:Institution = Sahyadri Life:Remarks = :PF Enabled = No:PF Percentage = 0:ESI Enabled = "
            "No:ESI Percentage = 0:PT Enabled = No");
}

TEST_F(PremiumScreen, LockedMonthsStayWhenPaymentsAreDeleted) {
  Stored(Incentive, 1, 5);
  modInsGInsSSS& entry = OpenOnFirst(Incentive);
  const std::string question = "Do you want to delete selected Periodic Incentive payment detail?";
  EXPECT_EQ(Press(entry.cmdEMIDelete), Texts{"Select payment to delete."});
  Tick(entry.chkSelectAll, true);
  EXPECT_EQ(Press(entry.cmdEMIDelete), Texts{question});
  company.Lock(24316);
  company.Lock(24318);
  Run("INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR) VALUES (17, 24319);"
      "UPDATE INS_EMIDETAIL SET MDFYAMT = 450 WHERE COUNTER = 2");
  company.Salary(17, 24317, 0, 0);
  company.Salary(17, 24318, 0, 0);
  ClickRow(entry.fpgOtherDetail, 0);
  Tick(entry.chkSelectAll, true);
  EXPECT_EQ(Press(entry.cmdEMIDelete, {Answer::Yes}),
            (Texts{question, "Employee has been locked. Cannot Delete.",
                   "Apr/2026, Jun/2026 month(s) are locked.\r\nEMI details for these months will not be "
                   "deleted."}));
  EXPECT_EQ(Rows("SELECT COUNTER FROM INS_EMIDETAIL"), "1\n3\n4\n5");
  EXPECT_EQ(Rows("SELECT MONTHYEAR FROM SLC_SALARYCALC_E WHERE EDITMODEYN = 1"), "24317");
  EXPECT_EQ(Audits(),
            "19|17|Standing Instructions - Periodic Incentive EMIs Deleted|:::SI Type = Periodic "
            "Incentive:Serial No. = 1::Month/Year = May/2026:EMI Amount = 450.00");
  // Nothing went, nothing is told to the audit.
  TickMonths({0});
  EXPECT_EQ(Press(entry.cmdEMIDelete, {Answer::Yes}).size(), 2u);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM SEC_AUDITTRAIL"), "1");
}

TEST_F(PremiumScreen, TheFormulaIsEvaluatedForTheChosenMonth) {
  company.Row("MAS_FORMULA").With("FORMULAID", 1).With("FORMULANAME", "Tenfold").With("FORMULA", "250 * 10");
  company.Row("MAS_FORMULA")
      .With("FORMULAID", 2)
      .With("FORMULANAME", "Rank")
      .With("FORMULA", "KLIF(EmpDet{Grade} = \"G1\", 1, 2)");
  Run("INSERT INTO MAS_BRANCH (BRANCHID, BRANCHNAME) VALUES (1, 'B');"
      "INSERT INTO MAS_ATTHEAD (ATTHEADID, ATTHEADNAME) VALUES (1, 'A');"
      "INSERT INTO MAS_SALSTRUCT (STRUCTID, STRUCTDESC) VALUES (1, 'S')");
  // The row of the higher number counts, though it is the older one.
  Run("INSERT INTO MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, GRADE, BRANCHID, ATTHEADID, STRUCTID) "
      "VALUES (2, 17, '01/Feb/2026', 'G1', 1, 1, 1), (1, 17, '01/Mar/2026', 'G2', 1, 1, 1)");
  modInsGInsSSS& entry = OpenOn(Insurance);
  Click(entry.cmdFmeFormula);
  EXPECT_FALSE(entry.txtStartMonth.IsUsable());
  FormulaFrame& frame = entry.formula;
  EXPECT_EQ(Press(frame.cmdAccept), Texts{"Enter Start Month"});
  Tick(entry.formula.optEndMonth);
  EXPECT_EQ(Press(frame.cmdAccept), Texts{"Enter End Month"});
  Type(entry.txtStartMonth, "Jan/2026");
  Type(entry.txtEndMonth, "Sep/2026");
  EXPECT_EQ(Press(frame.cmdAccept, {Answer::No}), Texts{"Continue without selecting a 'Formula'?"});
  EXPECT_TRUE(frame.fmeFormula.visible);
  Type(frame.cmbFormula, "Steep");
  EXPECT_EQ(Press(frame.cmdAccept), Texts{"Select proper 'Formula'."});
  Pick(frame.cmbFormula, "Tenfold");
  EXPECT_EQ(Press(frame.cmdAccept), Texts{});
  EXPECT_EQ(entry.txtPolicyAmount.Text(), "2,500.00");
  EXPECT_FALSE(frame.fmeFormula.visible);
  Click(entry.cmdFmeFormula);
  Pick(frame.cmbFormula, "Rank");
  Click(frame.cmdAccept);
  EXPECT_EQ(entry.txtPolicyAmount.Text(), "1.00");
  // No row is in effect in January: the amount stays.
  Type(entry.txtPolicyAmount, "7");
  Click(entry.cmdFmeFormula);
  Tick(entry.formula.optStartMonth);
  Click(frame.cmdAccept);
  EXPECT_EQ(entry.txtPolicyAmount.Text(), "7.00");
  Click(entry.cmdFmeFormula);
  Type(frame.cmbFormula, "");
  EXPECT_EQ(Press(frame.cmdAccept, {Answer::Yes}).size(), 1u);
  EXPECT_FALSE(frame.fmeFormula.visible);
  Click(entry.cmdFmeFormula);
  Click(frame.cmdFrmlaClose);
  EXPECT_TRUE(entry.txtStartMonth.IsUsable());
  Click(entry.cmdFmeFormula);
  Press(entry.cmdNew, {Answer::No});
  EXPECT_TRUE(entry.txtStartMonth.IsUsable());
}

TEST_F(PremiumScreen, DoorsGetWhatTheyNeed) {
  Stored(GroupInsurance, 1, 2);
  modInsGInsSSS& entry = OpenOnFirst(GroupInsurance);
  session.doors.multipleAllotment.LeadTo([&](Session&, InstructionType type) {
    EXPECT_EQ(type, GroupInsurance);
    machine.settings.Set("ExeTalk", "HWNDKTLStIns", "1");
    Stored(GroupInsurance, 2, 1);
    return std::make_unique<Screen>("modMultiAllot");
  });
  Click(entry.cmdMultiAllot);
  EXPECT_EQ(machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "4711");
  EXPECT_EQ(entry.fpgOtherDetail.rows.size(), 2u);
  session.doors.emiEditor.LeadTo([&](Session&, InstructionParent& parent) {
    EXPECT_EQ(parent.Key(), (InstructionKey{17, GroupInsurance, 1}));
    EXPECT_EQ(parent.InstructionName() + std::to_string(parent.FnLngGetCounter()), "Group Cover3");
    Run("UPDATE INS_EMIDETAIL SET MDFYAMT = 600 WHERE SERIALNO = 1 AND COUNTER = 2");
    return std::make_unique<Screen>("modEMIDet");
  });
  Click(entry.cmdEmiDet);
  EXPECT_EQ(entry.overview.txtOthTotal.Text(), "1,600.00");
  session.doors.monthView.LeadTo([&](Session&, const MonthViewRequest& request) {
    EXPECT_TRUE(request.employee == 17 && request.type == GroupInsurance && request.lists == &entry);
    return std::make_unique<Screen>("modEMIEmp");
  });
  Click(entry.cmdMonthly);
  Click(entry.overview.lblSummary);
  EXPECT_EQ(machine.siblings.started.back().program + machine.settings.Get("Settings", "EMPSUMMRY"),
            "KTLFFS17");
}

TEST_F(PremiumScreen, TwoWorkstationsNeitherTakeNorOverwriteEachOthersRows) {
  Enter(Insurance, "Apr/2026", "Apr/2026", "500");
  Workstation second(company);
  second.MakeLocalStore();
  modInsGInsSSS& late = second.Open<modInsGInsSSS>(Insurance);
  Pick(late.employee.cmbEmpName, "Asha Rao");
  EnterInto(late, "May/2026", "Jun/2026", "0");
  Click(screen->cmdSave);
  EXPECT_EQ(second.Press(late.cmdSave), Texts{"Specify insurance amount."});  // a new one all the same
  Type(late.txtPolicyAmount, "70");
  Click(late.cmdSave);
  EXPECT_EQ(Rows("SELECT SERIALNO, COUNTER, MDFYAMT FROM INS_EMIDETAIL ORDER BY SERIALNO, COUNTER"),
            "1|1|500\n2|1|70\n2|2|70");
  const auto refused = [&](Button& button, std::vector<Answer> answers = {}) {
    second.desk.TakeTexts();
    return second.Press(button, std::move(answers)).back() == kRowGoneText;
  };
  ClickRow(late.fpgOtherDetail, 1);
  Type(late.txtRemarks, "mine");
  Run("UPDATE INS_OTHER SET REMARKS = 'first' WHERE SERIALNO = 2");
  EXPECT_TRUE(refused(late.cmdSave));
  EXPECT_EQ(late.txtRemarks.Text(), "first");
  TickCell(late.fpgEMI, 0, PremiumScheduleGrid::kTick, true);
  Run("UPDATE INS_EMIDETAIL SET MDFYAMT = 71 WHERE SERIALNO = 2 AND COUNTER = 1");
  EXPECT_TRUE(refused(late.cmdEMIDelete, {Answer::Yes}));
  EXPECT_EQ(late.fpgEMI.Text(0, PremiumScheduleGrid::kModifiedAmount), "71.00");
  Run("UPDATE INS_EMIDETAIL SET MDFYAMT = 72 WHERE SERIALNO = 2 AND COUNTER = 1");
  EXPECT_TRUE(refused(late.cmdDelete, {Answer::Yes}));
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_OTHER"), "2");
  EXPECT_FALSE(refused(late.cmdDelete, {Answer::Yes}));
}

// Whatever is entered, changed and deleted: what it is not about stays as it is, no month is without its
// instruction, and the overview's sum is that of the lists.
TEST_F(PremiumScreen, RandomActsTouchOneInstructionAndLeaveNoOrphans) {
  std::minstd_rand dice(20261015);
  const auto roll = [&dice](unsigned below) { return dice() % below; };
  const auto others = [&](long serial) {
    const std::string where =
        " WHERE NOT (EMPID = 17 AND SITYPE = 3 AND SERIALNO = " + std::to_string(serial);
    return Rows("SELECT * FROM INS_OTHER" + where + ") ORDER BY SITYPE, SERIALNO") +
           Rows("SELECT * FROM INS_EMIDETAIL" + where + ") ORDER BY SITYPE, SERIALNO, COUNTER");
  };
  Stored(Sss, 1, 3);
  Stored(Insurance, 1, 3);
  modInsGInsSSS& entry = OpenOn(Insurance);
  for (int act = 0; act < 60; ++act) {
    const std::size_t listed = entry.fpgOtherDetail.rows.size();
    const bool pick = listed > 0 && roll(3) != 0;
    if (pick)
      ClickRow(entry.fpgOtherDetail, roll(static_cast<unsigned>(listed)));
    else
      Press(entry.cmdNew, {Answer::No});
    const long serial = entry.Key().serial;
    const std::string before = others(serial);
    const long first = 24316 + static_cast<long>(roll(8)), last = first + static_cast<long>(roll(5));
    if (!pick || roll(3) == 0) {
      EnterInto(entry, FnStrFormatMonthYear(first).c_str(), FnStrFormatMonthYear(last).c_str(), "125.25");
      EXPECT_EQ(Press(entry.cmdSave).back(), "Updated");
    } else if (roll(2) == 0) {
      Tick(entry.chkSelectAll, true);
      Press(entry.cmdEMIDelete, {Answer::Yes});
    } else {
      Press(entry.cmdDelete, {Answer::Yes});
    }
    desk.TakeTexts();
    EXPECT_EQ(others(serial), before);
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_EMIDETAIL E WHERE NOT EXISTS (SELECT * FROM INS_OTHER O WHERE "
                   "O.EMPID = E.EMPID AND O.SITYPE = E.SITYPE AND O.SERIALNO = E.SERIALNO)"),
              "0");
    EXPECT_EQ(clsGenCmn::FnDblTrimVal(entry.overview.txtOthTotal.Text()),
              company.One("SELECT ISNULL(SUM(MDFYAMT), 0) FROM INS_EMIDETAIL WHERE SITYPE = 3").ToDouble());
  }
}

}  // namespace
}  // namespace ktl
