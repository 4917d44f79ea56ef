#include "benefit/frmSBI.h"
#include "benefit/frmSepInt.h"
#include "benefit/frmUpdateInt.h"
#include "benefit_fixture.h"

namespace ktl {
namespace {

constexpr const char* kYear = "2026 - 2027";
constexpr const char* kAsk = "Interest is not entered for selected Financial Year. Do you want to enter now?";

class Months : public BenefitTest {
 protected:
  // 1 has one vehicle loan and one of his own rate, 2 two vehicle loans, 3 pays no tax.
  Months() {
    Employee(1);
    Employee(2);
    Employee(3, false);
    Loan(1, {1000, 1000, 1000}, "Vehicle Loan", 1, kApr2026 + 8);
    Loan(1, {2000, 2000}, "Own Loan", 2);
    Loan(2, {600, 600}, "Vehicle Loan", 1);
    Loan(2, {1200, 1200}, "Vehicle Loan", 2);
    Loan(3, {1000});
    company.Receipt(1, 2, 1, 1, "31/Jan/2027", 500);
    company.Receipt(2, 2, 2, 1, "10/Apr/2026", 400);
    Charge(2, "= 24316", 1.5);
  }
};

// Of 0.75 a month: 3000 is 22.50; in January 500 is taken off, in February 1000 - 500 is left.
TEST_F(Months, ShowsEachMonthOfALoan) {
  frmSepInt& months = Open<frmSepInt>();
  EXPECT_EQ(months.cmbFinYear.Text() + months.cmbLoan.Text(), std::string(kYear) + "Own Loan");
  EXPECT_EQ(months.lblIntAmt.caption, "Int. Rate: 12%");
  EXPECT_EQ(Lines(months.fpgSepInt), Texts{"1|Person 1|Own Loan,Vehicle Loan"});
  EXPECT_EQ(Lines(months.fpgIntDetail), (Texts{"Apr/2026|4000.00|2000.00|0.00|40.00|40.00",
                                               "May/2026|2000.00|2000.00|0.00|20.00|20.00"}));
  Pick(months.cmbLoan, "Vehicle Loan");
  EXPECT_EQ(months.lblIntAmt.caption, "Int. Rate: 9%");
  EXPECT_EQ(months.lblEmpCount.caption, "Employee Listed : 2");
  EXPECT_FALSE(months.cmbSlno.enabled);
  EXPECT_EQ(Lines(months.fpgIntDetail),
            (Texts{"Dec/2026|3000.00|1000.00|0.00|22.50|22.50", "Jan/2027|1500.00|1000.00|0.00|11.25|11.25",
                   "Feb/2027|500.00|1000.00|0.00|3.75|3.75"}));
  company.Execute("UPDATE INS_RECEIPTS SET RCPTAMT = 1000 WHERE EMPID = 1");
  ClickRow(months.fpgSepInt, 0);
  EXPECT_EQ(months.fpgIntDetail.rows.size(), 2u);  // without a balance a month drops out
}

// Two loans of the name: the balance forgets receipts, the difference knows those of the very month.
TEST_F(Months, TakesOneOfTwoLoansByItsNumber) {
  frmSepInt& months = Open<frmSepInt>();
  Pick(months.cmbLoan, "Vehicle Loan");
  ClickRow(months.fpgSepInt, 1);
  EXPECT_TRUE(months.cmbSlno.enabled);
  EXPECT_EQ(months.cmbSlno.Text(), "1");
  EXPECT_EQ(Lines(months.fpgIntDetail),
            (Texts{"Apr/2026|1200.00|600.00|1.50|9.00|7.50", "May/2026|600.00|600.00|0.00|4.50|4.50"}));
  Pick(months.cmbSlno, "2");
  EXPECT_EQ(Lines(months.fpgIntDetail),
            (Texts{"Apr/2026|2400.00|1200.00|1.50|18.00|13.50", "May/2026|1200.00|1200.00|0.00|9.00|9.00"}));
  Type(months.search.txtSearch, "son 2");
  months.search.tmrSearch.onTimer();
  EXPECT_EQ(Lines(months.fpgSepInt), Texts{"2|Person 2|Vehicle Loan"});
  EXPECT_EQ(months.cmbSlno.Text(), "1");  // the first one of the list is shown
  Type(months.search.txtSearch, "'");
  months.search.tmrSearch.onTimer();
  EXPECT_EQ(months.lblEmpCount.caption, "Employee Listed : 0");
  EXPECT_TRUE(months.fpgIntDetail.rows.empty());
  Click(months.mnuExport);
  Click(months.cmdUpdate);
  EXPECT_EQ(desk.TakeTexts(), (Texts{"No Records Found", "No records found"}));
}

TEST_F(Months, OffersToEnterTheRate) {
  frmSepInt& months = Open<frmSepInt>();
  desk.WillAnswer({Answer::No});
  Pick(months.cmbFinYear, "2025 - 2026");
  EXPECT_EQ(months.cmbFinYear.Text() + months.cmbLoan.Text() + months.cmbSlno.Text(), "");
  EXPECT_TRUE(months.fpgSepInt.rows.empty() && months.fpgIntDetail.rows.empty());
  Click(months.cmdUpdate);
  desk.WillAnswer({Answer::Yes});
  desk.WillWorkOn<frmSBI>([](frmSBI& rates) {
    Pick(rates.cmbFinYear, "2025 - 2026");
    Type(rates.txtIntAmt, "6");
    Click(rates.cmdSave);
  });
  Pick(months.cmbFinYear, "2025 - 2026");
  EXPECT_EQ(desk.TakeTexts(), (Texts{kAsk, "Select Financial Year", kAsk}));
  EXPECT_EQ(months.cmbFinYear.Text(), "");
  Pick(months.cmbFinYear, "2025 - 2026");
  Pick(months.cmbLoan, "Vehicle Loan");
  EXPECT_EQ(months.lblIntAmt.caption, "Int. Rate: 6%");
}

TEST_F(Months, OpensTheYearAsItIsShown) {
  company.Execute("UPDATE MAS_OPTSET SET EMPREFNOYN = 1");
  LoadOptionSet(session);
  frmSepInt& months = Open<frmSepInt>();
  Pick(months.cmbLoan, "Vehicle Loan");
  Type(months.search.txtSearch, "R1");
  months.search.tmrSearch.onTimer();
  EXPECT_EQ(Lines(months.fpgSepInt), Texts{"R1|Person 1|Own Loan,Vehicle Loan"});
  std::string title;
  desk.WillWorkOn<frmUpdateInt>([&](frmUpdateInt& update) {
    title = update.caption + " " + update.cmbFinYear.Text() + " " + update.search.txtSearch.Text();
    EXPECT_EQ(update.fpgUpdate.columns[frmUpdateInt::kEmployee].caption, session.options.REFNOCAP);
    EXPECT_EQ(Lines(update.fpgUpdate, 1).size(), 1u);
    DblClick(update.fpgUpdate, 0, frmUpdateInt::kEmployee);
    EXPECT_EQ(update.lblDetailId.caption, "EmpID: 1");  // the number itself here
  });
  Click(months.cmdUpdate);
  EXPECT_EQ(title, std::string("Update Interest ") + kYear + " R1");
  EXPECT_EQ(months.fpgSepInt.activeRow, 0u);
  EXPECT_EQ(company.Rows("SELECT COUNT(*) FROM MAS_LOANINTUPDATE"), "2");
}

// Whom the user may not see is in neither list.
TEST_F(Months, KeepsToWhomTheUserMaySee) {
  company.Execute("UPDATE MAS_OPTSET SET CLASSSECURITYN = 1");
  company.Execute("INSERT INTO SEC_CLASSEMP (USERNAME, EMPID) VALUES ('RAVI', 2)");
  frmSepInt& months = Open<frmSepInt>();
  Pick(months.cmbLoan, "Vehicle Loan");
  EXPECT_EQ(Lines(months.fpgSepInt), Texts{"2|Person 2|Vehicle Loan"});
  EXPECT_EQ(Lines(Open<frmUpdateInt>(YearlyBenefitRequest{kYear, ""}).fpgUpdate, 1).size(), 1u);
}

}  // namespace
}  // namespace ktl
