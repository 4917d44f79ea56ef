#include <fmt/format.h>

#include <random>

#include "recovery/modSIDetails.h"
#include "recovery_fixture.h"

namespace ktl {
namespace {

constexpr const char* kAskAdjust =
    "Recoveries set after 'Date of Leaving' will be adjusted for selected records.\r\nDo you want to continue?";
constexpr const char* kAskClear =
    "Recoveries set after 'Date of Leaving' will be cleared for selected records.\r\nDo you want to continue?";

// Employee 17 left in Jun/2024; the salaries of Apr and May have taken what was due.
class Leaving : public RecoveryTest {
 protected:
  Leaving() {
    company.Execute("DELETE FROM SLC_SALARYCALC_D");
    company.Execute("DELETE FROM SLC_SALARYCALC_E");
    company.Execute("UPDATE MAS_EMPLOYEE SET DOL = '15/Jun/2024'");
    for (int month = kApr2024; month < kApr2024 + 6; ++month)
      company.Salary(17, month, 0, 0, month < kApr2024 + 2 ? 1000 : 0, month < kApr2024 + 2 ? 1000 : 0);
  }
  modSIDetails& Pending(long employee = 17) {
    modSIDetails& pending = Workstation::Open<modSIDetails>(employee);
    Tick(pending.chkSelectAll, true);
    return pending;
  }
  // "6000.00 2000.00 4000.00": total, recovered and balance of each row.
  static std::string Figures(const modSIDetails& pending) {
    std::string text;
    for (const GridRow& row : pending.fpgGrid.rows) {
      for (std::size_t column = modSIDetails::kTotal; column <= modSIDetails::kBalance; ++column)
        text += row.cells[column].text + " ";
    }
    return text;
  }
  void Press(Button& button, std::vector<Answer> answers = {Answer::Yes}) {
    desk.WillAnswer(std::move(answers));
    Click(button);
  }
};

TEST_F(Leaving, FoldsIntoTheLeavingMonthOrGivesUp) {
  Instruction(InstructionType::Advance, {1000, 1000, 1000, 1000, 1000, 1000});
  Press(Pending().cmdClear);
  EXPECT_EQ(Amounts(), "1000 1000 1000 0 0 0");
  EXPECT_EQ(Flagged(), "");
  company.Execute("UPDATE INS_EMIDETAIL SET MDFYAMT = 1000");
  modSIDetails& pending = Pending();
  EXPECT_EQ(pending.lblIDRef.caption + pending.lblEmpName.caption + pending.lblDOLVal.caption,
            "K17Asha Rao15/Jun/2024");
  EXPECT_EQ(Figures(pending), "6000.00 2000.00 4000.00 ");
  Press(pending.cmdAdjust, {Answer::No});
  EXPECT_EQ(Amounts(), "1000 1000 1000 1000 1000 1000");
  Press(pending.cmdAdjust);
  EXPECT_EQ(Amounts(), "1000 1000 4000 0 0 0");
  EXPECT_EQ(Flagged(), "2");
  EXPECT_EQ(desk.TakeTexts(), (Texts{kAskClear, kAskAdjust, kAskAdjust}));
  EXPECT_EQ(
      LastAudit(),
      "19|17|Standing Instructions - Advance Cleared Pending EMIs|Advance Cleared Pending EMIs:::SI Type "
      "= Advance:SI Name = Car Loan:Deleted Records = From Month/Year >= Jun/2024");
  EXPECT_EQ(Figures(pending), "6000.00 2000.00 4000.00 ");
  EXPECT_FALSE(pending.chkSelectAll.Value());
  EXPECT_EQ(pending.fpgGrid.Text(0, modSIDetails::kTick), "0");
}

TEST_F(Leaving, ListsWhatIsPendingOfEveryTypeButIncentives) {
  company.Loan(17, 1, "Loan", 100);
  company.Emi(17, 2, 1, 1, kApr2024, 1000).With("EMIRECVYN", 1);  // by salary and by hand: it counts twice
  company.Emi(17, 2, 1, 2, kApr2024 + 3, 1500);
  company.Loan(17, 2, "Settled", 100);
  company.Emi(17, 2, 2, 1, kApr2024, 1000);
  for (const int type : {3, 4, 5, 7}) {
    company.Row("INS_OTHER").With("EMPID", 17).With("SERIALNO", 1).With("SITYPE", type).With("OTHNAME", "O");
    company.Emi(17, type, 1, 1, kApr2024 + 3, 10 * type);
  }
  const modSIDetails& pending = Pending();
  EXPECT_EQ(Figures(pending), "50.00 0.00 50.00 30.00 0.00 30.00 2500.00 2000.00 500.00 40.00 0.00 40.00 ");
  company.Execute("DELETE FROM INS_EMIDETAIL WHERE SITYPE < 4");
  Press(Pending().cmdAdjust);  // no row in the leaving month: given up
  EXPECT_EQ(company.Rows("SELECT SITYPE, MDFYAMT, MDFPRNAMT, MDFINTAMT FROM INS_EMIDETAIL ORDER BY SITYPE"),
            "4|0|0|0\n5|0|0|0\n7|70|NULL|NULL");
}

// A salary month may end on another day than the calendar's; the range decides whatever CALCINMIDYN is.
TEST_F(Leaving, TheLeavingMonthIsThatOfTheSalaryRange) {
  company.Row("MAS_MONTHSALDATE")
      .With("MONTHYEAR", kApr2024 + 3)
      .With("CALCSTARTDATE", "11/Jun/2024")
      .With("CALCENDDATE", "10/Jul/2024");
  Reducing({100, 100, 100, 100, 100}, 10);
  company.Name(2, "Car Loan").Reducing();
  TakeComponentsAway();
  Press(Pending().cmdAdjust);
  EXPECT_EQ(Amounts(), "110 110 110 220 0");
  EXPECT_EQ(Amounts("MDFPRNAMT"), "100 100 100 200 0");
  EXPECT_EQ(Amounts("MDFINTAMT"), "10 10 10 20 0");
}

TEST_F(Leaving, RefusesAndWritesNothing) {
  constexpr const char* kGone =
      "Row cannot be located for updating. Some values may have been changed since it was last read. : "
      "-2147217864";
  const struct {
    bool shown;  // before the change
    const char* change;
    const char* text;
  } cases[] = {
      {true, "UPDATE INS_EMIDETAIL SET MDFYAMT = 900 WHERE COUNTER = 4", kGone},
      {true, "UPDATE MAS_EMPLOYEE SET DOL = '15/May/2024'", kGone},
      {true, "UPDATE MAS_EMPLOYEE SET lockyn = 1", kGone},
      {true, "DELETE FROM INS_EMIDETAIL", kGone},
      {false, "UPDATE MAS_EMPLOYEE SET DOL = NULL", "Type mismatch : 13"},
      {false, "UPDATE MAS_EMPLOYEE SET DOL = '31/Mar/2024'",
       "Given date cannot be before the 'Start Month' set."},
      {true, "DROP TABLE SEC_AUDITTRAIL", "no such table: SEC_AUDITTRAIL : -2147217865"},
      {false, "UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR = 24294",
       "Month is locked.  Cannot update."},
      {true, "DROP TABLE MAS_MONTHSALDATE", "no such table: MAS_MONTHSALDATE : -2147217865"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.change);
    Clear();
    company.Execute("UPDATE MAS_EMPLOYEE SET DOL = '15/Jun/2024', lockyn = 0");
    Instruction(InstructionType::Advance, {1000, 1000, 1000, 1000});
    if (!each.shown) company.Execute(each.change);
    modSIDetails& pending = Pending();
    if (each.shown) company.Execute(each.change);
    const std::string before = Amounts();
    Press(pending.cmdAdjust);
    EXPECT_EQ(desk.TakeTexts(), (Texts{kAskAdjust, each.text}));
    EXPECT_EQ(Amounts() + Flagged(), before);
    EXPECT_EQ(pending.fpgGrid.rows.empty(), before.empty());
  }
}

TEST_F(Leaving, NobodyAndWhoHasNoRight) {
  modSIDetails& nobody = Pending(99);
  Press(nobody.cmdAdjust, {});
  Press(nobody.cmdClear, {});
  session.MultiLoginYN = true;
  for (Button* button : {&nobody.cmdAdjust, &nobody.cmdClear}) {
    button->tag = "1NA";
    Press(*button, {});
  }
  EXPECT_EQ(desk.TakeTexts(), (Texts{"Select record(s) to 'Adjust'.", "Select record(s) to 'Clear'.",
                                     "Permission denied.", "Permission denied."}));
}

// A lock of the leaving month is no hindrance to giving up what lies behind it.
TEST_F(Leaving, MoneyIsConserved) {
  std::mt19937 random{5801};
  company.Lock(kApr2024 + 3);
  company.Name(2, "Car Loan").Reducing();
  for (int run = 0; run < 60; ++run) {
    SCOPED_TRACE(run);
    Clear();
    const bool folding = random() % 2 == 0;
    const std::size_t leaving = folding ? 2 : 3;
    company.Execute(fmt::format("UPDATE MAS_EMPLOYEE SET DOL = '20/{}/2024'", folding ? "Jun" : "Jul"));
    std::vector<double> amounts(4 + random() % 8);
    for (double& amount : amounts) amount = static_cast<double>(100 + random() % 90000) / 100;
    random() % 2 == 0 ? Instruction(InstructionType::Advance, amounts) : Reducing(amounts, 60);
    const auto sum = [this](const char* condition, std::size_t month) {
      return company
          .One(fmt::format("SELECT SUM(MDFYAMT) FROM INS_EMIDETAIL WHERE MONTHYEAR {} {}", condition,
                           kApr2024 + static_cast<int>(month)))
          .NumberOr0();
    };
    const double before = sum("<", leaving), month = sum("=", leaving), later = sum(">", leaving);
    modSIDetails& pending = Pending();
    Press(folding ? pending.cmdAdjust : pending.cmdClear);
    EXPECT_EQ(sum("<", leaving), before);
    EXPECT_NEAR(sum("=", leaving), folding ? month + later : month, 0.001);
    EXPECT_EQ(sum(">", leaving), 0);
    EXPECT_EQ(Flagged(), folding ? "2" : "");
    const char* const torn = "SELECT * FROM INS_EMIDETAIL WHERE ABS(MDFYAMT - MDFPRNAMT - MDFINTAMT) > 0.001";
    EXPECT_EQ(parent->reducing ? company.Rows(torn) : "", "");
    EXPECT_EQ(desk.TakeTexts().size(), 1U);  // the question alone
  }
}

}  // namespace
}  // namespace ktl
