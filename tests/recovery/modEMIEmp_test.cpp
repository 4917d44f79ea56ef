#include "recovery/modEMIEmp.h"

#include <fmt/format.h>

#include <random>

#include "common/month_year.h"
#include "recovery_fixture.h"

namespace ktl {
namespace {

using View = modEMIEmp;

struct RefreshedLists final : InstructionLists {
  void RefreshDetail() override { order += "detail "; }
  void RefreshEMI() override { order += "emi "; }
  void RefreshReceipts() override { order += "receipts "; }
  void UpdateOverview() override { order += "overview "; }
  std::string order;
};

// Employee 17 has, each from Apr/2024 on, 500 a month of an advance, 1000 of a loan that a salary owns, 1000
// of another one, 200 of a policy; all with three months.
class MonthView : public RecoveryTest {
 protected:
  MonthView() {
    company.Name(1, "Tour Advance");
    company.Name(2, "Car Loan").SeparateInterest();
    company.Name(2, "Bike Loan");
    company.Advance(17, 4, "Tour Advance", 1500);
    company.Loan(17, 1, "Car Loan", 3000);
    company.Loan(17, 2, "Bike Loan", 3000);
    company.Row("INS_OTHER")
        .With("EMPID", 17)
        .With("SERIALNO", 1)
        .With("SITYPE", 3)
        .With("OTHNAME", "Policy");
    for (int month = 0; month < 3; ++month) {
      company.Emi(17, 1, 4, month + 1, kApr2024 + month, 500);
      company.Emi(17, 2, 1, month + 1, kApr2024 + month, 1000);
      company.Emi(17, 2, 2, month + 1, kApr2024 + month, 1000);
      company.Emi(17, 3, 1, month + 1, kApr2024 + month, 200);
    }
  }
  View& OpenView(int type = 0, const std::string& month = "May/2024", long employee = 17) {
    return Workstation::Open<View>(
        MonthViewRequest{employee, InstructionType{type}, month, type == 0 ? nullptr : &lists});
  }
  // "Bike Loan 1000.00 0" a row: name, modified amount, changed mark.
  static Texts Shown(const View& view) {
    Texts rows;
    for (std::size_t row = 0; row < view.fpgEMIDetail.rows.size(); ++row)
      rows.push_back(view.fpgEMIDetail.Text(row, View::kName) + " " +
                     view.fpgEMIDetail.Text(row, View::kModified) + " " +
                     view.fpgEMIDetail.Text(row, View::kChanged));
    return rows;
  }
  std::string Stored() {
    return company.Rows("SELECT * FROM INS_EMIDETAIL ORDER BY SITYPE, SERIALNO, COUNTER");
  }

