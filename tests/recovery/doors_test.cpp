// The screens of recovery behind the buttons of the real entry screen.
#include <fmt/format.h>

#include "instructions/modAdvLoan.h"
#include "recovery/modEMIDet.h"
#include "recovery/modInterestMaster.h"
#include "recovery/modReceipts.h"
#include "recovery_fixture.h"
#include "runtime/errors.h"
#include "start/startup.h"

namespace ktl {
namespace {

class Doors : public RecoveryTest {
 protected:
  modAdvLoan& Entry(InstructionType type) {
    RegisterScreens(session);
    modAdvLoan& entry = Workstation::Open<modAdvLoan>(type);
    Pick(entry.employee.cmbEmpName, "Asha Rao");
    if (!entry.fpgAdvLoan.rows.empty()) ClickRow(entry.fpgAdvLoan, 0);
    return entry;
  }
};

TEST_F(Doors, TheEditorCountsTheMonthsThatASalaryHasNotTaken) {
  Instruction(InstructionType::Advance, {1000, 1000, 1000, 1000});
  company.Name(1, "Car Loan");
  company.Execute(
      "DELETE FROM SLC_SALARYCALC_D WHERE SALID IN (SELECT SALID FROM SLC_SALARYCALC_E WHERE MONTHYEAR <> "
      "24293)");  // only the second month has been deducted
  modAdvLoan& entry = Entry(InstructionType::Advance);
  desk.WillWorkOn<modEMIDet>([this](modEMIDet& editor) {
    EXPECT_EQ(editor.fpgEMIDetail.Text(1, modEMIDet::kEmiRec), "1");
    ClickRow(editor.fpgEMIDetail, 0);
    Type(editor.txtAmount, "900");
    desk.WillAnswer({Answer::Yes});
    Click(editor.cmdSave);
  });
  Click(entry.cmdEmi);
  // A share for two open months, given to the recovered one too: the last month gets none.
  EXPECT_EQ(Amounts(), "900 1050 1050 1000");
  EXPECT_EQ(entry.fpgEMI.Text(2, ScheduleGrid::kModifiedAmount), "1050.00");
  desk.WillWorkOn<modReceipts>([this](modReceipts& receipts) {
    Click(receipts.cmdNew);
    Type(receipts.txtRcptDate, "10/07/2024");
    Type(receipts.txtAmount, "100");
    desk.WillAnswer({Answer::Yes});
    Click(receipts.cmdSave);
  });
  Click(entry.cmdReceipts);
  EXPECT_EQ(Amounts(), "900 1050 1050 900");
  EXPECT_EQ(entry.fpgReceipts.Text(0, modReceipts::kTotal), "100.00");
  EXPECT_EQ(entry.fpgAdvLoan.Text(0, InstructionGrid::kReceipts), "100.00");
}

TEST_F(Doors, ReducingIsTheInstructionsOwnName) {
  company.Name(2, "Car Loan").Reducing(12);
  company.Name(2, "Plain Loan");
  for (const bool reducing : {true, false}) {
    for (const int option : {1, 0}) {
      SCOPED_TRACE(testing::Message() << reducing << " with ADVMGALYN " << option);
      Clear();
      reducing ? ReducingAsMade({1000, 1000}, 50) : Instruction(InstructionType::Loan, {1050, 1050});
      company.Execute(
          fmt::format("UPDATE INS_ADVLOAN SET SINAME = '{}'", reducing ? "Car Loan" : "Plain Loan"));
      company.Execute(fmt::format("UPDATE MAS_OPTSETFEATURE SET ADVMGALYN = {}", option));
      LoadFeatureSet(session);
      modAdvLoan& entry = Entry(InstructionType::Loan);
      Pick(entry.cmbALName, reducing ? "Plain Loan" : "Car Loan");  // not saved
      EXPECT_EQ(entry.fpgEMI.Text(1, ScheduleGrid::kModifiedInterest), reducing ? "50.00" : "");
      desk.WillWorkOn<modEMIDet>([&](modEMIDet& editor) {
        ClickRow(editor.fpgEMIDetail, 0);
        EXPECT_EQ(editor.txtAmount.Text(), reducing ? "1000.00" : "1050.00");
        Type(editor.txtRemarks, "asked for");
        Click(editor.cmdSave);
      });
      Click(entry.cmdEmi);
      EXPECT_EQ(Amounts(), "1050 1050");  // a remark changes no amount
      EXPECT_EQ(Amounts("MDFPRNAMT"), reducing ? "1000 1000" : "0 0");
    }
  }
}

TEST_F(Doors, TheInterestEditorOpensForSeparateInterest) {
  Reducing({1000, 1000}, 0);
  company.Name(2, "Car Loan").Reducing(12).SeparateInterest();
  modAdvLoan& entry = Entry(InstructionType::Loan);
  desk.WillWorkOn<modInterestMaster>([](modInterestMaster& editor) {
    EXPECT_EQ(editor.lblEmpIDRef.caption + "|" + editor.lblEmpName.caption,
              "Ref. No. : K17|Emp. Name : Asha Rao");
    Click(editor.cmdRedBalance);
    Type(editor.txtInterestRate, "12");
    Click(editor.cmdUpdateRedBal);
    Click(editor.cmdSave);
  });
  Click(entry.cmdIntrCalc);
  EXPECT_EQ(Amounts("MDFINTAMT"), "20 10");
  EXPECT_EQ(desk.ShownScreens(), std::vector<std::string>{"modInterestMaster"});
  EXPECT_THROW(session.screens.Show(session, "modEMIDet"), RuntimeError);  // never without an instruction
}

}  // namespace
}  // namespace ktl
