#include <fmt/format.h>

#include <random>

#include "recovery/modSalSIAdj.h"
#include "recovery/put_off.h"
#include "recovery_fixture.h"
#include "runtime/numbers.h"

namespace ktl {
namespace {

constexpr int kSalaried = kApr2024 + 23;  // Mar/2026, the last month with a salary
constexpr const char* kGone =
    "Row cannot be located for updating. Some values may have been changed since it was last read. : 17";

// "1000* 500* 0": what each row moves, the ticked ones marked, and the net pay behind the last one.
std::string Shown(const std::vector<PreferenceRow>& rows) {
  std::string text;
  for (const PreferenceRow& row : rows) text += NumberText(row.moved) + (row.ticked ? "* " : " ");
  return text + "| " + NumberText(rows.back().after);
}

std::vector<PreferenceRow> RowsOf(long employee, double net, const std::vector<double>& amounts) {
  std::vector<PreferenceRow> rows;
  for (const double amount : amounts)
    rows.push_back({.employee = employee, .emi = amount, .netPay = net, .gross = 20001});
  return rows;
}

TEST(PreferenceWalk, MovesUntilTheFloorIsReached) {
  const struct {
    std::optional<double> percent;
    bool partial;
    int roundType;
    double net;
    const char* shown;
  } cases[] = {
      {{}, true, 1, -1500, "1000* 500* 0 | 0"},        {{}, false, 1, -1500, "1000* 800* 0 | 300"},
      {{}, true, 1, -5000, "1000* 800* 600* | -2600"}, {{}, true, 1, -1000, "1000* 0 0 | 0"},
      {50, true, 1, 9000, "1000* 1* 0 | 10001"},  // 10,000.50 is 10,001 in whole rupees
      {50, true, 5, 9000, "1000* 0.5* 0 | 10000.5"},   {50, false, 5, 9000, "1000* 800* 0 | 10800"},
  };
  for (const auto& each : cases) {
    std::vector<PreferenceRow> rows = RowsOf(7, each.net, {1000, 800, 600});
    FillPreference(rows, {.percent = each.percent, .partial = each.partial}, each.roundType);
    EXPECT_EQ(Shown(rows), each.shown);
  }
  std::vector<PreferenceRow> rows = RowsOf(7, -100, {500});
  rows.push_back(RowsOf(8, -300, {500})[0]);
  rows.push_back(RowsOf(9, -300, {500})[0]);
  rows[1].held = true;
  FillPreference(rows, {.partial = true}, 1);
  EXPECT_EQ(Shown(rows), "100* 0 300* | 0");
  EXPECT_EQ(rows[1].after, -300);
}

TEST(PreferenceWalk, ATickPassesTheShortageOn) {
  const auto walk = [](bool partial, std::initializer_list<std::size_t> toggled) {
    std::vector<PreferenceRow> rows = RowsOf(7, -1500, {1000, 800, 600});
    rows.push_back(RowsOf(8, -100, {400})[0]);
    FillPreference(rows, {.partial = partial}, 1);
    for (const std::size_t line : toggled) {
      rows[line].ticked = !rows[line].ticked;
      EXPECT_EQ(RecalcEmployee(rows, line, partial).size(), 3U);
    }
    EXPECT_EQ(rows.back().moved, partial ? 100 : 400);
    rows.pop_back();
    return Shown(rows);
  };
  EXPECT_EQ(walk(true, {0}), "0 800* 0 | -700");
  EXPECT_EQ(walk(true, {0, 2}), "0 800* 600* | -100");
  EXPECT_EQ(walk(true, {0, 2, 0}), "1000* 500* 0* | 0");  // ticked, but nothing is missing any more
  EXPECT_EQ(walk(false, {0, 0}), "1000* 800* 0 | 300");
}

TEST(PreferenceWalk, SharesAreWholeRupees) {
  const auto shares = [](double amount, std::size_t months) {
    std::string text;
    for (const double share : SharesOf(amount, PutOffTo::AllLaterMonths, months))
      text += NumberText(share) + " ";
    return text;
  };
  EXPECT_EQ(shares(1000.5, 3), "334 334 332 ");
  EXPECT_EQ(shares(1001.5, 2), "501 501 ");  // the half goes to the even 1,002
  EXPECT_EQ(shares(2.5, 5), "1 1 1 1 -2 ");  // 0.50 is rounded up each time
  EXPECT_EQ(shares(100.75, 1), "101 ");
  EXPECT_EQ(SharesOf(100.75, PutOffTo::NextMonth, 4), std::vector<double>{100.75});
}

class Preference : public RecoveryTest {
 protected:
  Preference() {
    machine.settings.Set("Settings", "User", "ADMIN");
    Pay(-1500);
  }
  void Pay(double net) {
    company.Execute(fmt::format(
        "UPDATE SLC_SALARYCALC_E SET NETAMOUNT = {}, ETOTAL = 20000 WHERE EMPID = 17 AND MONTHYEAR = {}", net,
        kSalaried));
  }
  // Of Mar/2026 and the months behind it.
  void Loan(int serial, const char* name, int preference, const std::vector<double>& amounts) {
    company.Loan(17, serial, name, 5000);
    company.Name(2, name).With("SIPREF", preference > 0 ? Value(preference) : Value(Null()));
    int counter = 0;
    for (const double amount : amounts) {
      ++counter;
      company.Emi(17, 2, serial, counter, kSalaried + counter - 1, amount).With("INSTID", 5);
    }
  }
  modSalSIAdj& Listed(bool partial = true) {
    modSalSIAdj& list = Workstation::Open<modSalSIAdj>(kSalaried);
    Tick(list.chkPartialAdj, partial);
    Click(list.cmdDisplay);
    return list;
  }
  static std::string Names(const modSalSIAdj& list) {
    std::string names;
    for (const GridRow& row : list.fpgDedPref.rows) names += row.cells[modSalSIAdj::kInstruction].text + " ";
    return names;
  }
};

TEST_F(Preference, ListsWhoIsShortInTheOrderOfPreference) {
  Loan(1, "B", 2, {100});
  Loan(2, "A", 1, {100});
  Loan(3, "N", 0, {100});
  Loan(4, "Z", 3, {0});
  modSalSIAdj& list = Listed();
  EXPECT_EQ(Names(list), "N A B ");
  const struct {
    const char* change;
    const char* percent;  // none: the floor is zero
    std::size_t rows;
  } cases[] = {
      {"UPDATE SLC_SALARYCALC_E SET NETAMOUNT = 0", "", 0},
      {"UPDATE SLC_SALARYCALC_E SET NETAMOUNT = 9999.99", "50", 3},
      {"UPDATE SLC_SALARYCALC_E SET NETAMOUNT = 10000", "50", 0},
      {"UPDATE SLC_SALARYCALC_E SET NETAMOUNT = -1, INDICATOR = 1", "50", 0},
  };
  for (const auto& each : cases) {
    company.Execute(each.change);
    Tick(*each.percent == 0 ? list.optSalaryOpt_0 : list.optSalaryOpt_1);
    EXPECT_TRUE(list.fpgDedPref.rows.empty() || each.rows == 0);  // a changed option empties the list
    if (*each.percent != 0) Type(list.txtPer, each.percent);
    Click(list.cmdDisplay);
    EXPECT_EQ(list.fpgDedPref.rows.size(), each.rows) << each.change;
    EXPECT_EQ(desk.TakeTexts().size(), each.rows == 0 ? 1U : 0U);
  }
  EXPECT_EQ(company.Rows("SELECT COUNT(*) FROM INS_EMIDETAIL WHERE MDFYAMT <> 100"), "1");
}

TEST_F(Preference, EmployeesComeByNumberOrByReference) {
  Loan(1, "B", 2, {100});
  Loan(2, "A", 1, {100});
  company.Employee(18).Ref("A18");
  company.Loan(18, 1, "B", 500);
  company.Emi(18, 2, 1, 1, kSalaried, 100);
  company.Salary(18, kSalaried, 0, -1);
  EXPECT_EQ(Names(Listed()), "A B B ");
  session.options.EMPREFNOYN = true;
  const modSalSIAdj& list = Listed();
  EXPECT_EQ(list.fpgDedPref.Text(0, modSalSIAdj::kRefNo), "A18");
  EXPECT_TRUE(list.fpgDedPref.columns[modSalSIAdj::kEmpId].hidden);
  EXPECT_FALSE(list.fpgDedPref.columns[modSalSIAdj::kRefNo].hidden);
}

// A tick that moves nothing makes a month of 0 all the same; what was agreed stays agreed.
TEST_F(Preference, ATickedRowOfNothingIsWritten) {
  Loan(1, "A", 1, {1500, 10});
  Loan(2, "B", 2, {100});
  modSalSIAdj& list = Listed();
  TickCell(list.fpgDedPref, 1, modSalSIAdj::kTick, true);
  Click(list.cmdAdjust);
  EXPECT_EQ(company.Rows("SELECT MDFYAMT, EMIAMT FROM INS_EMIDETAIL ORDER BY SERIALNO, COUNTER"),
            "0|1500\n1510|10\n100|100\n0|0");
}

TEST_F(Preference, RefusesPercentagesAndKeepsItsSettings) {
  Loan(1, "A", 1, {100});
  modSalSIAdj& list = Listed();
  EXPECT_TRUE(list.txtPer.locked);
  Tick(list.optSalaryOpt_1);
  const std::pair<const char*, const char*> cases[] = {{"0", ""},      {"", ""},          {"100", "100.00"},
                                                       {"100.01", ""}, {"1.5.5", "1.55"}, {"-1", "1.00"}};
  for (const auto& [typed, kept] : cases) {
    Type(list.txtPer, typed);
    EXPECT_EQ(list.txtPer.Text(), kept) << typed;
    Click(list.cmdDisplay);
  }
  EXPECT_EQ(desk.TakeTexts(), (Texts{"Enter Percent on Gross", "Enter Percent on Gross",
                                     "Amount should be less than 100.00", "Enter Percent on Gross"}));
  Tick(list.optAdjust_1);
  EXPECT_EQ(machine.settings.Get("DedPrefSet", "SalaryPerc"), "1.00");
  EXPECT_EQ(machine.settings.Get("DedPrefSet", "Adjust"), "");  // saved with the adjusting only
  Click(list.cmdAdjust);
  company.Execute("UPDATE MAS_OPTSETFEATURE SET LOANYN = 0");
  company.Execute("UPDATE MAS_PULLDOWNVALUES SET PDLISTDESC = 'Bridge' WHERE REFID = 5 AND PDID = 1");
  LoadFeatureSet(session);
  modSalSIAdj again(session, 0);
  again.Load();
  EXPECT_EQ(again.fpgDedPref.columns[modSalSIAdj::kInstruction].caption, "Bridge Name ");
  EXPECT_TRUE(again.optLoanAdv_1.Value() && again.optSalaryOpt_1.Value() && again.chkPartialAdj.Value() &&
              again.optAdjust_1.Value());
  EXPECT_FALSE(again.optLoanAdv_0.enabled || again.txtPer.locked);
}

TEST_F(Preference, PutsOffToTheNextMonthAllLaterMonthsOrANewOne) {
  const struct {
    OptionButton modSalSIAdj::*to;
    std::vector<double> amounts;
    const char* left;
    const char* audit;
  } cases[] = {
      {&modSalSIAdj::optAdjust_0, {2000, 100, 100}, "500 1600 100", "1600 (100)"},
      {&modSalSIAdj::optAdjust_1,
       {2000, 100, 100},
       "500 850 850",
       "850 (100)::Month/Year = May/2026:EMI Amount = 850 (100)"},
      {&modSalSIAdj::optAdjust_1, {2000}, "500 1500", "1500"},
  };
  for (const auto& each : cases) {
    Clear();
    company.Execute("DELETE FROM INS_MASTER");
    company.Emi(17, 1, 1, 8, kSalaried, 50);  // an advance of the same serial number
    Loan(1, "A", 1, each.amounts);
    modSalSIAdj& list = Listed();
    Tick(list.*each.to);
    Click(list.cmdAdjust);
    EXPECT_TRUE(list.IsUnloaded());
    company.Execute("DELETE FROM INS_EMIDETAIL WHERE SITYPE = 1");
    EXPECT_EQ(Amounts(), each.left);
    EXPECT_EQ(Flagged(), "23");
    EXPECT_EQ(
        LastAudit(),
        fmt::format("19|17|Salary Editor -> Apply Deduction Preference|Salary Editor -> Apply Deduction "
                    "Preference:::SI Type = Loan:SI Name = A:Serial No. = 1:Adjustment Type = {}::Month/Year "
                    "= Mar/2026:EMI Amount = 500 (2000)::Month/Year = Apr/2026:EMI Amount = {}",
                    (list.*each.to).caption, each.audit));
  }
  EXPECT_EQ(company.Rows("SELECT COUNTER, EMIAMT, INSTID FROM INS_EMIDETAIL WHERE MONTHYEAR = 24316"),
            "9|1500|5");
}

// Months that a salary stands for are passed over; where no salary has details none does.
TEST_F(Preference, LaterMonthsAreThoseWithoutASalary) {
  Loan(1, "A", 1, {2000, 100, 100});
  company.Salary(17, kSalaried + 1, 0, 0);
  session.auditOn = false;
  const auto compare = [this] {
    const LaterMonths later = LaterMonthsOf(session, {17, InstructionType::Loan, 1}, kSalaried - 2);
    EXPECT_EQ(company.Rows(later.said), company.Rows(later.embedded));
  };
  compare();
  Click(Listed().cmdAdjust);
  EXPECT_EQ(Amounts(), "500 100 1600");
  company.Execute("DELETE FROM SLC_SALARYCALC_D");
  compare();
  company.Execute("UPDATE INS_EMIDETAIL SET MDFYAMT = 100");
  Click(Listed().cmdAdjust);
  EXPECT_EQ(Amounts(), "0 200 100");
  EXPECT_EQ(LastAudit(), "");
}

TEST_F(Preference, AReducingLoanKeepsItsComponents) {
  Loan(1, "A", 1, {2000, 2000});
  company.Execute("UPDATE INS_MASTER SET REDUCINGBALYN = 1");
  company.Execute("UPDATE INS_EMIDETAIL SET INTAMT = 900");  // the principal of 1,100 cannot bear 1,500
  Click(Listed().cmdAdjust);
  EXPECT_EQ(Amounts(), "500 3500");
  EXPECT_EQ(Amounts("MDFPRNAMT"), "0 2600");
  EXPECT_EQ(Amounts("MDFINTAMT"), "500 900");
}

// The rows above stay adjusted, and the list is read again.
TEST_F(Preference, WhatHasChangedSinceIsRefusedAndShownAnew) {
  Loan(1, "A", 1, {1000, 1000});
  Loan(2, "B", 2, {1000, 1000});
  const std::string log = folder.path() / "log";
  session.Cn.SetStatementLog(log);
  modSalSIAdj& list = Listed();
  EXPECT_NE(ReadAll(log).find("\tSELECT dbo.udf_getEmpLock (17,24315,99999 )\n"), std::string::npos);
  company.Execute("UPDATE INS_EMIDETAIL SET MDFYAMT = 900 WHERE SERIALNO = 2 AND COUNTER = 1");
  Click(list.cmdAdjust);
  EXPECT_FALSE(list.IsUnloaded());
  EXPECT_EQ(company.Rows("SELECT MDFYAMT FROM INS_EMIDETAIL ORDER BY SERIALNO, COUNTER"),
            "0\n2000\n900\n1000");
  for (const char* change : {"UPDATE MAS_EMPLOYEE SET lockyn = 1",
                             "INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR, LOCKYN) VALUES (17, 24320, 1)"}) {
    EXPECT_EQ(Names(list), "B ");
    EXPECT_TRUE(list.fpgDedPref.IsTicked(0, modSalSIAdj::kTick));
    company.Execute(change);
    Click(list.cmdAdjust);
    EXPECT_TRUE(list.fpgDedPref.IsLocked(0, modSalSIAdj::kTick));
    EXPECT_EQ(list.fpgDedPref.At(0, modSalSIAdj::kSerial).backColour, kButtonFaceColour);
    company.Execute("UPDATE MAS_EMPLOYEE SET lockyn = 0");
    company.Execute("DELETE FROM SEC_EMPLOCK");
    Click(list.cmdDisplay);
  }
  company.Execute("DELETE FROM INS_EMIDETAIL WHERE SERIALNO = 2");
  Click(list.cmdAdjust);
  EXPECT_EQ(desk.TakeTexts(), Texts(4, kGone));
  EXPECT_TRUE(list.fpgDedPref.rows.empty());
}

TEST_F(Preference, AFailureKeepsTheMonthWhole) {
  Loan(1, "A", 1, {1000, 1000});
  modSalSIAdj& list = Listed();
  company.Execute("DROP TABLE SEC_AUDITTRAIL");
  Click(list.cmdAdjust);
  EXPECT_EQ(desk.TakeTexts().size(), 1U);
  EXPECT_EQ(Amounts(), "1000 1000");
  EXPECT_EQ(Flagged(), "");
  company.Lock(kSalaried);
  Click(list.cmdAdjust);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Month is locked.  Cannot update."});
}

// Over random employees: what leaves the month arrives behind it, but for the paise that whole rupees drop.
TEST_F(Preference, MoneyIsConserved) {
  std::mt19937 random{5601};
  for (int run = 0; run < 60; ++run) {
    SCOPED_TRACE(run);
    Clear();
    company.Execute("DELETE FROM INS_MASTER");
    const bool reducing = random() % 3 == 0, equally = random() % 2 == 0;
    Pay(-static_cast<double>(random() % 400000) / 100);
    const int loans = 1 + static_cast<int>(random() % 3);
    for (int serial = 1; serial <= loans; ++serial) {
      std::vector<double> amounts(1 + random() % 5);
      for (double& amount : amounts) amount = static_cast<double>(5000 + random() % 150000) / 100;
      Loan(serial, std::string(1, static_cast<char>('A' + serial)).c_str(), serial, amounts);
    }
    company.Execute(fmt::format("UPDATE INS_MASTER SET REDUCINGBALYN = {}", reducing ? 1 : 0));
    company.Execute("UPDATE INS_EMIDETAIL SET INTAMT = 25");
    const auto sums = [this](const char* months) {
      return company.One(std::string("SELECT SUM(MDFYAMT) FROM INS_EMIDETAIL WHERE MONTHYEAR ") + months)
          .NumberOr0();
    };
    const double before = sums("= 24315"), later = sums("> 24315");
    modSalSIAdj& list = Listed(random() % 2 == 0);
    Tick(equally ? list.optAdjust_1 : list.optAdjust_0);
    double moved = 0;
    for (const GridRow& row : list.fpgDedPref.rows) moved += Val(row.cells[modSalSIAdj::kAdjusted].text);
    if (moved == 0) continue;
    const double dropped = equally ? 0.5 * loans : 0;
    Click(list.cmdAdjust);
    EXPECT_EQ(desk.TakeTexts(), Texts{});
    EXPECT_NEAR(before - sums("= 24315"), moved, 0.001);
    EXPECT_NEAR(sums("> 24315") - later, moved, dropped + 0.001);
    EXPECT_EQ(Flagged(), "23");
    EXPECT_EQ(company.Rows("SELECT * FROM INS_EMIDETAIL WHERE MDFYAMT < -0.001"), "");
    const char* const torn = "SELECT * FROM INS_EMIDETAIL WHERE ABS(MDFYAMT - MDFPRNAMT - MDFINTAMT) > 0.001";
    EXPECT_EQ(reducing ? company.Rows(torn) : "", "");
  }
}

}  // namespace
}  // namespace ktl