  RefreshedLists lists;
};

TEST_F(MonthView, ShowsTheMonthOfAllTypesOrOfOne) {
  View& all = OpenView();
  EXPECT_EQ(all.lblEmpNameVal.caption, "Asha Rao");
  EXPECT_EQ(all.lblEmpIDRef.caption, "17");
  EXPECT_EQ(Shown(all),
            (Texts{"Tour Advance 500.00 0", "Policy 200.00 0", "Bike Loan 1000.00 0", "Car Loan 1000.00 0"}));
  EXPECT_TRUE(all.fpgEMIDetail.IsLocked(3, View::kModified) && all.fpgEMIDetail.IsLocked(3, View::kRemarks));
  EXPECT_FALSE(all.fpgEMIDetail.IsLocked(2, View::kModified));
  EXPECT_EQ(all.fpgEMIDetail.At(3, View::kName).backColour, kButtonFaceColour);
  EXPECT_EQ(machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "4711");
  all.Unload();
  EXPECT_EQ(machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "0");
  machine.settings.Set("ExeTalk", "HWNDKTLStIns", "99");
  EXPECT_EQ(Shown(OpenView(2)), (Texts{"Bike Loan 1000.00 0", "Car Loan 1000.00 0"}));
  EXPECT_EQ(Shown(OpenView(3)), Texts{"Policy 200.00 0"});
  top->Unload();
  EXPECT_EQ(machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "99");  // a child leaves it alone
}

TEST_F(MonthView, BeginsWithTheMonthAskedForOrTheNewestOfTheEmployee) {
  company.Employee(18).Named("Other");
  company.Emi(18, 2, 1, 1, kApr2024 + 20, 10);
  EXPECT_EQ(OpenView(0, "").cmbMonthYear.Text(), "Jun/2024");
  EXPECT_EQ(OpenView(0, "4.2024").cmbMonthYear.Text(), "Apr/2024");
  EXPECT_EQ(OpenView(0, "", 18).cmbMonthYear.Text(), "Dec/2025");
  EXPECT_EQ(OpenView().cmbMonthYear.Rows().front().text, "Dec/2025");  // of everybody
  EXPECT_EQ(OpenView().cmbMonthYear.Rows().size(), 4u);
  EXPECT_EQ(Shown(OpenView(0, "abc")), Texts{});
  EXPECT_EQ(OpenView(0, "", 99).IsUnloaded(), true);
  EXPECT_EQ(OpenView(2, "", 0).IsUnloaded(), true);
  EXPECT_EQ(desk.TakeTexts(), (Texts{"abc is no month.", "There is no employee 99.", "Select employee."}));
}

TEST_F(MonthView, WritesWhatWasChangedInThatMonthAlone) {
  company.Execute("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 1");
  View& view = OpenView(2);
  TypeCell(view.fpgEMIDetail, 0, View::kModified, "900.555");
  TypeCell(view.fpgEMIDetail, 0, View::kRemarks, " on request ");
  Click(view.cmdUpdate);
  EXPECT_EQ(desk.TakeLines(), "Information | Saving Information | Updated");
  EXPECT_EQ(lists.order, "detail overview emi ");
  EXPECT_EQ(
      company.Rows("SELECT MONTHYEAR - 24292, MDFYAMT, EMIAMT, REMARKS FROM INS_EMIDETAIL WHERE REMARKS "
                   "IS NOT NULL OR MDFYAMT <> EMIAMT"),
      "1|900.56|1000|on request");
  EXPECT_EQ(Flagged(), "1");
  EXPECT_EQ(LastAudit(),
            "19|17|Standing Instructions - Loan Updated|Loan Updated::SI Type = Loan:SI Name = Bike "
            "Loan:Month/Year = May/2024:Amount = 900.56 (1000.00):Remarks = on request ()");
  EXPECT_EQ(Shown(view).front(), "Bike Loan 900.56 0");
  TypeCell(view.fpgEMIDetail, 0, View::kRemarks, "");
  session.auditOn = false;
  Click(view.cmdUpdate);
  EXPECT_EQ(company.Rows("SELECT COUNT(*) FROM SEC_AUDITTRAIL"), "1");
  TypeCell(view.fpgEMIDetail, 0, View::kModified, "1");
  Click(view.cmdUndo);
  EXPECT_EQ(Shown(view).front(), "Bike Loan 900.56 0");
}

TEST_F(MonthView, AsksBeforeMoreIsRecoveredThanThereIs) {
  company.Receipt(17, 2, 2, 1, "01/Apr/2024", 50);
  company.Execute("UPDATE INS_ADVLOAN SET INTAMT = 60 WHERE SERIALNO = 2");
  View& view = OpenView();  // of the loan: 3060 given, 2000 in the other months, 50 received
  const struct {
    std::size_t row;
    const char* typed;
    bool asked;
    Answer answer;
    const char* shown;
  } cases[] = {{2, "1010", false, Answer::Yes, "Bike Loan 1010.00 1"},
               {2, "1010.01", true, Answer::Yes, "Bike Loan 1010.01 1"},
               {2, "2000", true, Answer::No, "Bike Loan 1000.00 1"},
               {0, "501", true, Answer::No, "Tour Advance 500.00 1"},
               {1, "9999999999.99", false, Answer::No, "Policy 9999999999.99 1"}};
  for (const auto& each : cases) {
    desk.WillAnswer({each.answer});
    TypeCell(view.fpgEMIDetail, each.row, View::kModified, each.typed);
    EXPECT_EQ(desk.AnswersLeft(), each.asked ? 0u : 1u) << each.typed;
    if (!each.asked) desk.WillAnswer({}), desk.Confirm("", "");
    EXPECT_EQ(Shown(view)[each.row], each.shown);
  }
}

TEST_F(MonthView, WhatIsNoAmountLeavesTheOldOne) {
  View& view = OpenView();
  for (const char* typed : {"-5", "abc", "1.5.5", "10000000000"})
    TypeCell(view.fpgEMIDetail, 0, View::kModified, typed);
  EXPECT_EQ(desk.TakeTexts(),
            (Texts{"Specify proper amount.", "Specify proper amount.", "Specify proper amount.",
                   "Amount should be less than 9,99,99,99,999.99"}));
  EXPECT_EQ(Shown(view).front(), "Tour Advance 500.00 0");
  TypeCell(view.fpgEMIDetail, 0, View::kRemarks, std::string(1000, 'x'));
  EXPECT_EQ(view.fpgEMIDetail.Text(0, View::kRemarks), std::string(100, 'x'));
}

TEST_F(MonthView, RefusesAndWritesNothing) {
  company.Execute("UPDATE MAS_OPTSETFEATURE SET EMPLOCKYN = 1");
  const struct {
    const char* against;
    const char* box;
  } cases[] = {
      {"UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR = 24293",
       "Information | KestrelLedger - Standing Instruction | Month is locked.  Cannot update."},
      {"INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR, LOCKYN) VALUES (17, 24293, 1)",
       "Information | Permission Denied | Employee has been locked. Cannot Update."},
      {"UPDATE INS_EMIDETAIL SET MDFYAMT = 7 WHERE SITYPE = 1 AND COUNTER = 2",
       "Exclamation | KestrelLedger - Standing Instruction | Row cannot be located for updating. Some values may "
       "have been changed since it was last read."},
      {"DELETE FROM INS_EMIDETAIL WHERE SITYPE = 3 AND COUNTER = 2",
       "Exclamation | KestrelLedger - Standing Instruction | Row cannot be located for updating. Some values may "
       "have been changed since it was last read."},
      {"DROP TABLE SEC_EMPLOCK", "Critical"},
  };
  for (const auto& each : cases) {
    View& view = OpenView();
    TypeCell(view.fpgEMIDetail, 0, View::kModified, "400");
    company.Execute(each.against);
    const std::string before = Stored();
    Click(view.cmdUpdate);
    EXPECT_EQ(desk.TakeLines().find(each.box), 0u) << each.against;
    EXPECT_EQ(Stored(), before);
    EXPECT_EQ(Flagged(), "");
    if (std::string(each.against).find("MAS_MONTHYEAR") != std::string::npos) {
      EXPECT_TRUE(OpenView().lblMonthLocked.visible);
      EXPECT_TRUE(OpenView().fpgEMIDetail.IsLocked(0, View::kModified));
    }
    company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
    if (each.box != std::string("Critical")) company.Execute("DELETE FROM SEC_EMPLOCK");
  }
  company.Execute("DELETE FROM INS_EMIDETAIL");
  Click(OpenView().cmdUpdate);
  EXPECT_EQ(desk.TakeTexts(), Texts{"No records to update."});
}

TEST_F(MonthView, WhoMayNotSaveDoesNot) {
  session.MultiLoginYN = true;
  company.Execute("INSERT INTO SEC_USERLIST (UserID, USERNAME, GROUPID) VALUES (2, 'RAVI', 5)");
  for (const auto& [type, number] : std::map<int, int>{{0, 341}, {1, 211}, {2, 236}, {3, 258}}) {
    company.Execute("DELETE FROM SEC_BUTPER");
    company.Execute(
        fmt::format("INSERT INTO SEC_BUTPER (BUTID, GROUPID, BUTALLOWYN) VALUES ({}, 5, 0)", number));
    View& view = OpenView(type);
    TypeCell(view.fpgEMIDetail, 0, View::kModified, "1");
    Click(view.cmdUpdate);
    desk.WillAnswer({Answer::Yes});
    EXPECT_FALSE(view.Form_QueryUnload());
    EXPECT_EQ(desk.TakeTexts(),
              (Texts{"Permission denied.", "Do you want to Save entered details?", "Permission denied."}));
  }
  for (const bool locked : {true, false}) {
    company.Execute(fmt::format("UPDATE MAS_EMPLOYEE SET LOCKYN = {:d}", locked));
    session.ReadOnlyUser = !locked;
    View& view = OpenView();
    EXPECT_FALSE(view.cmdUpdate.enabled);
    EXPECT_TRUE(view.fpgEMIDetail.IsLocked(0, View::kModified));
  }
  EXPECT_EQ(Stored().find("|1.0|"), std::string::npos);
}

TEST_F(MonthView, ChangesAreAskedForBeforeTheMonthGoes) {
  View& view = OpenView();
  const auto change = [&](const char* amount, std::vector<Answer> answers, const char* month) {
    TypeCell(view.fpgEMIDetail, 0, View::kModified, amount);
    desk.WillAnswer(std::move(answers));
    Pick(view.cmbMonthYear, month);
    return view.cmbMonthYear.Text() + " " + Shown(view).front();
  };
  EXPECT_EQ(change("400", {Answer::Yes}, "Jun/2024"), "Jun/2024 Tour Advance 500.00 0");
  EXPECT_EQ(change("450", {Answer::No}, "May/2024"), "May/2024 Tour Advance 400.00 0");
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1");
  EXPECT_EQ(change("300", {Answer::Yes}, "Jun/2024"), "May/2024 Tour Advance 300.00 1");
  EXPECT_EQ(desk.TakeTexts(),
            (Texts{"Do you want to Save entered details?", "Updated", "Do you want to Save entered details?",
                   "Do you want to Save entered details?", "Month is locked.  Cannot update."}));
  view.Unload();  // No by default: dropped
  EXPECT_TRUE(view.IsUnloaded());
  EXPECT_EQ(company.Rows("SELECT MDFYAMT FROM INS_EMIDETAIL WHERE SITYPE = 1 ORDER BY COUNTER"),
            "500\n400\n500");
}

// Random amounts into reducing loans: their month alone moves, its parts stay its sum, and the interest gives
// way only when the principal is used up.
TEST_F(MonthView, TheDifferenceGoesToThePrincipalFirst) {
  company.Execute("UPDATE INS_MASTER SET SEPPIYN = 0, REDUCINGBALYN = 1");
  std::mt19937 random{2895};
  for (int run = 0; run < 60; ++run) {
    Clear();
    run % 2 == 0 ? Reducing({700, 800, 900, 1000}, 90) : ReducingAsMade({700, 800, 900, 1000}, 90);
    const std::size_t month = random() % 4;
    const double amount = static_cast<double>(random() % 150000) / 100;
    View& view = OpenView(2, FnStrFormatMonthYear(kApr2024 + static_cast<long>(month)));
    if (desk.AnswersLeft() == 0) desk.WillAnswer({Answer::Yes});
    TypeCell(view.fpgEMIDetail, 0, View::kModified, fmt::format("{:.2f}", amount));
    Click(view.cmdUpdate);
    const double interest = std::min(amount, 90.0);
    for (std::size_t other = 0; other < 4; ++other) {
      const double sum = 790 + 100 * static_cast<double>(other);
      const std::string where = fmt::format(" FROM INS_EMIDETAIL WHERE COUNTER = {}", other + 1);
      const auto number = [&](const char* column) {
        return company.One("SELECT " + std::string(column) + where).NumberOr0();
      };
      EXPECT_NEAR(number("MDFYAMT"), other == month ? amount : sum, 1e-9);
      EXPECT_NEAR(number("MDFINTAMT"), other == month ? interest : 90, 1e-9);
      EXPECT_NEAR(number("MDFPRNAMT"), other == month ? amount - interest : sum - 90, 1e-9);
    }
    EXPECT_EQ(Flagged(), std::to_string(month));
  }
}

}  // namespace
}  // namespace ktl
