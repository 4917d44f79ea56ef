#include <random>

#include "benefit/frmSepInt.h"
#include "benefit/frmUpdateInt.h"
#include "benefit/yearly_run.h"
#include "benefit_fixture.h"

namespace ktl {
namespace {

const std::vector<double> kTwelve(12, 1000);
constexpr const char* kYear = "2026 - 2027";

class Yearly : public BenefitTest {
 protected:
  frmUpdateInt& Update(const std::string& year = kYear, const std::string& search = "") {
    return Open<frmUpdateInt>(YearlyBenefitRequest{year, search});
  }
  // The employees of all the cases below, a loan each unless said.
  void MakeCases() {
    for (int employee = 1; employee <= 9; ++employee) Employee(employee);
    Employee(10, false);
    Loan(1, kTwelve);
    company.Receipt(1, 2, 1, 1, "15/Jul/2026", 3000);
    Loan(2, {5000, 5000, 5000, 5000, 5000, 5000});
    Loan(3, {1600, 1600, 1600, 1600, 1600, 1600, 1600, 1600, 1600, 1600, 2000, 2000, 18000});
    Loan(4, kTwelve);
    Charge(4, "= 24316", 90);
    Loan(5, kTwelve, "Own Loan");
    Loan(6, kTwelve);
    Loan(6, {500, 500, 500, 500, 500, 500}, "Vehicle Loan", 2, kApr2026 + 6);
    Loan(7, std::vector<double>(12, 3000), "Welfare");
    Charge(7, "> 24316", 500);
    Loan(8, std::vector<double>(24, 2000));
    Loan(9, kTwelve, "Plain Loan");
    Loan(10, kTwelve);
    Employee(11);
    Loan(11, kTwelve);
    Loan(11, kTwelve, "Welfare");
  }
};

// Looks at every step of long work at what another workstation sees, and writes from there.
struct SecondWorkstation : ScriptedDesk {
  explicit SecondWorkstation(test::TestCompany& company) : company_(company) {}
  void NoteProgress(const std::string&, int) override {
    seen += company_.Rows("SELECT COUNT(*) FROM MAS_LOANINTUPDATE") + ' ';
    company_.Execute("UPDATE MAS_LOANINTUPDATE SET EDITEDINT = 44 WHERE EMPID = 3");
  }

  std::string seen;

