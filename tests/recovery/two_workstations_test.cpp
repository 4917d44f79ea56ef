#include <algorithm>
#include <utility>

#include "recovery/modEMIDet.h"
#include "recovery/modInterestMaster.h"
#include "recovery/modReceipts.h"
#include "recovery_fixture.h"

namespace ktl {
namespace {

constexpr const char* kChanged =
    "Row cannot be located for updating. Some values may have been changed since it was last read.";

// A second program, on the same instruction.
class OtherProgram : public Workstation {
 public:
  OtherProgram(test::TestCompany& company, const SmallParent& like)
      : Workstation(company), parent(session, like.key, like.reducing) {}
  template <typename ScreenType>
  ScreenType& Open() {
    return Workstation::Open<ScreenType>(parent);
  }

  SmallParent parent;
};

class TwoWorkstations : public RecoveryTest {
 protected:
  // The second one has its screen open before the first one writes.
  template <typename ScreenType>
  std::pair<ScreenType*, ScreenType*> OpenBoth() {
    second = std::make_unique<OtherProgram>(company, *parent);
    ScreenType& late = second->Open<ScreenType>();
    return {&Open<ScreenType>(), &late};
  }
  std::string Receipts() {
    return company.Rows("SELECT COUNTER, RCPTAMT FROM INS_RECEIPTS ORDER BY COUNTER");
  }

