#include "entry_fixture.h"

namespace ktl {
namespace {

const std::string kAskDelete = "Do you want to delete selected Advance?";

class EntryDeletes : public EntryScreen {
 protected:
  // Five months of 1000 from Sep/2026.
  modAdvLoan& OpenOnFiveMonths() {
    company.Advance(17, 1, "Salary Advance", 5000, "01/Sep/2026");
    for (int i = 0; i < 5; ++i) company.Emi(17, 1, 1, i + 1, 24321 + i, 1000);
    OpenOnFirst(Advance);
    return *screen;
  }
  void Delete(std::vector<Answer> answers) {
    desk.WillAnswer(std::move(answers));
    Click(screen->cmdDelete);
  }
  void DeleteMonths(std::initializer_list<std::size_t> rows, std::vector<Answer> answers) {
    TickMonths(rows);
    desk.WillAnswer(std::move(answers));
    Click(screen->cmdEMIDelete);
  }
  void TickMonths(std::initializer_list<std::size_t> rows) {
    for (std::size_t row : rows) TickCell(screen->fpgEMI, row, ScheduleGrid::kTick, true);
  }
};

TEST_F(EntryDeletes, DeletingAnInstructionTakesEverythingOfItAndFlagsItsMonths) {
  OpenOnFiveMonths();
  company.Receipt(17, 1, 1, 1, "10/Sep/2026", 300);
  ClickRow(screen->fpgAdvLoan, 0);
  company.Advance(17, 2, "Salary Advance", 700);
  company.Emi(17, 1, 2, 1, 24321, 700);
  company.Salary(17, 24322, 40000, 30000);
  Run("UPDATE SLC_SALARYCALC_E SET INDICATOR = 1");
  Delete({Answer::Yes, Answer::No});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_RECEIPTS"), "1");
  desk.TakeBoxes();
  Delete({Answer::Yes, Answer::Yes});
  EXPECT_EQ(desk.TakeTexts(), (Texts{kAskDelete,
                                     "Selected Advance has receipts.  Receipts will be deleted if Advance "
                                     "is deleted.\r\nDo you want to proceed?"}));
  EXPECT_EQ(Rows("SELECT SERIALNO FROM INS_ADVLOAN"), "2");
  EXPECT_EQ(Rows("SELECT SERIALNO, EMIAMT FROM INS_EMIDETAIL"), "2|700");
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_RECEIPTS"), "0");
  EXPECT_EQ(Rows("SELECT EDITMODEYN FROM SLC_SALARYCALC_E"), "1");
  EXPECT_EQ(LastAudit(),
            "19|17|Standing Instructions - Advance Deleted|Advance Deleted::SI Type = Advance:SI Name = "
            "Salary Advance:Date = 01/09/2026:Amount = 5000:Interest Amount = 0:Remarks = ");
  EXPECT_EQ(screen->fpgAdvLoan.rows.size(), 1u);
  EXPECT_EQ(screen->txtSerialNo.Text(), "3");
}

TEST_F(EntryDeletes, WhatStandsAgainstADelete) {
  OpenOn(Advance);
  EXPECT_EQ(Press(screen->cmdDelete), Texts{"No Advance to delete."});

  OpenOnFiveMonths();
  Click(screen->cmdDelete);  // No is the default; the row is white again
  EXPECT_EQ(screen->fpgAdvLoan.At(0, InstructionGrid::kName).backColour, kWhite);

  company.Lock(24322);
  company.Lock(24324);
  Delete({Answer::Yes});
  EXPECT_EQ(desk.LastBox().text,
            "Oct/2026, Dec/2026 of the EMI month(s) has/have been locked.\r\nDelete these EMI(s) to delete "
            "the selected Advance.\r\nUnlock the month(s)");

  Run("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
  company.Row("SEC_EMPLOCK").With("EMPID", 17).With("MONTHYEAR", 24325);
  Delete({Answer::Yes});
  EXPECT_EQ(desk.LastBox().text, "Emloyee has been locked one of the EMI month(s). Cannot Delete");
  EXPECT_EQ(desk.LastBox().title, "Permission Denied");
  EXPECT_EQ(Rows("SELECT COUNT(*), SUM(EMIAMT) FROM INS_EMIDETAIL"), "5|5000");
}

TEST_F(EntryDeletes, HouseLoanDetailsGoOnlyWithAYes) {
  company.Loan(17, 1, "Car Loan", 1000);
  Run("INSERT INTO INS_HLOAN (EMPID, SERIALNO, SITYPE, HTYPE) VALUES (17, 1, 2, 1);"
      "INSERT INTO INS_HLOAN_VAL (EMPID, SERIALNO, SITYPE, FINYEAR) VALUES (17, 1, 2, 2026)");
  OpenOnFirst(Loan);
  EXPECT_TRUE(screen->cmdTDSDet.visible);
  Delete({Answer::Yes, Answer::No});
  EXPECT_EQ(desk.LastBox().text,
            "Selected Loan has house loan details.  These details will be deleted if Loan is deleted.\r\nDo "
            "you want to proceed?");
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_HLOAN"), "1");
  Delete({Answer::Yes, Answer::Yes});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_HLOAN, INS_HLOAN_VAL"), "0");
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
}

TEST_F(EntryDeletes, DeletedInstalmentsAreAdjustedAsAnswered) {
  const struct {
    Answer answer;
    const char* schedule;
    const char* audit;
  } cases[] = {
      // 2000 over three open months: 666.67 goes up to 667, the last takes 666.
      {Answer::Yes, "24321|1|1000|1667\n24324|4|1000|1667\n24325|5|1000|1666",
       ":Adjustment Option Selected = Adjust the EMI Amount for the Months"},
      {Answer::No, "24321|1|1000|1000\n24324|4|1000|1000\n24325|5|1000|1000\n24326|6|2000|2000",
       ":Adjustment Option Selected = Create New Month for Recovery"},
      {Answer::Cancel, "24321|1|1000|1000\n24324|4|1000|1000\n24325|5|1000|1000",
       ":Adjustment Option Selected = Delete with No Adjustments"},
  };
  for (const auto& c : cases) {
    Run("DELETE FROM INS_EMIDETAIL");
    Run("DELETE FROM INS_ADVLOAN");
    OpenOnFiveMonths();
    TickMonths({1, 2});
    desk.WillAnswer({Answer::Yes});
    if (c.answer != Answer::Cancel) desk.WillAnswer({c.answer});  // Cancel is the default
    Click(screen->cmdEMIDelete);
    EXPECT_EQ(Schedule(), c.schedule);
    EXPECT_EQ(LastAudit(),
              std::string("19|17|Standing Instructions - Advance EMIs Deleted|Advance EMIs Deleted::") +
                  ":SI Type = Advance:SI Name = Salary Advance::Month/Year = Oct/2026:EMI Amount = "
                  "1000.00::Month/Year = Nov/2026:EMI Amount = 1000.00" +
                  c.audit);
    EXPECT_EQ(screen->fpgEMI.rows.size(), Schedule().empty() ? 0u : c.answer == Answer::No ? 4u : 3u);
    EXPECT_EQ(screen->txtSerialNo.Text(), "1");
  }
}

TEST_F(EntryDeletes, SpreadingLeavesRecoveredMonthsAloneAndNothingIsAskedWhenNoneIsOpen) {
  company.Advance(17, 1, "Salary Advance", 3000, "01/Sep/2026");
  company.Emi(17, 1, 1, 1, 24321, 1000).With("EMIRECVYN", 1);
  company.Emi(17, 1, 1, 2, 24322, 1000);
  company.Emi(17, 1, 1, 3, 24323, 1000);
  OpenOnFirst(Advance);
  EXPECT_THROW(TickCell(screen->fpgEMI, 0, ScheduleGrid::kTick, true), PersonError);
  Tick(screen->chkSelectAll, true);
  EXPECT_FALSE(screen->fpgEMI.IsTicked(0, ScheduleGrid::kTick));
  TickCell(screen->fpgEMI, 1, ScheduleGrid::kTick, false);
  DeleteMonths({}, {Answer::Yes, Answer::Yes});
  EXPECT_EQ(Schedule(), "24321|1|1000|1000\n24322|2|1000|2000");
  desk.TakeBoxes();
  DeleteMonths({1}, {Answer::Yes});
  EXPECT_EQ(desk.TakeTexts(), Texts{"Do you want to delete selected Advance EMI Detail?"});
  EXPECT_EQ(LastAudit().find("Adjustment"), std::string::npos);
}

TEST_F(EntryDeletes, WhatIsSpreadIsWhatTheListShows) {
  company.Advance(17, 1, "Salary Advance", 1000, "01/Sep/2026");
  for (int i = 0; i < 3; ++i) company.Emi(17, 1, 1, i + 1, 24321 + i, 333.334);
  OpenOnFirst(Advance);
  DeleteMonths({1, 2}, {Answer::Yes, Answer::Yes});
  EXPECT_EQ(Schedule(), "24321|1|333.334|999.99");  // 333.33 and 333.33 onto 333.33
}

TEST_F(EntryDeletes, ANewMonthOfALoanKeepsItsLender) {
  company.Loan(17, 1, "Car Loan", 2000);
  company.Emi(17, 2, 1, 1, 24322, 1000).With("INSTID", 6);
  company.Emi(17, 2, 1, 2, 24323, 1000).With("INSTID", 6);
  OpenOnFirst(Loan);
  DeleteMonths({0}, {Answer::Yes, Answer::No});
  EXPECT_EQ(Rows("SELECT MONTHYEAR, COUNTER, MDFYAMT, INSTID FROM INS_EMIDETAIL ORDER BY MONTHYEAR"),
            "24323|2|1000|6\n24324|3|1000|6");
}

TEST_F(EntryDeletes, OneLockedMonthAmongTheTickedStopsAll) {
  OpenOnFiveMonths();
  Click(screen->cmdEMIDelete);
  company.Lock(24322);
  DeleteMonths({0, 1, 2}, {Answer::Yes});
  Run("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
  company.Row("SEC_EMPLOCK")
      .With("EMPID", 17)
      .With("MONTHYEAR", 24327);  // behind the schedule: the range has no end
  DeleteMonths({}, {Answer::Yes});
  EXPECT_EQ(desk.TakeTexts(),
            (Texts{"Select EMI to delete.", "Do you want to delete selected Advance EMI Detail?",
                   "1 month(s) are locked.\r\nEMI details for these months will not be deleted.",
                   "Do you want to delete selected Advance EMI Detail?",
                   "Employee has been locked. Cannot Delete."}));
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_EMIDETAIL"), "5");
}

TEST_F(EntryDeletes, SeparateInterestOfDeletedMonthsComesOffTheInstruction) {
  company.Advance(17, 1, "Welfare Advance", 2000, "01/Sep/2026").With("INTAMT", 50.0);
  company.Emi(17, 1, 1, 1, 24321, 1040).With("MDFPRNAMT", 1000.0).With("MDFINTAMT", 40.5);
  company.Emi(17, 1, 1, 2, 24322, 1020).With("MDFPRNAMT", 1000.0).With("MDFINTAMT", 20.25);
  OpenOnFirst(Advance);
  DeleteMonths({0, 1}, {Answer::Yes});
  EXPECT_EQ(Rows("SELECT INTAMT FROM INS_ADVLOAN"), "-10.75");
}

TEST_F(EntryDeletes, RefusedDoorsStayShut) {
  OpenOnFiveMonths();
  session.MultiLoginYN = true;
  for (Button* button : {&screen->cmdEmi, &screen->cmdReceipts, &screen->cmdMonthly, &screen->cmdMaster}) {
    button->tag += "NA";
    EXPECT_EQ(Press(*button), Texts{"Permission denied."}) << button->name();
  }
  screen->formula.Show(true);
  for (Button* button : {&screen->formula.cmdAccept, &screen->formula.cmdAdvFormulate}) {
    button->tag += "NA";
    EXPECT_EQ(Press(*button), Texts{"Permission denied."}) << button->name();
  }
}

}  // namespace
}  // namespace ktl
