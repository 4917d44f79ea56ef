#include "entry_fixture.h"
#include "frame/modExternal.h"

namespace ktl {
namespace {

constexpr const char* kChanged =
    "Row cannot be located for updating. Some values may have been changed since it was last read.";

class TwoEntries : public EntryScreen {
 protected:
  // Both have chosen the advance of three months of 1000.
  modAdvLoan& OpenBothOnFirst() {
    company.Advance(17, 1, "Salary Advance", 3000, "01/Sep/2026");
    for (int month = 0; month < 3; ++month) company.Emi(17, 1, 1, month + 1, 24321 + month, 1000);
    OpenOnFirst(Advance);
    modAdvLoan& late = OpenSecond();
    ClickRow(late.fpgAdvLoan, 0);
    return late;
  }
  modAdvLoan& OpenSecond() {
    modAdvLoan& late = second.Open<modAdvLoan>(Advance);
    Pick(late.employee.cmbEmpName, "Asha Rao");
    return late;
  }
  void ExpectRefused() {
    EXPECT_EQ(second.desk.LastBox().text, kChanged);
    second.desk.TakeBoxes();
  }

  Workstation second{company};
};

void EnterAdvanceOf(modAdvLoan& entry, const char* amount) {
  Click(entry.cmdNew);
  Pick(entry.cmbALName, "Salary Advance");
  Type(entry.txtAdvDate, "15/09/2026");
  Type(entry.txtAdvAmount, amount);
  Type(entry.recovery.txtInstlAmt, amount);
  Type(entry.recovery.txtRecvrFrom, "Oct/2026");
}

TEST_F(TwoEntries, ASerialNumberThatWasTakenBecomesTheNextFreeOne) {
  modAdvLoan& early = OpenOn(Advance);
  modAdvLoan& late = OpenSecond();
  EnterAdvanceOf(early, "1000");
  EnterAdvanceOf(late, "500");
  Click(early.cmdSave);
  Click(late.cmdSave);
  EXPECT_EQ(second.desk.TakeTexts(), Texts{"Updated"});
  EXPECT_EQ(Rows("SELECT SERIALNO, ACTAMT FROM INS_ADVLOAN ORDER BY SERIALNO"), "1|1000\n2|500");
  EXPECT_EQ(Rows("SELECT SERIALNO, COUNTER, MDFYAMT FROM INS_EMIDETAIL ORDER BY SERIALNO"),
            "1|1|1000\n2|1|500");
  EXPECT_EQ(late.txtSerialNo.Text(), "3");
}

TEST_F(TwoEntries, WhatChangedSinceItWasShownIsNeitherSavedNorDeleted) {
  modAdvLoan& late = OpenBothOnFirst();
  Type(late.txtRemarks, "mine");
  Type(screen->txtRemarks, "first");
  Click(screen->cmdSave);
  Click(late.cmdSave);
  ExpectRefused();
  EXPECT_EQ(late.txtRemarks.Text(), "first");

  Run("UPDATE INS_EMIDETAIL SET MDFYAMT = 700 WHERE COUNTER = 2");
  TickCell(late.fpgEMI, 0, ScheduleGrid::kTick, true);
  second.desk.WillAnswer({Answer::Yes, Answer::Yes});
  Click(late.cmdEMIDelete);
  ExpectRefused();
  EXPECT_EQ(late.fpgEMI.Text(1, ScheduleGrid::kModifiedAmount), "700.00");

  Run("UPDATE INS_EMIDETAIL SET MDFYAMT = 600 WHERE COUNTER = 2");
  TickCell(late.fpgEMI, 1, ScheduleGrid::kRecovered, true);
  ExpectRefused();
  EXPECT_FALSE(late.fpgEMI.IsTicked(1, ScheduleGrid::kRecovered));

  company.Receipt(17, 1, 1, 1, "10/Sep/2026", 300);
  second.desk.WillAnswer({Answer::Yes, Answer::Yes});
  Click(late.cmdDelete);
  ExpectRefused();
  EXPECT_EQ(Rows("SELECT COUNTER, MDFYAMT, ISNULL(EMIRECVYN, 0) FROM INS_EMIDETAIL ORDER BY COUNTER"),
            "1|1000|0\n2|600|0\n3|1000|0");
  EXPECT_EQ(Rows("SELECT REMARKS FROM INS_ADVLOAN"), "first");

  for (const char* table : {"INS_EMIDETAIL", "INS_ADVLOAN"}) Run(std::string("DELETE FROM ") + table);
  Type(late.txtRemarks, "mine");
  Click(late.cmdSave);
  ExpectRefused();
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
}

// Its own acts are no change by another one.
TEST_F(TwoEntries, OneActFollowsTheOther) {
  OpenBothOnFirst();
  for (const bool on : {true, false}) TickCell(screen->fpgEMI, 2, ScheduleGrid::kRecovered, on);
  TickCell(screen->fpgEMI, 2, ScheduleGrid::kTick, true);
  EXPECT_EQ(Press(screen->cmdEMIDelete, {Answer::Yes, Answer::Yes}).size(), 2u);
  Type(screen->txtRemarks, "now two months");
  EXPECT_EQ(Press(screen->cmdSave), Texts{"Updated"});
  ClickRow(screen->fpgAdvLoan, 0);
  EXPECT_EQ(Press(screen->cmdDelete, {Answer::Yes}).size(), 1u);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
}

}  // namespace
}  // namespace ktl
