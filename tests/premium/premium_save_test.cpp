#include "database/drivers/sqlite_file.h"
#include "premium/premium_write.h"
#include "premium_fixture.h"

namespace ktl {
namespace {

// Each refusal in its order: what is mended behind one leads to the next.
TEST_F(PremiumScreen, ASaveIsRefusedInOrderAndWritesNothing) {
  Run("INSERT INTO MAS_INSTITUTION (INSTID, INSTNAME, TYPEID) VALUES (9, 'Konkan Life', 3);"
      "INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR) VALUES (17, 24320)");
  company.Lock(24319);
  modInsGInsSSS& entry = OpenOn(Insurance);
  const auto type = [](auto& control, std::string text) {
    return [&control, text = std::move(text)] { Type(control, text); };
  };
  const struct {
    std::function<void()> mend;
    const char* text;
    const Control* focus;
  } cases[] = {
      {type(entry.txtSerialNo, "0"), "Enter serial number.", &entry.txtSerialNo},
      {type(entry.txtSerialNo, "2147483648"), "Enter serial number.", &entry.txtSerialNo},
      {type(entry.txtSerialNo, "1"), "Specify the insurance name.", &entry.cmbPolicyName},
      {type(entry.cmbPolicyName, "O'Neill 100% [x]#$#"), "Select insurance Name.", &entry.cmbPolicyName},
      {type(entry.cmbPolicyName, "life cover"), "Specify the insurance number.", &entry.txtPolicyNo},
      {type(entry.txtPolicyNo, " P'1 "), "Specify 'Start Month'.", &entry.txtStartMonth},
      {type(entry.txtStartMonth, "13/2026"), "Specify 'Start Month'.", &entry.txtStartMonth},
      {type(entry.txtStartMonth, "Mar/2024"), "Given 'Start Month' cannot be before the 'Start Month' set.",
       &entry.txtStartMonth},
      {type(entry.txtStartMonth, "May/2024"), "Specify 'End Month'.", &entry.txtEndMonth},
      {type(entry.txtEndMonth, "Apr/2024"), "'Start Month' cannot be later than 'End Month'.",
       &entry.txtEndMonth},
      {type(entry.txtEndMonth, "Aug/2026"), "Specify insurance amount.", &entry.txtPolicyAmount},
      {type(entry.txtPolicyAmount, "10000000000"), "Amount should be less than 9,99,99,99,999.99",
       &entry.txtPolicyAmount},
      {type(entry.txtPolicyAmount, "9999999999.99"), "'Start Month' should be later than date of joining.",
       &entry.txtStartMonth},
      {type(entry.txtStartMonth, "Jul/2026"), "Select institution.", &entry.cmbInstitution},
      {type(entry.cmbInstitution, "Sahya"), "Select proper institution.", &entry.cmbInstitution},
      {type(entry.cmbInstitution, "Konkan Life"), "One or more month(s) locked.  Cannot save/update.",
       nullptr},
      {type(entry.txtStartMonth, "Aug/2026"), "Employee has been locked. Cannot Save/Update.", nullptr},
  };
  for (const auto& c : cases) {
    c.mend();
    EXPECT_EQ(Press(entry.cmdSave), Texts{c.text});
    EXPECT_TRUE(c.focus == nullptr || entry.Focus() == c.focus) << c.text;
  }
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_OTHER, INS_EMIDETAIL"), "0");
  EXPECT_EQ(Audits(), "");
  Run("DELETE FROM SEC_EMPLOCK");
  Type(entry.txtRemarks, std::string(4001, 'x'));
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Remarks should be within 4000 characters"});
  Type(entry.txtRemarks, "");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Updated"});
  // The name is spelled as the list has it.
  EXPECT_EQ(Rows("SELECT OTHNAME, OTHNO, STARTMY, ENDMY, PFYN FROM INS_OTHER"),
            "Life Cover|P'1|24320|24320|NULL");
  EXPECT_EQ(Schedule(), "24320|1|9999999999.99|9999999999.99|9");
  company.Name(3, "O'Neill 100% [x]#$#");
  ClickRow(entry.fpgOtherDetail, 0);
  Type(entry.cmbPolicyName, "o'NEILL 100% [x]#$#");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Updated"});
  EXPECT_EQ(Rows("SELECT OTHNAME FROM INS_OTHER"), "O'Neill 100% [x]#$#");
}

TEST_F(PremiumScreen, AnIncentiveAsksForPercentagesAndForNeitherNumberNorInstitution) {
  Run("INSERT INTO MAS_EMPLOYEEEXT (EMPID, ESIYN) VALUES (17, 1)");
  modInsGInsSSS& entry = Enter(Incentive, "Apr/2026", "Mar/2027", "4000");
  Tick(entry.incentive.chkPF, true);
  Tick(entry.incentive.chkESI, true);
  Tick(entry.incentive.chkPT, true);
  TextBox &pf = entry.incentive.txtPFPer, &esi = entry.incentive.txtESIPer;
  const struct {
    TextBox& box;
    const char* typed;
    const char* text;
  } cases[] = {{pf, "", "Specify PF contribution percentage."},
               {pf, "0", "Specify PF contribution percentage."},
               {pf, "100.01", "PF contribution not to be more than 100%."},
               {pf, "100", "Specify ESI contribution percentage."},
               {esi, "101", "ESI contribution not to be more than 100%."},
               {esi, "12.345", "Updated"}};
  Tick(entry.period.optYearly);
  Type(pf, std::string(309, '9'));
  EXPECT_EQ(desk.TakeTexts(), Texts{"Overflow"});
  for (const auto& c : cases) {
    Type(c.box, c.typed);
    EXPECT_EQ(Press(entry.cmdSave), Texts{c.text});
  }
  EXPECT_EQ(Rows("SELECT OTHNO, PFYN, PFPER, ESIYN, ESIPER, PTYN FROM INS_OTHER"), "NULL|1|100|1|12.35|1");
  // The step passes the end without reaching it.
  EXPECT_EQ(Schedule(), "24316|1|4000|4000|0");
  EXPECT_EQ(Audits(),
            "19|17|Standing Instructions - Periodic Incentive Created/Updated|:::SI Type = Periodic "
            "Incentive:SI Name = Diwali Incentive:Start Month = Apr/2026:End Month = Mar/2027:Amount/Month = "
            "4000.00:Remarks = :PF Enabled = Yes:PF Percentage = 100:ESI Enabled = Yes:ESI Percentage = "
            "12.35:PT Enabled = Yes");
  ClickRow(entry.fpgOtherDetail, 0);
  EXPECT_TRUE(entry.incentive.chkPF.Value() && entry.incentive.chkPT.Value());
  EXPECT_EQ(esi.Text(), "12.35");
  Tick(entry.incentive.chkPF, false);
  EXPECT_EQ(pf.Text(), "");
  EXPECT_FALSE(pf.enabled);
}

TEST_F(PremiumScreen, EveryPeriodHasItsMonths) {
  const struct {
    InstructionType type;
    OptionButton PeriodFrame::*period;
    const char *from, *to, *schedule;
  } cases[] = {
      {Insurance, &PeriodFrame::optYearly, "Apr/2026", "Apr/2026", "24316|1|500|500|4"},
      {Insurance, &PeriodFrame::optQuarterly, "Apr/2026", "Nov/2026",
       "24316|1|500|500|4\n24319|2|500|500|4\n24322|3|500|500|4"},
      {GroupInsurance, &PeriodFrame::optHalfYearly, "Jan/2026", "Jan/2027",
       "24313|1|500|500|8\n24319|2|500|500|8\n24325|3|500|500|8"},
      {Incentive, &PeriodFrame::optMonthly, "Dec/2026", "Jan/2027", "24324|1|500|500|0\n24325|2|500|500|0"},
  };
  for (const auto& c : cases) {
    Run("DELETE FROM INS_OTHER; DELETE FROM INS_EMIDETAIL");
    Enter(c.type, c.from, c.to, "500");
    Tick(screen->period.*c.period);
    EXPECT_EQ(Press(screen->cmdSave), Texts{"Updated"});
    EXPECT_EQ(Schedule(), c.schedule);
    // It is shown again where the schedule has a second month to tell it by.
    ClickRow(screen->fpgOtherDetail, 0);
    EXPECT_TRUE((screen->period.*c.period).Value() || screen->fpgEMI.rows.size() == 1);
  }
  // SSS has no choice of a period.
  Run("DELETE FROM INS_EMIDETAIL");
  Enter(Sss, "Apr/2026", "May/2026", "500");
  screen->period.optYearly.SetValue(true);
  Press(screen->cmdSave);
  EXPECT_EQ(Schedule(), "24316|1|500|500|7\n24317|2|500|500|7");
}

TEST_F(PremiumScreen, ASaveTellsTheAuditTheSalariesAndTheForm) {
  company.Salary(17, 24316, 0, 0);
  company.Salary(17, 24318, 0, 0);
  Run("INSERT INTO HVN_ATTENDANCE (EMPID, MONTHYEAR, UNITLOCKYN) VALUES (17, 24316, 0), (17, 24317, 1)");
  modInsGInsSSS& entry = Enter(Insurance, "4-2026", "5/2026", "1,234.5");
  Type(entry.txtRemarks, "for \"two\" months");
  EXPECT_EQ(entry.txtPolicyAmount.Text(), "1,234.50");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Updated"});
  EXPECT_EQ(Rows("SELECT MONTHYEAR FROM SLC_SALARYCALC_E WHERE EDITMODEYN = 1"), "24316");
  EXPECT_EQ(Rows("SELECT MONTHYEAR FROM HVN_ATTENDANCE WHERE EDITMODEYN = 1"), "24316");
  EXPECT_EQ(entry.txtSerialNo.Text() + entry.cmbPolicyName.Text() + entry.txtStartMonth.Text(), "2");
  EXPECT_EQ(entry.fpgOtherDetail.Text(0, PremiumGrid::kStartMonth), "Apr/2026");
  EXPECT_EQ(entry.overview.txtOthTotal.Text(), "2,469.00");
  EXPECT_EQ(Audits(),
            "19|17|Standing Instructions - Insurance Created/Updated|:::SI Type = Insurance:SI Name = Life "
            "Cover:Policy Number = P/1:Start Month = Apr/2026:End Month = May/2026:Amount/Month = "
            "1234.50:Institution = Sahyadri Life:Remarks = for two months");
  // An edit keeps the schedule, whatever its months and amount, and quotes what it changes.
  Run("DELETE FROM SEC_AUDITTRAIL");
  ClickRow(entry.fpgOtherDetail, 0);
  Type(entry.txtEndMonth, "Sep/2026");
  Type(entry.txtPolicyAmount, "77");
  Type(entry.txtRemarks, "");
  EXPECT_EQ(Press(entry.cmdSave), Texts{"Updated"});
  EXPECT_EQ(Schedule(), "24316|1|1234.5|1234.5|4\n24317|2|1234.5|1234.5|4");
  EXPECT_EQ(
      Audits(),
      "19|17|Standing Instructions - Insurance Created/Updated|:::SI Type = Insurance:SI Name = Life "
      "Cover:Policy Number = P/1:Start Month = Apr/2026:End Month = Sep/2026 (May/2026):Remarks =  (for "
      "two months)");
}

TEST_F(PremiumScreen, TaxFlagsAreMarkedBeforeTheLastChecks) {
  for (const auto& [type, flags] : {std::pair{Insurance, "17|2026|1|0"},
                                    {Sss, "17|2026|1|0"},
                                    {GroupInsurance, "17|2026|1|0"},
                                    {Incentive, "17|2026|0|1"}}) {
    Run("DELETE FROM INC_PORTEDSTAT");
    Enter(type, "Apr/2026", "Mar/2027", "500");
    Type(screen->txtPolicyAmount, "0");
    EXPECT_EQ(Press(screen->cmdSave).size(), 1u);
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM INC_PORTEDSTAT"), "0");
    company.Lock(24327);
    Type(screen->txtPolicyAmount, "500");
    EXPECT_EQ(Press(screen->cmdSave), Texts{"One or more month(s) locked.  Cannot save/update."});
    Run("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
    EXPECT_EQ(Rows("SELECT EMPID, FINYEAR, INSURANCEYN, INSOTHERYN FROM INC_PORTEDSTAT"), flags);
  }
}

TEST_F(PremiumScreen, OnlyTheMonthOfJoiningAndLeavingCounts) {
  const struct {
    const char *employee, *month, *text;
  } cases[] = {{"Asha Rao", "May/2024", "'Start Month' should be later than date of joining."},
               {"Asha Rao", "Jun/2024", "Updated"},
               {"Binod Sen", "Sep/2026", "'Start Month' should be before date of leaving."},
               {"Binod Sen", "Aug/2026", "Updated"}};
  OpenOn(Insurance);
  for (const auto& c : cases) {
    Pick(screen->employee.cmbEmpName, c.employee);
    EnterInto(*screen, c.month, "Mar/2027", "500");
    EXPECT_EQ(Press(screen->cmdSave), Texts{c.text});
  }
}

// The first statement of a save fails by a value that its column does not take, then the last one: nothing
// of it stays.
TEST_F(PremiumScreen, AFailureTakesTheWholeSaveBack) {
  OpenSqliteFile(company.File(), FileKind::Company, 1)
      .RunScript("ALTER TABLE INS_OTHER DROP COLUMN OTHNO; ALTER TABLE INS_OTHER ADD COLUMN OTHNO INTEGER");
  Enter(Insurance, "Apr/2026", "Jun/2026", "500");
  EXPECT_EQ(Press(screen->cmdSave), Texts{"Specified amount is too large."});
  Type(screen->txtPolicyNo, "1");
  Run("DROP TABLE SLC_SALARYCALC_E");
  EXPECT_EQ(Press(screen->cmdSave), Texts{"no such table: SLC_SALARYCALC_E"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_OTHER") + Schedule() + Audits(), "0");
  EXPECT_FALSE(session.Cn.InTransaction());
  EXPECT_EQ(screen->txtPolicyNo.Text(), "1");  // and what was typed stays
}

TEST_F(PremiumScreen, AnotherSerialNumberTakesWhatIsTypedUntilItIsThatOfAStoredOne) {
  Stored(Insurance, 3, 2);
  modInsGInsSSS& entry = Enter(Insurance, "Apr/2026", "Jun/2026", "500");
  EXPECT_EQ(entry.txtSerialNo.Text(), "4");
  Type(entry.txtSerialNo, "2");
  EXPECT_EQ(entry.txtPolicyNo.Text(), "P/1");
  Type(entry.txtSerialNo, "3");
  EXPECT_EQ(entry.txtPolicyNo.Text() + entry.cmbInstitution.Text() + entry.txtEndMonth.Text(),
            "P/3Sahyadri LifeMay/2026");
  EXPECT_EQ(entry.fpgEMI.rows.size(), 2u);
  EXPECT_NE(entry.txtPolicyAmount.toolTip, "");
  Type(entry.txtSerialNo, "5");
  EXPECT_EQ(entry.txtPolicyNo.Text() + entry.txtPolicyAmount.toolTip, "");
  EXPECT_EQ(entry.fpgEMI.rows.size(), 0u);
}

}  // namespace
}  // namespace ktl