  std::unique_ptr<OtherProgram> second;
};

void EditMonth(modEMIDet& editor, std::size_t row, const char* amount) {
  ClickRow(editor.fpgEMIDetail, row);
  Type(editor.txtAmount, amount);
  Click(editor.cmdSave);
}

void AddMonth(modEMIDet& editor, const char* month, const char* amount) {
  Click(editor.cmdNew);
  Type(editor.txtFromMonth, month);
  Type(editor.txtToMonth, month);
  Type(editor.txtAmount, amount);
  Click(editor.cmdSave);
}

void Receive(modReceipts& receipts, const char* amount) {
  Click(receipts.cmdNew);
  Type(receipts.txtRcptDate, "15/04/2024");
  Type(receipts.txtAmount, amount);
  Click(receipts.cmdSave);
}

TEST_F(TwoWorkstations, AChangedMonthIsRefusedAndShownAnew) {
  using Act = std::function<void(modEMIDet&)>;
  const auto edit = [](std::size_t row, const char* amount) -> Act {
    return [=](modEMIDet& editor) { EditMonth(editor, row, amount); };
  };
  const auto add = [](const char* month, const char* amount) -> Act {
    return [=](modEMIDet& editor) { AddMonth(editor, month, amount); };
  };
  const auto deleted = [](modEMIDet& editor) {
    ClickRow(editor.fpgEMIDetail, 1);
    Click(editor.cmdDelete);
  };
  const auto panel = [](modEMIDet& editor) {
    Tick(editor.chkIntRateRedBal, true);
    Type(editor.txtInt, "12");
    Type(editor.txtIntFrom, "Apr/2024");
    Click(editor.cmdIntCalculate);
  };
  const struct {
    const char* what;
    bool reducing;
    Act first;
    std::vector<Answer> answers;
    Act late;
    std::string months;  // afterwards
  } cases[] = {
      {"the same month edited", false, edit(0, "700"), {Answer::Cancel}, edit(0, "600"), "700 1000 1000"},
      {"a month to adjust edited", false, edit(2, "900"), {Answer::Cancel}, edit(0, "600"), "1000 1000 900"},
      {"a changed month deleted", false, edit(1, "700"), {Answer::Cancel}, deleted, "1000 700 1000"},
      {"a deleted month edited", false, deleted, {Answer::Yes, Answer::No}, edit(1, "600"), "1000 1000 1000"},
      {"a month added", false, add("Jul/2024", "5"), {Answer::Yes}, add("Jul/2024", "6"), "1000 1000 1000 5"},
      {"interest over a changed month", true, edit(1, "700"), {Answer::Cancel}, panel, "1000 700 1000"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    Clear();
    if (each.reducing) {
      Reducing({1000, 1000, 1000}, 0);
    } else {
      Instruction(InstructionType::Advance, {1000, 1000, 1000});
    }
    const auto [first, late] = OpenBoth<modEMIDet>();
    desk.WillAnswer(each.answers);
    each.first(*first);
    second->desk.WillAnswer({Answer::Yes, Answer::Yes});
    each.late(*late);
    EXPECT_EQ(second->desk.LastBox().text, kChanged);
    EXPECT_EQ(Amounts(), each.months);
    EXPECT_EQ(late->fpgEMIDetail.rows.size(), std::ranges::count(each.months, ' ') + 1U);
    EXPECT_EQ(late->txtAmount.Text(), "");
  }
}

TEST_F(TwoWorkstations, NothingIsSavedToADeletedInstruction) {
  Instruction(InstructionType::Advance, {1000, 1000, 1000});
  const auto [editor, lateEditor] = OpenBoth<modEMIDet>();
  OtherProgram third(company, *parent);
  modReceipts& lateReceipts = third.Open<modReceipts>();
  Clear();
  second->desk.WillAnswer({Answer::Yes});
  AddMonth(*lateEditor, "Jul/2024", "50");
  Receive(lateReceipts, "50");
  EXPECT_EQ(second->desk.LastBox().text, kChanged);
  EXPECT_EQ(third.desk.LastBox().text, kChanged);
  EXPECT_EQ(Amounts() + Receipts(), "");
}

TEST_F(TwoWorkstations, WhatIsNewBecomesTheNextOne) {
  Instruction(InstructionType::Advance, {1000, 1000, 1000});
  const auto [editor, lateEditor] = OpenBoth<modEMIDet>();
  for (ScriptedDesk* person : {&desk, &second->desk}) person->WillAnswer({Answer::Yes});
  AddMonth(*editor, "Jul/2024", "50");
  AddMonth(*lateEditor, "Aug/2024", "60");
  EXPECT_EQ(company.Rows("SELECT MONTHYEAR - 24292, COUNTER, MDFYAMT FROM INS_EMIDETAIL WHERE COUNTER > 3"),
            "3|4|50\n4|5|60");

  Clear();
  Instruction(InstructionType::Advance, {1000, 1000, 1000});
  const auto [receipts, lateReceipts] = OpenBoth<modReceipts>();
  Click(lateReceipts->cmdNew);  // both are shown number 1
  desk.WillAnswer({Answer::Yes});
  Receive(*receipts, "300");
  second->desk.WillAnswer({Answer::Yes});
  Receive(*lateReceipts, "200");
  EXPECT_EQ(Receipts(), "1|300\n2|200");
  EXPECT_EQ(company.One("SELECT SUM(MDFYAMT) FROM INS_EMIDETAIL").ToDouble(), 3000 - 300 - 200);
}

TEST_F(TwoWorkstations, AReceiptRestsOnWhatIsStillRecoverable) {
  Instruction(InstructionType::Advance, {1000, 1000, 1000});
  const auto [receipts, late] = OpenBoth<modReceipts>();
  Click(late->cmdNew);
  Type(late->txtRcptDate, "15/04/2024");
  Type(late->txtAmount, "1000");
  company.Execute("UPDATE INS_EMIDETAIL SET EMIRECVYN = 1 WHERE COUNTER <> 3");
  company.Execute("UPDATE INS_EMIDETAIL SET MDFYAMT = 1500 WHERE COUNTER = 1");
  second->desk.WillAnswer({Answer::Cancel});
  Click(late->cmdSave);  // 500 can be recovered now
  EXPECT_EQ(second->desk.LastBox().text, kChanged);
  EXPECT_EQ(Receipts(), "");

  desk.WillAnswer({Answer::Cancel});
  Receive(*receipts, "100");
  ClickRow(receipts->fpgReceipts, 0);
  OtherProgram third(company, *parent);
  modReceipts& other = third.Open<modReceipts>();
  ClickRow(other.fpgReceipts, 0);
  Type(other.txtAmount, "150");
  third.desk.WillAnswer({Answer::Cancel});
  Click(other.cmdSave);
  desk.WillAnswer({Answer::Yes, Answer::Yes});
  Click(receipts->cmdDelete);
  EXPECT_EQ(desk.LastBox().text, kChanged);
  EXPECT_EQ(Receipts(), "1|150");
}

TEST_F(TwoWorkstations, InterestIsNotWrittenOverChangedMonths) {
  Reducing({1000, 1000}, 10);
  const auto [first, late] = OpenBoth<modInterestMaster>();
  TypeCell(first->fpgSIMaster, 0, modInterestMaster::kModifiedInterest, "20");
  Click(first->cmdSave);
  TypeCell(late->fpgSIMaster, 1, modInterestMaster::kModifiedInterest, "30");
  Click(late->cmdSave);
  EXPECT_EQ(second->desk.LastBox().text, kChanged);
  EXPECT_EQ(Amounts("MDFINTAMT"), "20 10");
  EXPECT_EQ(late->fpgSIMaster.Text(0, modInterestMaster::kModifiedInterest), "20.00");
}

// A question in the midst of an adjustment lets the others write; when they change the same months, the rest
// of the adjustment is dropped.
TEST_F(TwoWorkstations, AQuestionOfAnAdjustmentKeepsNobodyWaiting) {
  for (const bool sameMonths : {false, true}) {
    Clear();
    Instruction(InstructionType::Advance, {1000, 1000, 1000});
    const auto [first, late] = OpenBoth<modEMIDet>();
    ClickRow(late->fpgEMIDetail, 0);
    Type(late->txtAmount, "9000");
    second->desk.WillAnswer({Answer::Yes, Answer::Yes});
    int asked = 0;  // to adjust the amount, then to make negative ones zero
    second->desk.whileItStands = [&](const MessageBox& box) {
      if (box.buttons != Buttons::OK && ++asked == 2)
        company.Execute(sameMonths ? "UPDATE INS_EMIDETAIL SET MDFYAMT = 1 WHERE COUNTER = 3"
                                   : "UPDATE MAS_EMPLOYEE SET EMPNAME = 'Meera'");
    };
    Click(late->cmdSave);
    EXPECT_EQ(second->desk.LastBox().text, sameMonths ? kChanged : "Updated");
    EXPECT_EQ(Amounts(), sameMonths ? "9000 1000 1" : "9000 0 0");
  }
}

}  // namespace
}  // namespace ktl
