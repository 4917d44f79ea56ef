#include "recovery/modReceipts.h"

#include "recovery_fixture.h"

namespace ktl {
namespace {

constexpr const char* kAskSave =
    "Do you want to Adjust the EMI Amount?\r\nClick on 'Yes' to Adjust the EMI Amount for Current and Future "
    "Months\r\n"
    "Click on 'No' to Delete the Current and Future Months EMI Amount from Last \r\n"
    "Click 'Cancel' to Save/Update with No Adjustments";

constexpr const char* kTooMuch =
    "Entered amount is more than Advance recoverable.\r\nDo you want to continue?";
constexpr const char* kOneLocked = "1 Month(s) locked. Cannot save.\r\nUnlock months to save data.";

constexpr const char* kTooLarge = "Amount should be less than 9,99,99,99,999.99";

class Receipts : public RecoveryTest {
 protected:
  std::string Stored() {
    return company.Rows(
        "SELECT COUNTER, RCPTDATE, RCPTPRNAMT, RCPTINTAMT, RCPTAMT, REMARKS FROM INS_RECEIPTS ORDER BY "
        "COUNTER");
  }
  void Enter(modReceipts& receipts, const char* date, const char* amount, const char* interest = "") {
    Click(receipts.cmdNew);
    Type(receipts.txtRcptDate, date);
    Type(receipts.txtAmount, amount);
    Type(receipts.txtInterest, interest);
  }
  void Save(modReceipts& receipts, std::vector<Answer> answers) {
    desk.WillAnswer(std::move(answers));
    Click(receipts.cmdSave);
  }
};

TEST_F(Receipts, RefusesWhatCannotBeSavedAndWritesNothing) {
  Instruction(InstructionType::Advance, {1000, 1000, 1000});
  session.options.STARTMONTHYEAR = kApr2024 - 12;
  company.Execute("UPDATE INS_ADVLOAN SET INTAMT = 50");
  parent->RefreshDetail();
  modReceipts& receipts = Open<modReceipts>();
  EXPECT_EQ(receipts.caption, "Receipts Recovered");
  Click(receipts.cmdDelete);
  Click(receipts.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), (Texts{"No records to delete.", "Select record or click 'New'."}));
  TextBox &date = receipts.txtRcptDate, &amount = receipts.txtAmount;
  const struct {
    const char* date;
    const char* amount;
    const char* text;
    Control& focus;
  } cases[] = {
      {"29/02/2025", "10", "Specify date. Format dd/mm/yyyy.", date},
      {"31/03/2023", "10", "Given date cannot be before the 'Start Month' set.", date},
      {"15/05/2024", "0", "Specify Receipt amount.", amount},
      {"15/05/2024", "10000000000", kTooLarge, amount},
      {"31/03/2024", "10", "Receipt date cannot be before the Advance given date.", date},
      {"15/05/2024", "3050.01", kTooMuch, amount},
  };
  for (const auto& c : cases) {
    Enter(receipts, c.date, c.amount);
    Click(receipts.cmdSave);
    EXPECT_EQ(desk.TakeTexts(), Texts{c.text});
    EXPECT_EQ(receipts.Focus(), &c.focus) << c.text;
  }
  Enter(receipts, "15/05/2024", "10", std::string(309, '9').c_str());
  Click(receipts.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), Texts{kTooLarge});
  EXPECT_EQ(receipts.Focus(), &receipts.txtInterest);
  Enter(receipts, "15,05_2024", "10");
  EXPECT_EQ(date.Text(), "15/05/2024");
  receipts.txtRemarks.SetText(std::string(4001, 'r'));
  Click(receipts.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Remarks should be within 4000 characters"});
  company.Lock(kApr2024 + 2);
  Enter(receipts, "15/05/2024", "3050");  // as much as there is
  Save(receipts, {Answer::Yes});
  EXPECT_EQ(desk.TakeTexts(), (Texts{kAskSave, kOneLocked}));
  EXPECT_TRUE(receipts.cmdClose.enabled);
  EXPECT_EQ(Stored(), "");
  EXPECT_EQ(Amounts(), "1000 1000 1000");
}

TEST_F(Receipts, AReceiptFallsOnTheScheduleAsAnswered) {
  const struct {
    const char* date;
    const char* amount;
    std::vector<Answer> answers;
    const char* amounts;
    const char* flagged;
  } cases[] = {
      {"15/05/2024", "100", {Answer::Yes}, "1000 966 966 968", "1 2 3"},    // the recovered month falls too
      {"15/05/2024", "1200", {Answer::No}, "1000 1000 800", "2 3"},         // off the end
      {"15/05/2024", "1200", {Answer::Cancel}, "1000 1000 1000 1000", ""},  // nothing
      {"01/08/2024", "100", {}, "1000 1000 1000 1000", ""},                 // behind the last month: unasked
      {"25/06/2024", "100", {Answer::Yes}, "1000 1000 950 950", "2 3"},     // no salary month: the calendar's
      {"26/06/2024", "100", {Answer::Yes}, "1000 1000 1000 900", "3"},      // the salary month of July
  };
  company.Execute("UPDATE MAS_MONTHYEAR SET CALCENDDATE = '2024-06-24' WHERE MONTHYEAR = 24294");
  company.Execute("UPDATE MAS_MONTHYEAR SET CALCSTARTDATE = '2024-06-26' WHERE MONTHYEAR = 24295");
  for (const auto& c : cases) {
    Clear();
    Instruction(InstructionType::Advance, {1000, 1000, 1000, 1000});
    Recovered(kApr2024 + 1);
    parent->RefreshDetail();
    modReceipts& receipts = Open<modReceipts>();
    Enter(receipts, c.date, c.amount);
    Save(receipts, c.answers);
    EXPECT_EQ(desk.TakeTexts(), c.answers.empty() ? Texts{"Updated"} : (Texts{kAskSave, "Updated"}));
    EXPECT_EQ(Amounts(), c.amounts) << c.date;
    EXPECT_EQ(Flagged(), c.flagged) << c.date;
    EXPECT_EQ(receipts.Focus(), &receipts.cmdNew);
  }
  EXPECT_EQ(Stored(), "1|26/06/2024|100|0|100|");
  EXPECT_EQ(LastAudit(),
            "19|17|Standing Instructions - Advance Receipts Updated|Advance Receipts Updated:::SI Type = "
            "Advance:SI "
            "Name = Car Loan::Receipt Date = 26/Jun/2024::EMI Amount = 100:EMI Adjustment = Adjust the EMI "
            "Amount for "
            "Current and Future Months:Remarks = ");
}

TEST_F(Receipts, AStoredReceiptKeepsItsDate) {
  Instruction(InstructionType::Advance, {1000, 1000});
  company.Receipt(17, 1, 1, 4, "10/Apr/2024", 300).With("RCPTPRNAMT", 250.0).With("RCPTINTAMT", 50.0);
  modReceipts& receipts = Open<modReceipts>();
  ClickRow(receipts.fpgReceipts, 0);
  EXPECT_EQ(receipts.txtAmount.Text(), "300.00");  // the total is what an ordinary instruction edits
  Type(receipts.txtRcptDate, "20/05/2024");
  Type(receipts.txtInterest, "0");
  Type(receipts.txtRemarks, "  by cheque ");
  Click(receipts.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Updated"});
  EXPECT_TRUE(AuditHas("::Receipt Date = 10/Apr/2024::EMI Amount = 300.00:Remarks = by cheque"));
  EXPECT_EQ(Stored(), "4|10/04/2024|300|0|300|by cheque");
  company.Lock(kApr2024 + 1);
  ClickRow(receipts.fpgReceipts, 0);
  Type(receipts.txtRemarks, "by cash");
  Click(receipts.cmdSave);  // nothing is asked, and a lock stands against it all the same
  EXPECT_EQ(desk.TakeTexts(), Texts{kOneLocked});
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
  Type(receipts.txtAmount, "280");
  Save(receipts, {Answer::No, Answer::Yes});
  EXPECT_EQ(desk.Boxes().at(1).icon, Icon::Exclamation);
  EXPECT_EQ(desk.TakeTexts(),
            (Texts{kAskSave, "Adjustment Amount is negative \r\n\r\nDo you want to Continue", "Updated"}));
  EXPECT_EQ(Amounts(), "1000 1020");
  EXPECT_EQ(Flagged(), "");
  Click(receipts.cmdNew);
  EXPECT_EQ(receipts.txtCounter.Text() + " " + receipts.txtRcptDate.Text(), "5 15/09/2026");
  Type(receipts.txtRcptDate, "30/06/2024");
  Type(receipts.txtAmount, "0.455");
  EXPECT_EQ(receipts.txtAmount.Text(), "0.46");  // as it will be stored
  Click(receipts.cmdSave);
  ClickRow(receipts.fpgReceipts, 1);
  EXPECT_EQ(receipts.txtAmount.Text(), "0.46");
  Type(receipts.txtRemarks, "typed, not stored");
  desk.WillAnswer({Answer::Yes, Answer::Cancel});
  Click(receipts.cmdDelete);
  EXPECT_TRUE(AuditHas("::Receipt Date = 30/Jun/2024::EMI Amount = 0.46"));
  EXPECT_FALSE(AuditHas("typed"));
}

TEST_F(Receipts, ADepositOfAReducingLoan) {
  ReducingAsMade({1000, 1000, 1000}, 90);
  modReceipts& receipts = Open<modReceipts>();
  Enter(receipts, "15/04/2024", "300", "30");
  Save(receipts, {Answer::Yes});
  EXPECT_EQ(Stored(), "1|15/04/2024|300|30|330|");
  EXPECT_EQ(Amounts("MDFPRNAMT"), "900 900 900");
  EXPECT_EQ(Amounts("MDFINTAMT"), "80 80 80");
  Enter(receipts, "15/04/2024", "900", "100");
  Save(receipts, {Answer::No});
  EXPECT_EQ(Amounts("MDFPRNAMT"), "900 900");  // the emptied month is gone with its interest
  EXPECT_EQ(Amounts("MDFINTAMT"), "60 0");     // and the interest never deletes one
  EXPECT_EQ(Amounts(), "960 900");
  const auto deleteFirst = [this](Answer adjustment) {
    TakeComponentsAway();
    modReceipts& reopened = Open<modReceipts>();
    ClickRow(reopened.fpgReceipts, 0);
    desk.WillAnswer({Answer::Yes, adjustment});
    Click(reopened.cmdDelete);
  };
  deleteFirst(Answer::No);
  EXPECT_EQ(Amounts(), "960 900 330");
  EXPECT_TRUE(
      AuditHas("Loan Receipts Deleted:::SI Type = Loan:SI Name = Car Loan::Receipt Date = "
               "15/Apr/2024::Principle Amount = 300.00:Interest Amount = 30.00:EMI Amount = 330.00:"));
  deleteFirst(Answer::Yes);  // 300 more principal a month, and 34, 34 and 32 more interest
  EXPECT_EQ(Amounts("MDFPRNAMT"), "1200 1200 600");
  EXPECT_EQ(Amounts(), "1294 1234 662");
}

TEST_F(Receipts, DeletingPutsTheAmountBack) {
  const struct {
    Answer answer;
    const char* amounts;
    const char* flagged;
    const char* audited;
  } cases[] = {
      {Answer::Yes, "1000 1034 1034 1032", "1 2 3", "Adjust the EMI Amount for Current and Future Months"},
      {Answer::No, "1000 1000 1000 1000 100", "4", "Create New Month for Recovery"},
      {Answer::Cancel, "1000 1000 1000 1000", "", "Save/Update with No Adjustments"}};
  for (const auto& c : cases) {
    Clear();
    Instruction(InstructionType::Advance, {1000, 1000, 1000, 1000});
    company.Receipt(17, 1, 1, 1, "10/May/2024", 100);
    modReceipts& receipts = Open<modReceipts>();
    Click(receipts.cmdDelete);
    EXPECT_EQ(desk.TakeTexts(), Texts{"Select record to delete."});
    ClickRow(receipts.fpgReceipts, 0);
    Click(receipts.cmdDelete);  // No is the default
    EXPECT_EQ(desk.TakeTexts(), Texts{"Delete selected Receipt?"});
    desk.WillAnswer({Answer::Yes, c.answer});
    Click(receipts.cmdDelete);
    EXPECT_EQ(Stored(), "");
    EXPECT_EQ(Amounts(), c.amounts);
    EXPECT_EQ(Flagged(), c.flagged);
    EXPECT_TRUE(AuditHas(std::string(":EMI Adjustment = ") + c.audited + ":Remarks"));
    desk.TakeTexts();
  }
}

TEST_F(Receipts, ClosingAsksWhileAReceiptIsEntered) {
  Instruction(InstructionType::Advance, {1000});
  modReceipts& receipts = Open<modReceipts>();
  Enter(receipts, "15/04/2024", "0");
  desk.WillAnswer({Answer::Yes});
  receipts.Unload();
  EXPECT_FALSE(receipts.IsUnloaded());
  session.MultiLoginYN = true;
  receipts.cmdSave.tag += "NA";
  desk.WillAnswer({Answer::Yes});
  receipts.Unload();
  EXPECT_FALSE(receipts.IsUnloaded());
  desk.WillAnswer({Answer::No});
  receipts.Unload();
  EXPECT_TRUE(receipts.IsUnloaded());
  EXPECT_EQ(desk.TakeTexts(), (Texts{"Do you want to Save entered details?", "Specify Receipt amount.",
                                     "Do you want to Save entered details?", "Permission denied.",
                                     "Do you want to Save entered details?"}));
}

TEST_F(Receipts, AFailureIsShownAsAnError) {
  Instruction(InstructionType::Advance, {1000});
  modReceipts& receipts = Open<modReceipts>();
  Enter(receipts, "15/04/2024", "10");
  // A date that cannot be compared is not let pass.
  company.Alter("ALTER TABLE INS_ADVLOAN DROP COLUMN SIDATE");
  Click(receipts.cmdSave);
  EXPECT_EQ(desk.Boxes().size(), 1U);
  EXPECT_EQ(company.One("SELECT COUNT(*) FROM INS_RECEIPTS"), Value(0));
  company.Execute("DROP TABLE INS_RECEIPTS");
  desk.WillAnswer({Answer::Yes});
  receipts.Unload();
  EXPECT_EQ(desk.LastBox().title, "Error");
  EXPECT_FALSE(receipts.IsUnloaded());
  EXPECT_TRUE(receipts.cmdClose.enabled);
}

}  // namespace
}  // namespace ktl
