#include "recovery/modEMIDet.h"

#include <fmt/format.h>

#include "recovery_fixture.h"
#include "runtime/text.h"

namespace ktl {
namespace {

class Editor : public RecoveryTest {
 protected:
  modEMIDet& OpenOn(std::size_t row) {
    modEMIDet& editor = Open<modEMIDet>();
    ClickRow(editor.fpgEMIDetail, row);
    return editor;
  }
  void Save(modEMIDet& editor, const char* amount, const char* interest, std::vector<Answer> answers) {
    desk.WillAnswer(std::move(answers));
    Type(editor.txtAmount, amount);
    if (*interest != 0) Type(editor.txtInterest, interest);
    Click(editor.cmdSave);
  }
  void Delete(modEMIDet& editor, std::size_t row, std::vector<Answer> answers) {
    ClickRow(editor.fpgEMIDetail, row);
    desk.WillAnswer(std::move(answers));
    Click(editor.cmdDelete);
  }
};

constexpr const char* kAskSave =
    "Do you want to Adjust the EMI Amount?\r\nClick on 'Yes' to Adjust the EMI Amount for Future Months\r\n"
    "Click on 'No' to Create New Month for Recovery\r\nClick 'Cancel' to Save/Update with No Adjustments";
constexpr const char* kTooLarge = "Amount should be less than 9,99,99,99,999.99";
constexpr const char* kTooEarly = "'From Month' cannot be before the LOAN given date";
constexpr const char* kEmployeeLocked = "Employee has been locked. Cannot Save/Update.";
constexpr const char* kOneLocked = "1 Month(s) locked. Cannot save.\r\nUnlock months to save data.";
constexpr const char* kNegative = "EMI will be adjusted in negative amount. Do you want to make it zero?";
constexpr const char* kBelow = "EMI Adjusted Amount is Negative";
constexpr const char* kTooMuch =
    "Entered EMI results in more recovery than required.\r\nDo you want to continue?";

TEST_F(Editor, RefusesWhatCannotBeSavedAndWritesNothing) {
  Instruction(InstructionType::Loan, {1000, 1000, 1000});
  session.options.STARTMONTHYEAR = kApr2024 - 12;
  company.Lock(kApr2024 + 5);
  company.Row("SEC_EMPLOCK").With("EMPID", 17).With("MONTHYEAR", kApr2024 + 20).With("LOCKYN", 1);
  modEMIDet& editor = Open<modEMIDet>();
  Click(editor.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Select record or click 'New'."});
  EXPECT_EQ(editor.Focus(), &editor.cmdNew);
  TextBox &from = editor.txtFromMonth, &to = editor.txtToMonth;
  const struct {
    const char* fields;  // months, amount, institution
    const char* text;
    Control& focus;
    Icon icon = Icon::Information;
  } cases[] = {
      {" |May/2025|1|Deccan Bank", "Please Specify 'From Month'. Format mmm/yyyy.", from},
      {"May/2025||1|Deccan Bank", "Please Specify 'To Month'. Format mmm/yyyy.", to},
      {"13/2026|May/2025|1|Deccan Bank", "Invalid 'From Month'. Format mmm/yyyy.", from},
      {"Mar/2023|May/2025|1|Deccan Bank", "'From Month' cannot be before the 'Start Month' set.", from},
      {"May/2025|soon|1|Deccan Bank", "Invalid 'To Month'. Format mmm/yyyy.", to},
      {"May/2025|Mar/2023|1|Deccan Bank", "'To Month' cannot be before the 'Start Month' set.", to},
      {"Jun/2025|May/2025|1|Deccan Bank", "'From Month' cannot be set later than 'To Month'.", from},
      {"May/2025|May/2025|-1|Deccan Bank", "Specify proper amount.", editor.txtAmount},
      {"May/2025|May/2025|10000000000.00|Deccan Bank", kTooLarge, editor.txtAmount},
      {"Mar/2024|May/2025|9999999999.99|Deccan Bank", kTooEarly, from, Icon::None},
      {"May/2025|May/2025|1|Other Bank", "Select Institution.", editor.cmbInstitution},
      {"Aug/2024|Oct/2024|1|Deccan Bank", kOneLocked, editor.cmbInstitution, Icon::Exclamation},
      {"Nov/2025|Jan/2026|1|Deccan Bank", kEmployeeLocked, editor.cmbInstitution},
  };
  ClickRow(editor.fpgEMIDetail, 0);
  for (const auto& c : cases) {
    const Texts fields = Split(c.fields, "|");
    from.SetText(fields[0]);
    to.SetText(fields[1]);
    editor.txtAmount.SetText(fields[2]);
    editor.cmbInstitution.SetText(fields[3]);
    editor.cmdSave_Click();
    EXPECT_EQ(desk.LastBox().icon, c.icon) << c.text;
    EXPECT_EQ(desk.LastBox().title == "Permission Denied", std::string_view(c.text) == kEmployeeLocked)
        << c.text;
    EXPECT_EQ(desk.TakeTexts(), Texts{c.text});
    EXPECT_EQ(editor.Focus(), &c.focus) << c.text;
  }
  // A range of more than thirty years asks; No is the default.
  to.SetText("Dec/9999");
  Type(from, "5_2025");
  Click(editor.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Re-payment tenure exceeds 30 years.\r\nDo you want to continue?"});
  EXPECT_EQ(editor.Focus(), &to);
  Type(editor.txtFromMonth, "13/2026");
  EXPECT_EQ(editor.txtFromMonth.Text(), "");  // corrected on leaving
  EXPECT_EQ(Amounts(), "1000 1000 1000");
  EXPECT_EQ(Flagged(), "");
}

TEST_F(Editor, AsksWhatShallBecomeOfTheDifference) {
  const std::string ask = kAskSave, saved = "Updated";
  const struct {
    const char* amount;
    std::vector<Answer> answers;
    Texts boxes;
    const char* amounts;
  } cases[] = {
      {"700", {Answer::Yes}, {ask, saved}, "1000 700 1075 1075 1075 1075"},
      {"6000", {Answer::Yes, Answer::Yes}, {ask, kNegative, "Adjust value", saved}, "1000 6000 0 0 0 0"},
      {"700", {Answer::No}, {ask, saved}, "1000 700 1000 1000 1000 1000 300"},
      {"1300", {Answer::No, Answer::Yes}, {ask, kTooMuch, kBelow, saved}, "1000 1300 1000 1000 1000 1000"},
      {"700", {Answer::Cancel}, {ask, saved}, "1000 700 1000 1000 1000 1000"},
      {"1000.01", {}, {ask, kTooMuch}, "1000 1000 1000 1000 1000 1000"},
      {"1,000.00", {}, {saved}, "1000 1000 1000 1000 1000 1000"},
  };
  for (const auto& c : cases) {
    Clear();
    Instruction(InstructionType::Advance, {1000, 1000, 1000, 1000, 1000, 1000});
    modEMIDet& editor = OpenOn(1);
    Save(editor, c.amount, "", c.answers);
    EXPECT_EQ(desk.TakeTexts(), c.boxes) << c.amounts;
    EXPECT_EQ(desk.AnswersLeft(), 0u) << c.amounts;
    EXPECT_EQ(Amounts(), c.amounts);
    EXPECT_EQ(Amounts("EMIAMT").substr(0, 29), "1000 1000 1000 1000 1000 1000") << c.amounts;
    EXPECT_EQ(Flagged(), c.boxes.back() == saved ? "1" : "") << c.amounts;  // the months adjusted are not
    EXPECT_TRUE(editor.cmdClose.enabled);
  }
  EXPECT_EQ(
      LastAudit(),
      "19|17|Standing Instructions - Advance EMIs Created/Updated|Advance EMIs Created/Updated:::SI Type = "
      "Advance:SI Name = Car Loan::From Month = May/2024:To Month = May/2024::EMI Amount = 1,000.00 "
      "(1000.00)");
}

TEST_F(Editor, ARangeUpdatesMonthsAddsOthersAndAdjustsNothing) {
  SmallParent& entry = Instruction(InstructionType::Loan, {1000, 1000, 1000});
  company.Execute("DELETE FROM INS_EMIDETAIL WHERE COUNTER = 2");
  modEMIDet& editor = OpenOn(0);
  desk.WillAnswer({Answer::Yes});
  editor.txtToMonth.SetText("Jul/2024");
  Type(editor.txtAmount, "900");
  Type(editor.txtRemarks, std::string(120, 'x'));
  Click(editor.cmdSave);
  EXPECT_EQ(company.Rows(
                "SELECT MONTHYEAR - 24292, COUNTER, EMIAMT, MDFYAMT, INSTID, LEN(REMARKS) FROM INS_EMIDETAIL "
                "ORDER BY MONTHYEAR"),
            "0|1|1000|900|5|100\n1|4|900|900|5|100\n2|3|1000|900|5|100\n3|5|900|900|5|100");
  EXPECT_EQ(entry.countersAsked, 2);
  EXPECT_EQ(Flagged(), "0 1 2 3");
  EXPECT_EQ(desk.TakeTexts(), (Texts{kAskSave, "Updated"}));
  EXPECT_EQ(LastAudit().substr(LastAudit().rfind("::")),
            "::EMI Amount = 900.00");  // no old value once a month was added
}

TEST_F(Editor, ANewMonthFollowsTheLastOne) {
  Instruction(InstructionType::Advance, {500, 0});  // a month of 0 is not the last one
  company.Execute("UPDATE INS_ADVLOAN SET ACTAMT = 9999");
  parent->RefreshDetail();
  modEMIDet& editor = Open<modEMIDet>();
  Click(editor.cmdNew);
  EXPECT_EQ(editor.txtFromMonth.Text() + " " + editor.txtToMonth.Text(), "May/2024 May/2024");
  EXPECT_EQ(editor.Focus(), &editor.txtToMonth);
  Type(editor.txtAmount, "250");
  desk.WillAnswer({Answer::Yes});
  editor.Unload();  // saves and stays
  EXPECT_FALSE(editor.IsUnloaded());
  EXPECT_EQ(Amounts(), "500 250");
  editor.Unload();
  EXPECT_TRUE(editor.IsUnloaded());
  company.Execute("DELETE FROM INS_EMIDETAIL");
  modEMIDet& empty = Open<modEMIDet>();
  Click(empty.cmdNew);
  EXPECT_EQ(empty.txtFromMonth.Text(), "Sep/2026");  // today's
}

TEST_F(Editor, KeepsPrincipalAndInterestApart) {
  Reducing({1000, 1000, 1000, 1000}, 50);
  modEMIDet& editor = OpenOn(0);
  EXPECT_EQ(editor.txtAmount.Text() + " " + editor.txtInterest.Text(), "1000.00 50.00");
  Save(editor, "700", "20", {Answer::Yes});
  EXPECT_EQ(Amounts("MDFPRNAMT"), "700 1100 1100 1100");
  EXPECT_EQ(Amounts("MDFINTAMT"), "20 60 60 60");
  EXPECT_EQ(Amounts(), "720 1160 1160 1160");
  ClickRow(editor.fpgEMIDetail, 1);
  Save(editor, "1000", "75", {Answer::No});
  EXPECT_EQ(Amounts("MDFPRNAMT"), "700 1000 1100 1100 100");
  EXPECT_EQ(Amounts("MDFINTAMT"), "20 75 60 60 0");  // interest that grew adds nothing
  EXPECT_TRUE(
      AuditHas("::Principle Amount = 1,000.00 (1100.00):Interest Amount = 75.00 (60.00):EMI Amount = "
               "1,075.00 (1,160.00)"));
  Click(editor.cmdNew);
  Pick(editor.cmbInstitution, "Deccan Bank");
  Save(editor, "40", "3", {Answer::Yes});
  EXPECT_EQ(company.Rows(
                "SELECT ACTPRNAMT, ACTINTAMT, EMIAMT, MDFPRNAMT, MDFINTAMT, MDFYAMT FROM INS_EMIDETAIL WHERE "
                "COUNTER = 6"),
            "40|40|80|40|3|43");
}

TEST_F(Editor, OtherTypesAskNothing) {
  const struct {
    InstructionType type;
    const char* saveTag;
    bool institution;
  } cases[] = {{InstructionType::Insurance, "259", true},
               {InstructionType::Sss, "290", true},
               {InstructionType::GroupInsurance, "273", true},
               {InstructionType::Incentive, "303", false}};
  for (const auto& c : cases) {
    company.Execute("DELETE FROM INS_EMIDETAIL");
    const int institution = 10 + NumberOf(c.type);
    if (c.institution) company.Institution(institution, "Insurer", NumberOf(c.type));
    Instruction(c.type, {100, 100});
    company.Execute(fmt::format("UPDATE INS_EMIDETAIL SET INSTID = {}", c.institution ? institution : 0));
    modEMIDet& editor = OpenOn(1);
    EXPECT_EQ(editor.caption, "Payment Detail");
    EXPECT_EQ(editor.cmdSave.tag, c.saveTag);
    EXPECT_EQ(editor.cmbInstitution.visible, c.institution);
    EXPECT_FALSE(editor.txtInterest.visible || editor.chkIntRateRedBal.visible);
    Save(editor, "900", "", {});
    EXPECT_EQ(Amounts(), "100 900");
    EXPECT_EQ(desk.TakeTexts(), Texts{"Updated"});
    EXPECT_TRUE(AuditHas(":SI Name = Policy::"));
    Delete(editor, 0, {Answer::Yes});
    EXPECT_EQ(Amounts(), "900");
    const std::string question = desk.TakeTexts().at(0);
    EXPECT_EQ(question.substr(question.rfind(' ')), " payment?");
  }
}

TEST_F(Editor, DeletesAMonth) {
  Instruction(InstructionType::Advance, {1000, 1000, 1000, 1000});
  modEMIDet& editor = Open<modEMIDet>();
  Click(editor.cmdDelete);
  ClickRow(editor.fpgEMIDetail, 1);
  company.Lock(kApr2024 + 1);
  Click(editor.cmdDelete);
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
  Click(editor.cmdDelete);  // No is the default
  EXPECT_EQ(desk.TakeTexts(), (Texts{"Select record to delete.", "Month/Year locked. Cannot delete.",
                                     "Do you want to delete selected Advance EMI?"}));
  EXPECT_EQ(Amounts(), "1000 1000 1000 1000");
  desk.WillAnswer({Answer::Yes, Answer::Yes});
  Click(editor.cmdDelete);
  EXPECT_EQ(Amounts(), "1000 1500 1500");
  EXPECT_EQ(Flagged(), "1");
  EXPECT_TRUE(
      AuditHas("Loan:Month/Year = May/2024::EMI Amount = 1000.00:EMI Adjustment = Adjusted the EMI Amount "
               "for Future Months"));
  Delete(editor, 2, {Answer::Yes, Answer::Yes});
  EXPECT_EQ(Amounts(), "1000 1500");  // behind the last month there is nothing to put it on
  Delete(editor, 0, {Answer::Yes, Answer::No});
  EXPECT_EQ(Amounts(), "1500 1000");
  EXPECT_EQ(Amounts("MONTHYEAR - 24292"), "2 3");
  EXPECT_TRUE(AuditHas(":EMI Adjustment = Created New Month for Recovery"));
  Delete(editor, 0, {Answer::Yes});  // Cancel is the default
  EXPECT_EQ(Amounts(), "1000");
  company.Execute("DELETE FROM INS_EMIDETAIL");
  editor.FillEmiGrid();
  desk.TakeTexts();
  Click(editor.cmdDelete);
  EXPECT_EQ(desk.TakeTexts(), Texts{"No records to delete."});
}

// The components that the months lack are counted, and stored before the first write.
TEST_F(Editor, MonthsAsTheEntryScreenMakesThemKeepTheirAmounts) {
  const auto start = [this](std::size_t row) -> modEMIDet& {
    Clear();
    ReducingAsMade({3000, 3000, 3000}, 100);
    company.Execute("UPDATE INS_ADVLOAN SET ACTAMT = 9000");
    modEMIDet& editor = OpenOn(row);
    EXPECT_EQ(editor.fpgEMIDetail.Text(row, modEMIDet::kActualPrincipal), "3000.00");
    return editor;
  };
  Delete(start(1), 1, {Answer::Yes, Answer::No});
  EXPECT_EQ(Amounts(), "3100 3100 3100");
  EXPECT_EQ(Amounts("MDFINTAMT"), "100 100 100");
  modEMIDet& panel = start(0);
  Tick(panel.chkIntRateRedBal, true);
  panel.txtInt.SetText("12");
  panel.txtIntFrom.SetText("May/2024");
  panel.txtIntTo.SetText("May/2024");
  Click(panel.cmdIntCalculate);  // one percent of 6000
  EXPECT_EQ(Amounts(), "3100 3060 3100");
  Save(start(0), "3000", "100", {});
  EXPECT_EQ(Amounts("ACTPRNAMT"), "3000 3000 3000");
  desk.TakeTexts();
}

TEST_F(Editor, WhatIsTooLargeIsRefusedAsItWasTyped) {
  Reducing({1000, 1000}, 50);
  modEMIDet& editor = OpenOn(0);
  const std::string digits(309, '9');
  for (TextBox* box : {&editor.txtAmount, &editor.txtInterest}) {
    const std::string before = box->Text();
    Type(*box, digits);
    Click(editor.cmdSave);
    EXPECT_EQ(desk.TakeTexts(), Texts{kTooLarge});
    EXPECT_EQ(editor.Focus(), box);
    box->SetText(before);
  }
  EXPECT_EQ(Amounts(), "1050 1050");
}

TEST_F(Editor, MarksTheRowThatIsPicked) {
  Instruction(InstructionType::Advance, {1000, 1000});
  modEMIDet& editor = OpenOn(1);
  EXPECT_EQ(editor.fpgEMIDetail.activeRow, 1u);
  Save(editor, "1000.004", "", {});  // no change, to the paisa
  EXPECT_EQ(desk.TakeTexts(), Texts{"Updated"});
  EXPECT_EQ(editor.fpgEMIDetail.activeRow, kNoRow);
  ClickRow(editor.fpgEMIDetail, 0);
  Click(editor.cmdNew);
  EXPECT_EQ(editor.fpgEMIDetail.activeRow, kNoRow);
  EXPECT_EQ(editor.lblAmount.caption, "Amount");
  session.SepPiYN = true;
  EXPECT_EQ(Open<modEMIDet>().lblAmount.caption, "Modified Amount");
}

TEST_F(Editor, DeletesAReducingMonth) {
  Reducing({1000, 1000, 1000}, 50);
  modEMIDet& editor = Open<modEMIDet>();
  Delete(editor, 0, {Answer::Yes, Answer::Yes});
  EXPECT_EQ(Amounts("MDFPRNAMT"), "1500 1500");
  EXPECT_EQ(Amounts("MDFINTAMT"), "75 75");
  Delete(editor, 0, {Answer::Yes, Answer::No});
  EXPECT_EQ(Amounts(), "1575 1575");
  EXPECT_EQ(Amounts("MDFINTAMT"), "75 75");
}

TEST_F(Editor, ThePanelComputesARange) {
  Reducing({10000, 10000, 10000, 10000}, 0);
  company.Execute("UPDATE INS_ADVLOAN SET ACTAMT = 120000");
  company.Lock(kApr2024 + 3);
  modEMIDet& editor = Open<modEMIDet>();
  Tick(editor.chkIntRateRedBal, true);
  const struct {
    const char* fields;  // months, rate
    const char* box;
    const char* left;  // in the fields
  } cases[] = {
      {"|May/2024|12", "Please Specify 'From Month'. Format mmm/yyyy.", "|May/2024|12"},
      {"Jun/2024|May/2024|12", "'From Month' cannot be set later than 'To Month'.", "Jun/2024|May/2024|12"},
      {"May/2024|Jun/2024|", "Enter Interest Rate.", "May/2024|Jun/2024|"},
      {"May/2024|Jun/2024|0", "Enter Interest Rate.", "May/2024|Jun/2024|0"},
      {"May/2024|Jun/2024|abc", "Enter Interest Rate.", "May/2024|Jun/2024|abc"},
      {"May/2024|Jun/2024|-1", "Specify proper Interest.", "May/2024|Jun/2024|-1"},
      {"May/2024|Jul/2024|100", kOneLocked, "May/2024|Jul/2024|100"},
      {"May/2024|Jun/2024|100", "Specify proper Interest.", "May/2024|Jun/2024|"},
      {"Aug/2024|Aug/2025|12", "", "Aug/2024||12"},
      {"May/2024|Jun/2024|12", "Updated", "||"},
  };
  for (const auto& c : cases) {
    const Texts fields = Split(c.fields, "|");
    editor.txtIntFrom.SetText(fields[0]);
    editor.txtIntTo.SetText(fields[1]);
    editor.txtInt.SetText(fields.size() > 2 ? fields[2] : "");
    editor.cmdIntCalculate_Click();
    EXPECT_EQ(desk.TakeTexts(), *c.box == 0 ? Texts{} : Texts{c.box}) << c.fields;
    EXPECT_EQ(editor.txtIntFrom.Text() + "|" + editor.txtIntTo.Text() + "|" + editor.txtInt.Text(), c.left);
  }
  EXPECT_EQ(Amounts("MDFINTAMT"),
            "0 1100 1000 0");  // the balance has fallen by April, which is not in the range
  EXPECT_EQ(Amounts(), "10000 11100 11000 10000");
  EXPECT_EQ(Flagged(), "1 2");
  Type(editor.txtIntFrom, "may.2024");
  EXPECT_EQ(editor.txtIntFrom.Text() + " " + editor.txtIntTo.Text(), "May/2024 Jul/2024");
}

// The entry of advances does not open it for them, that of premiums does.
TEST_F(Editor, IsShutForReadersAndLockedEmployees) {
  Instruction(InstructionType::Advance, {100, 100});
  for (const bool reader : {true, false}) {
    session.ReadOnlyUser = reader;
    session.EmpLockStatus = reader ? 0 : 1;
    const modEMIDet& editor = Open<modEMIDet>();
    EXPECT_FALSE(editor.cmdSave.enabled || editor.cmdDelete.enabled || editor.cmdIntCalculate.enabled);
  }
}

TEST_F(Editor, AFailureIsShownAsAnError) {
  Instruction(InstructionType::Advance, {100, 100});
  modEMIDet& editor = OpenOn(0);
  company.Execute("DROP TABLE INS_EMIDETAIL");
  Click(editor.cmdSave);
  EXPECT_EQ(desk.Boxes().size(), 1u);
  EXPECT_EQ(desk.LastBox().icon, Icon::Critical);
  EXPECT_NE(desk.LastBox().text.find(" : "), std::string::npos);
  EXPECT_FALSE(editor.IsUnloaded());
  EXPECT_TRUE(editor.cmdClose.enabled);
}

}  // namespace
}  // namespace ktl