 private:
  test::TestCompany& company_;
};

// 0.75 in a hundred of each month's balance, month by month:
// 1: a receipt of 3000 in July: 12 + 11 + 10 + 6 + 5 + 4 + 3 + 2 + 1 = 54 thousands, nine months of benefit.
// 2: closed in September: 30 + 25 + 20 + 15 + 10 + 5 = 105 thousands.
// 3: 20,000 of principal: ten months from 38,000 down to 23,600, then 22,000 and 20,000: 350 thousands.
// 4: April's interest is its benchmark, 90: 11 + 10 + .. + 1 = 66 thousands are left.
// 5: at its own 1 in a hundred: 78 thousands.
// 6: two loans of a name: 78 and 3 + 2.5 + 2 + 1.5 + 1 + 0.5 = 10.5 thousands.
// 7: 500 charged from May on, so that April is the one month of benefit: 36 thousands.
// 8: twenty-four months of 2,000: 48 + 46 + .. + 26 = 444 thousands.
// 11: a loan and an advance of one number and amount count as one, with the higher opening of the two: 2
// x 78.
TEST_F(Yearly, WorksTheYearOut) {
  const struct {
    LoanRule rule;
    const char* stored;
  } cases[] = {
      {LoanRule::EveryLoan,
       "1|12000|9000|0|405|405|405\n2|30000|30000|0|787.5|787.5|787.5\n3|38000|20000|0|2625|2625|2625\n"
       "4|11000|11000|0|495|495|495\n5|12000|12000|0|780|780|780\n6|15000|15000|0|663.75|663.75|663.75\n"
       "7|36000|3000|0|270|270|270\n8|48000|24000|0|3330|3330|3330\n11|12000|24000|0|1170|1170|1170"},
      {LoanRule::PaidMoreThan20000, "8|48000|24000|0|3330|3330|3330\n11|12000|24000|0|1170|1170|1170"},
      {LoanRule::SeveralMonths,
       "1|12000|9000|0|405|405|405\n2|30000|30000|0|787.5|787.5|787.5\n3|38000|20000|0|2625|2625|2625\n"
       "4|11000|11000|0|495|495|495\n5|12000|12000|0|780|780|780\n6|15000|15000|0|663.75|663.75|663.75\n"
       "8|48000|24000|0|3330|3330|3330\n11|12000|24000|0|1170|1170|1170"},
  };
  MakeCases();
  Screen toy("toy");
  Progress progress(desk, toy);
  for (const auto& each : cases) {
    RecalculateBenefit(session, progress, BenefitYearOf(session, kYear), each.rule);
    EXPECT_EQ(Stored(), each.stored) << static_cast<int>(each.rule);
  }
}

// What is done so far stands for everybody at once, and nobody waits for the end of the run.
TEST_F(Yearly, CommitsEachStatementByItself) {
  for (const int employee : {1, 2, 3}) {
    Employee(employee);
    Loan(employee, kTwelve);
  }
  company.Row("MAS_LOANINTUPDATE").With("FINANCIALYEAR", "2026").With("EMPID", 9).With("ORIGINALINT", 4);
  SecondWorkstation other(company);
  Screen toy("toy");
  Progress progress(other, toy);
  const auto run = [&] {
    RecalculateBenefit(session, progress, BenefitYearOf(session, kYear), LoanRule::EveryLoan);
  };
  run();
  EXPECT_EQ(other.seen, "1 0 1 2 3 ");
  company.Execute("UPDATE MAS_LOANINT SET INTEREST = 18");
  run();
  EXPECT_EQ(company.Rows("SELECT EDITEDINT, ORIGINALINT FROM MAS_LOANINTUPDATE ORDER BY EMPID"),
            "1170|1170\n1170|1170\n44|1170");
}

TEST_F(Yearly, FollowsTheYearTheRuleAndTheFlag) {
  MakeCases();
  const auto listed = [](const frmUpdateInt& update) {
    return fmt::format("{} {:d}{:d}{:d}{:d}", update.lblEmpCount.caption, update.chkRule.Value(),
                       update.chkRule.visible, update.chkRule.enabled, update.lblNoteoneMOnth.visible);
  };
  EXPECT_EQ(listed(Update()), "Listed : 9 0010");
  machine.folder.markers = {"IntFreeSkipOneMonthEMI.dat"};
  EXPECT_EQ(listed(Update()), "Listed : 8 0011");
  company.Execute("UPDATE MAS_OPTSETFEATURE SET INTFRLNRULE = 2027");
  frmUpdateInt& ruled = Update();
  EXPECT_EQ(listed(ruled), "Listed : 2 1101");
  Click(ruled.lblNote);
  EXPECT_EQ(
      desk.TakeTexts(),
      Texts{" Interest free loan benifit calculation.  \r\n applies only for paid principle is more than "
            "Rs 20000/year  \r\n Loan EMI/balance carry over to next financial year \r\n "});
  machine.folder.markers.clear();
  // March to February: eleven of the twelve months, 12 + 11 + .. + 2 = 77 thousands.
  company.Execute("UPDATE MAS_OPTSETFEATURE SET INTFRLNRULE = NULL");
  company.Execute("UPDATE MAS_OPTSET SET TDSMAR2FEB = 1");
  session.TdsMar2Feb = true;
  Update();
  EXPECT_EQ(Stored("EMPID = 5"), "5|12000|11000|0|770|770|770");
  session.ReadOnlyUser = true;
  company.Execute("DELETE FROM MAS_LOANINTUPDATE");
  frmUpdateInt& looked = Update();
  EXPECT_EQ(listed(looked), "Listed : 0 0010");
  EXPECT_FALSE(looked.cmdPort.enabled || looked.mnuAll.enabled || looked.mnuSelect.enabled);
  EXPECT_TRUE(looked.fpgUpdate.columns[frmUpdateInt::kBenefit].locked);
}

// Nothing at all as principal counts as 2 in the benchmark interest of the run: 2 at 1 in a hundred, twelve
// times, and no benefit.
TEST_F(Yearly, KeepsItsOddities) {
  Employee(1);
  Loan(1, kTwelve, "Own Loan");
  company.Execute("UPDATE INS_EMIDETAIL SET MDFPRNAMT = NULL");
  frmUpdateInt& update = Update();
  EXPECT_EQ(Stored(), "1|0|0|0|0.24|0|0");
  DblClick(update.fpgUpdate, 0, frmUpdateInt::kEmployeeName);
  EXPECT_EQ(Lines(update.fpgDetail), Texts{"Own Loan (01/Apr/24)|0.00|0.00|0.00|0.00|0.00"});
  // Without a rate no month counts, and who is listed all the same keeps what was stored.
  company.Execute("DELETE FROM MAS_LOANINT");
  company.Execute("UPDATE MAS_LOANINTUPDATE SET EDITEDINT = 40, ORIGINALINT = 50");
  Update();
  EXPECT_EQ(Stored(), "1|0|0|0|0.24|40|50");
}

TEST_F(Yearly, AnEditedFigureStandsAndWhoStopsIsUndone) {
  Employee(1);
  Employee(2);
  Loan(1, kTwelve);
  Loan(2, kTwelve);
  frmUpdateInt& update = Update();
  TypeCell(update.fpgUpdate, 0, frmUpdateInt::kBenefit, "-500.555");
  EXPECT_EQ(update.fpgUpdate.Text(0, frmUpdateInt::kBenefit), "500.56");
  EXPECT_EQ(update.fpgUpdate.At(0, frmUpdateInt::kBenefit).backColour, kToolTipColour);
  EXPECT_EQ(update.fpgUpdate.toolTip, "Previous Value: 585.00");
  for (const char* typed : {"12abc", "10000000000"})
    TypeCell(update.fpgUpdate, 1, frmUpdateInt::kBenefit, typed);
  EXPECT_EQ(desk.TakeTexts(),
            (Texts{"Specify proper amount.", "Amount should be less than 9,99,99,99,999.99"}));
  company.Execute("UPDATE MAS_LOANINT SET INTEREST = 18");
  Charge(2, "> 0", 0.25);
  frmUpdateInt& again = Update();
  EXPECT_EQ(Stored(), "1|12000|12000|0|1170|500.56|1170\n2|12000|12000|3|1170|1167|1167");
  Tick(again.chkAll, true);
  EXPECT_EQ(again.lblSelected.caption, "Selected : 2");
  Click(again.cmdPort);
  const std::string ported = "SELECT ASSTRANID, BENAMT, BENAMT2, DATAPORTED FROM INC_MAIN ORDER BY ASSTRANID";
  EXPECT_EQ(company.Rows(ported), "16|5|7|0\n17|5|500.56|1\n26|5|7|0\n27|5|1167|1");
  EXPECT_EQ(company.Rows("SELECT EMPID, FINYEAR, MONTH12YN FROM INC_PORTEDSTAT"), "1|2026|1\n2|2026|1");
  EXPECT_EQ(LastAudit(),
            "19|2|Automated Interest Free Loan Calculation Updated|Automated Interest Free Loan Calculation "
            "Updated:::Financial Year = 2026 - 2027:Int. Benefit Amount = 1167.00");
  company.Execute("UPDATE MAS_EMPLOYEE SET TDSYN = 0 WHERE EMPID = 1");
  Charge(2, "> 0", 500);  // over all months nothing is left: cleared, edited or not, and undone
  Update();
  EXPECT_EQ(Stored(), "");
  EXPECT_EQ(company.Rows(ported), "16|5|7|0\n17|5|0|1\n26|5|7|0\n27|5|0|1");
}

TEST_F(Yearly, PortsWhatThereIs) {
  Employee(1);
  Loan(1, kTwelve);
  frmUpdateInt& update = Update();
  Click(update.cmdPort);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Select Employee to Port."});
  EXPECT_EQ(company.Rows("SELECT * FROM INC_PORTEDSTAT"), "");
  company.Execute("DELETE FROM COM_CLIENTDET");
  company.Execute("INSERT INTO INC_PORTEDSTAT (EMPID, FINYEAR) VALUES (0, 2026)");
  TickCell(update.fpgUpdate, 0, frmUpdateInt::kTick, true);
  Click(update.cmdPort);
  EXPECT_EQ(company.Rows("SELECT EMPID, MONTH12YN FROM INC_PORTEDSTAT"), "0|0");
  EXPECT_EQ(company.Rows("SELECT BENAMT2 FROM INC_MAIN"), "7\n7");
  EXPECT_NE(LastAudit().find("Amount = 585.00"), std::string::npos);
  EXPECT_EQ(desk.saved, 1);
  // A newer run has dropped the row meanwhile: what is ported now would stay for ever.
  const std::string stored = company.Rows("SELECT * FROM SEC_AUDITTRAIL");
  company.Execute("UPDATE MAS_LOANINTUPDATE SET FINANCIALYEAR = '2020'");
  Click(update.cmdPort);
  EXPECT_EQ(desk.TakeTexts(), Texts{kGone});
  EXPECT_EQ(company.Rows("SELECT * FROM SEC_AUDITTRAIL"), stored);
  EXPECT_TRUE(update.fpgUpdate.rows.empty());
  company.Execute("UPDATE MAS_LOANINTUPDATE SET FINANCIALYEAR = '2026'");
  update.cmbFinYear_Change();
  TickCell(update.fpgUpdate, 0, frmUpdateInt::kTick, true);
  session.auditOn = false;
  company.Execute("DELETE FROM SEC_AUDITTRAIL");
  Click(update.cmdPort);
  EXPECT_EQ(LastAudit(), "");
}

TEST_F(Yearly, BringsThePreviousValuesBack) {
  for (const int employee : {1, 2, 3}) {
    Employee(employee);
    Loan(employee, kTwelve);
  }
  frmUpdateInt& update = Update();
  for (const std::size_t row : {0u, 1u, 2u}) TypeCell(update.fpgUpdate, row, frmUpdateInt::kBenefit, "1");
  ClickRow(update.fpgUpdate, 1);
  Click(update.mnuSelect);
  EXPECT_EQ(company.Rows("SELECT EDITEDINT FROM MAS_LOANINTUPDATE ORDER BY EMPID"), "1\n585\n1");
  EXPECT_EQ(update.fpgUpdate.activeRow, 1u);
  // Another workstation has written a figure of its own meanwhile.
  company.Execute("UPDATE MAS_LOANINTUPDATE SET EDITEDINT = 77 WHERE EMPID = 3");
  TypeCell(update.fpgUpdate, 2, frmUpdateInt::kBenefit, "5");
  EXPECT_EQ(update.fpgUpdate.Text(2, frmUpdateInt::kBenefit), "77.00");
  company.Execute("UPDATE MAS_LOANINTUPDATE SET EDITEDINT = 78 WHERE EMPID = 1");
  Click(update.mnuAll);
  EXPECT_EQ(company.Rows("SELECT EDITEDINT FROM MAS_LOANINTUPDATE ORDER BY EMPID"), "78\n585\n77");
  EXPECT_EQ(desk.TakeTexts(), (Texts{kGone, kGone}));
  Click(update.mnuAll);
  EXPECT_EQ(company.Rows("SELECT EDITEDINT FROM MAS_LOANINTUPDATE ORDER BY EMPID"), "585\n585\n585");
}

// 9 in a hundred, though the year's oldest row is another's and names a loan that ends alike.
// 1: 3000 are received in May: 12 + 8 + 7 + .. + 1 = 48 thousands, and over all months 1 + 2 less.
// 3: one month of 7.50 less 0.004. 4: charged what it would be, 7.50. 5: 7.50 and -492.50.
TEST_F(Yearly, TellsRatesYearsAndLoansApart) {
  company.Name(2, "Loan").SeparateInterest().Benefit();
  company.Name(2, "Mixed Loan").Benefit();  // its interest is no part of its own: it counts nowhere
  company.Execute("UPDATE MAS_LOANINT SET INTID = 3 WHERE INTID = 1");
  for (const int employee : {1, 2, 3, 4, 5}) {
    Employee(employee);
    Loan(employee, employee == 1 ? kTwelve : std::vector<double>{1000}, "Loan");
  }
  Loan(2, {2000}, "Loan", 2);
  Loan(4, kTwelve, "Mixed Loan", 2);
  Loan(5, {1000}, "Loan", 2);
  company.Receipt(1, 1, 1, 1, "15/May/2026", 3000);  // of an advance with the same number
  Charge(3, "> 0", 0.004);
  Charge(4, "> 0", 7.5);
  Charge(5, "> 0 AND SERIALNO = 2", 500);
  for (const auto& [year, employee] : {std::pair{"2025", 1}, {"2027", 1}, {"2026", 4}, {"2026", 5}})
    company.Row("MAS_LOANINTUPDATE")
        .With("FINANCIALYEAR", year)
        .With("EMPID", employee)
        .With("INTID", 2)
        .With("EDITEDINT", 1)
        .With("ORIGINALINT", 2);
  company.Execute("UPDATE MAS_EMPLOYEE SET REFNO = 'A' WHERE EMPID = 2");
  company.Execute("UPDATE MAS_OPTSET SET EMPREFNOYN = 1");
  LoadOptionSet(session);
  const frmSepInt& months = Open<frmSepInt>();
  EXPECT_EQ(months.fpgSepInt.Text(0, 0) + months.fpgSepInt.Text(1, 0), "AR1");
  EXPECT_EQ(Lines(months.fpgIntDetail), Texts{"Apr/2026|1000.00|1000.00|0.00|10.00|10.00"});
  frmUpdateInt& update = Update();
  EXPECT_EQ(Stored(),
            "1|12000|9000|0|360|360|360\n2|3000|3000|0|22.5|22.5|22.5\n3|1000|1000|0|7.5|7.496|7.496\n"
            "5|1000|1000|0|7.5|1|7.5");
  EXPECT_EQ(update.fpgUpdate.Text(0, 1) + update.fpgUpdate.Text(1, 1), "AR1");
  EXPECT_EQ(update.fpgUpdate.rows.size(), 4u);
  TypeCell(update.fpgUpdate, 1, frmUpdateInt::kBenefit, "9");
  EXPECT_EQ(company.Rows("SELECT EDITEDINT FROM MAS_LOANINTUPDATE WHERE EMPID = 1 AND INTID = 2"), "9\n9\n9");
  DblClick(update.fpgUpdate, 1, frmUpdateInt::kEmployeeName);
  EXPECT_EQ(Lines(update.fpgDetail), Texts{"Loan (01/Apr/24)|12000.00|12000.00|0.00|337.50|337.50"});
  // Loans of one month no longer count; without a rate this run clears the others too.
  machine.folder.markers = {"IntFreeSkipOneMonthEMI.dat"};
  Update();
  EXPECT_EQ(Stored(), "1|12000|9000|0|360|9|360");
  company.Execute("DELETE FROM MAS_LOANINT");
  Update();
  EXPECT_EQ(Stored(), "");
}

TEST_F(Yearly, SearchesAndTellsTheLoans) {
  MakeCases();
  company.Execute("UPDATE MAS_EMPLOYEE SET EMPNAME = 'D''Souza [50%]' WHERE EMPID = 6");
  frmUpdateInt& update = Update(kYear, "d'");
  EXPECT_EQ(Lines(update.fpgUpdate, 1),
            Texts{"6|D'Souza [50%]|15000.00|15000.00|0.00|663.75|663.75|663.75|5.00"});
  for (const char* text : {"[50", "0%]", "6"}) {
    Type(update.search.txtSearch, text);
    update.search.tmrSearch.onTimer();
    EXPECT_EQ(update.lblEmpCount.caption, "Listed : 1") << text;
  }
  DblClick(update.fpgUpdate, 0, frmUpdateInt::kFromTax);
  EXPECT_EQ(update.lblDetailName.caption + update.lblDetailId.caption,
            "Employee Name: D'Souza [50%]EmpID: 6");
  EXPECT_EQ(Lines(update.fpgDetail), (Texts{"Vehicle Loan (01/Apr/24)|12000.00|12000.00|0.00|585.00|585.00",
                                            "Vehicle Loan (01/Apr/24)|3000.00|3000.00|0.00|78.75|78.75"}));
  EXPECT_TRUE(update.search.txtSearch.locked && !update.chkAll.enabled && !update.cmdPort.enabled);
  update.Unload();
  EXPECT_FALSE(update.IsUnloaded() || update.fmeDetail.visible);
  EXPECT_TRUE(!update.search.txtSearch.locked && update.chkAll.enabled && update.cmdPort.enabled);
}

// What the embedded store is given comes to the same, row by row, on companies made at random.
TEST_F(Yearly, ComesToTheSameOnTheEmbeddedStore) {
  std::mt19937 random(11);
  const auto any = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  const char* const names[] = {"Vehicle Loan", "Own Loan", "Welfare", "Plain Loan"};
  for (int employee = 1; employee <= 12; ++employee) {
    Employee(employee, any(6) > 0);
    for (int serial = 1; serial <= 3; ++serial) {
      std::vector<double> principals;
      const int months = 1 + any(30);
      for (int month = 0; month < months; ++month) principals.push_back(any(900000) / 100.0 - any(2) * 50);
      Loan(employee, principals, names[any(4)], serial, kApr2026 - 6 + any(16));
      if (any(3) == 0) company.Receipt(employee, 1 + any(2), serial, 1, "10/Aug/2026", any(200000) / 100.0);
      company.Row("MAS_LOANINTUPDATE")
          .With("FINANCIALYEAR", std::to_string(2023 + serial))
          .With("EMPID", employee);
    }
    Charge(employee, "% 3 = 0", any(4000) / 100.0);
  }
  company.Execute("UPDATE INS_EMIDETAIL SET MDFPRNAMT = NULL WHERE SERIALNO = 2 AND COUNTER % 4 = 1");
  company.Execute("UPDATE INS_EMIDETAIL SET MONTHYEAR = 24320 WHERE COUNTER = 2 AND SERIALNO = 3");
  company.Execute("UPDATE INS_ADVLOAN SET SINAME = UPPER(SINAME) WHERE EMPID % 2 = 0");
  for (const LoanRule rule : {LoanRule::EveryLoan, LoanRule::PaidMoreThan20000, LoanRule::SeveralMonths}) {
    const YearlyStatements statements = WriteYearlyStatements(session, BenefitYearOf(session, kYear), rule);
    const auto cleared = [&](const YearlyStatement& statement, bool embedded) {
      company.Execute("UPDATE MAS_LOANINTUPDATE SET ORIGINALINT = 1");
      embedded ? company.Cn().Execute(statement) : company.Cn().Execute(statement.said);
      return company.Rows("SELECT EMPID FROM MAS_LOANINTUPDATE WHERE ORIGINALINT = 0 ORDER BY EMPID");
    };
    EXPECT_EQ(cleared(statements.clearWithoutBenefit, true), cleared(statements.clearWithoutBenefit, false));
    EXPECT_EQ(cleared(statements.clearUnlisted, true), cleared(statements.clearUnlisted, false));
    const ResultSet kept = company.Cn().Query(StatementTwin(statements.main));
    const ResultSet said = company.Cn().Query(statements.main.said);
    EXPECT_EQ(kept.columns, said.columns);
    EXPECT_EQ(kept.rows, said.rows) << static_cast<int>(rule);  // to the last bit
    EXPECT_GT(said.rows.size(), 1u);
  }
}

}  // namespace
}  // namespace ktl
