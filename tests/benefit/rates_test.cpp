#include "benefit/frmSBI.h"
#include "benefit_fixture.h"

namespace ktl {
namespace {

class Rates : public BenefitTest {
 protected:
  void Fill(frmSBI& rates, const char* year, const char* rate, const char* remarks = nullptr,
            std::vector<std::size_t> ticks = {}) {
    Click(rates.cmdNew);
    if (*year != '\0') Pick(rates.cmbFinYear, year);
    Type(rates.txtIntAmt, rate);
    if (remarks != nullptr) Type(rates.txtLoanType, remarks);
    for (const std::size_t row : ticks) TickCell(rates.fpgLoan, row, frmSBI::kTick, true);
  }
  std::string Table() {
    return company.Rows(
        "SELECT INTID, FINANCIALYEAR, INTEREST, LOANTYPE, LOANNAME FROM MAS_LOANINT ORDER BY INTID");
  }
};

constexpr const char* kOld = "1|2026|9||\n2|2026|12|Owned|#$#Own Loan#$##$#Gone Loan#$#";

TEST_F(Rates, RefusesInItsOrder) {
  frmSBI& rates = Open<frmSBI>();
  const struct {
    const char *year, *rate, *remarks;
    const char* refused;
  } cases[] = {
      {"", "", nullptr, "Select Financial Year"},
      {"2025 - 2026", "", nullptr, "Enter the Interest"},
      {"2025 - 2026", "abc", nullptr, "Enter the Interest"},  // cleared when the field is left
      {"2025 - 2026", "0", nullptr, "Interest should be greater than 0"},
      {"2025 - 2026", "0.004", nullptr, "Interest should be greater than 0"},
      {"2025 - 2026", "-1", nullptr, "Interest should be greater than 0"},
      {"2025 - 2026", "100.01", nullptr, "Enter Proper Interest"},
      {"2025 - 2026", "1e9", nullptr, "Enter Proper Interest"},
      {"2026 - 2027", "8", "", "Enter Remarks"},
      {"2026 - 2027", "8", "Cars", "Select atleast one Loan"},
  };
  for (const auto& each : cases) {
    Fill(rates, each.year, each.rate, each.remarks);
    Click(rates.cmdSave);
    EXPECT_EQ(desk.TakeTexts(), Texts{each.refused}) << each.rate;
    EXPECT_EQ(Table(), kOld);
  }
  Fill(rates, "", "abc");
  EXPECT_EQ(rates.txtIntAmt.Text(), "");
  EXPECT_EQ(rates.Focus(), &rates.txtIntAmt);
  Type(rates.txtIntAmt, "1.2.3");
  EXPECT_EQ(rates.txtIntAmt.Text(), "1.23");
  ClickRow(rates.fpgInterest, 1);
  Pick(rates.cmbFinYear, "2025 - 2026");
  EXPECT_EQ(rates.txtIntid.Text(), "3");
}

TEST_F(Rates, TheFirstOneOfAYearIsItsDefault) {
  frmSBI& rates = Open<frmSBI>();
  EXPECT_EQ(Lines(rates.fpgInterest),
            (Texts{"2026 - 2027|9.00|1||", "2026 - 2027|12.00|2|Owned|#$#Own Loan#$##$#Gone Loan#$#"}));
  Fill(rates, "2025 - 2026", "8.505");
  EXPECT_TRUE(!rates.txtLoanType.visible && !rates.fmeLoans.enabled);
  EXPECT_EQ(rates.txtIntid.Text(), "3");
  company.Execute("INSERT INTO MAS_LOANINT (INTID, FINANCIALYEAR, INTEREST) VALUES (3, '2020', 1)");
  Click(rates.cmdSave);  // the number was taken meanwhile
  EXPECT_EQ(company.Rows(
                "SELECT INTID, INTEREST, LOANTYPE, LOANNAME FROM MAS_LOANINT WHERE FINANCIALYEAR = '2025'"),
            "4|8.51||");
  EXPECT_EQ(
      LastAudit(),
      "19|0|Automated Interest Free Loan Calculation -> Benchmark Interest Rate Created/Updated|Automated "
      "Interest Free Loan Calculation -> Benchmark Interest Rate Created/Updated:::Financial Year = 2025 - "
      "2026:Interest Rate = 8.51");
  EXPECT_EQ(rates.txtIntAmt.Text() + rates.cmbFinYear.Text(), "");
  // A default one can be changed; the names are joined with their markers doubled.
  Fill(rates, "2025 - 2026", "7", "It's two", {0, 2});
  EXPECT_TRUE(rates.txtLoanType.visible);
  Click(rates.cmdSave);
  EXPECT_EQ(company.Rows("SELECT LOANTYPE, LOANNAME FROM MAS_LOANINT WHERE INTID = 5"),
            "It's two|#$#Own Loan#$##$#Welfare#$#");
  ClickRow(rates.fpgInterest, 3);
  EXPECT_TRUE(!rates.txtLoanType.visible && !rates.fmeLoans.enabled);
  Type(rates.txtIntAmt, "9");
  Click(rates.cmdSave);
  EXPECT_EQ(company.Rows("SELECT INTEREST FROM MAS_LOANINT WHERE INTID = 4"), "9");
  EXPECT_NE(LastAudit().find(":Interest Rate = 8.51 (9.00)"), std::string::npos);
  EXPECT_EQ(desk.TakeTexts(), Texts{});
}

TEST_F(Rates, ALoanStandsInOneRateOfAYear) {
  frmSBI& rates = Open<frmSBI>();
  const auto ticks = [&] {
    std::string text;
    for (std::size_t row = 0; row < rates.fpgLoan.rows.size(); ++row)
      text += fmt::format("{}{:d} ", rates.fpgLoan.Text(row, frmSBI::kTick), rates.fpgLoan.IsLocked(row, 0));
    return text;
  };
  Fill(rates, "2026 - 2027", "8");
  EXPECT_EQ(Lines(rates.fpgLoan, 1), (Texts{"1|Own Loan", "2|Vehicle Loan", "3|Welfare"}));
  EXPECT_EQ(ticks(), "01 00 00 ");
  ClickRow(rates.fpgInterest, 1);
  EXPECT_EQ(ticks(), "10 00 00 ");
  EXPECT_EQ(rates.txtLoanType.Text() + rates.txtIntAmt.Text() + rates.txtIntid.Text(), "Owned12.002");
  // It was taken into another rate while this one was shown.
  Rate(9, "2026", 5, "Others", "#$#Welfare#$#");
  TickCell(rates.fpgLoan, 2, frmSBI::kTick, true);
  Click(rates.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), Texts{kGone});
  EXPECT_EQ(company.Rows("SELECT LOANNAME FROM MAS_LOANINT WHERE INTID = 2"),
            "#$#Own Loan#$##$#Gone Loan#$#");
  ClickRow(rates.fpgInterest, 1);
  EXPECT_EQ(ticks(), "10 00 01 ");
}

TEST_F(Rates, DeletesWhatIsFoundByItsFigures) {
  Rate(7, "2026", 12, "Others", "#$#Welfare#$#");
  Rate(8, "2020", 5);  // a year without months
  frmSBI& rates = Open<frmSBI>();
  for (const std::size_t row : {3u, 2u}) {
    ClickRow(rates.fpgInterest, row);
    desk.WillAnswer({Answer::Yes});
    Click(rates.cmdDelete);
  }
  EXPECT_EQ(Table(), kOld);
  company.Execute("DELETE FROM SEC_AUDITTRAIL");
  Click(rates.cmdDelete);
  ClickRow(rates.fpgInterest, 1);
  Type(rates.txtIntAmt, "11");
  Click(rates.cmdDelete);
  Type(rates.txtIntAmt, "12");
  desk.WillAnswer({Answer::No});
  Click(rates.cmdDelete);
  EXPECT_EQ(Table(), kOld);
  desk.WillAnswer({Answer::Yes});
  desk.whileItStands = [this](const MessageBox& box) {
    if (box.buttons == Buttons::YesNo)
      company.Execute("UPDATE MAS_LOANINT SET INTEREST = 13 WHERE INTID = 2");
  };
  Click(rates.cmdDelete);
  desk.whileItStands = nullptr;
  EXPECT_EQ(company.Rows("SELECT INTEREST FROM MAS_LOANINT WHERE INTID = 2"), "13");
  ClickRow(rates.fpgInterest, 1);
  Type(rates.txtIntAmt, "14");
  session.auditOn = false;
  Click(rates.cmdSave);
  EXPECT_EQ(LastAudit(), "");
  session.auditOn.reset();
  ClickRow(rates.fpgInterest, 0);
  desk.WillAnswer({Answer::Yes});
  Click(rates.cmdDelete);
  EXPECT_EQ(company.Rows("SELECT INTID FROM MAS_LOANINT"), "2");
  session.auditOn = false;
  ClickRow(rates.fpgInterest, 0);
  desk.WillAnswer({Answer::Yes});
  Click(rates.cmdDelete);
  EXPECT_EQ(company.Rows("SELECT INTID FROM MAS_LOANINT"), "");
  EXPECT_NE(
      LastAudit().find("Benchmark Interest Rate Deleted:::Financial Year = 2026 - 2027:Interest Rate = 9.00"),
      std::string::npos);
  EXPECT_EQ(desk.TakeTexts(),
            (Texts{"Do you want to Delete", "Do you want to Delete", "Select Record to Delete",
                   "No Record Found to Delete ", "Do you want to Delete", "Do you want to Delete", kGone,
                   "Do you want to Delete", "Do you want to Delete"}));
}

}  // namespace
}  // namespace ktl
