#include <cstring>

#include "formula/token_rows.h"
#include "formula_fixture.h"

namespace ktl::test {
namespace {

// Employee 17 in April 2010 (24124), the detail row 5, head 1, branch 1, structure 1.
class Tokens : public DayTest {
 protected:
  Tokens() {
    Run(R"(INSERT INTO MAS_BRANCH (BRANCHID, BRANCHNAME, PTGROUPID) VALUES (1, 'Pune', 1);
         INSERT INTO MAS_PTGRP (PTGRPID, PTGRPNAME) VALUES (1, 'Maharashtra');
         INSERT INTO MAS_SALSTRUCT (STRUCTID, STRUCTDESC) VALUES (1, 'Staff');
         UPDATE MAS_EMPLOYEEDET SET DEPARTMENT = 'Finance', GRADE = 'G1', EFFTODATE = '31/Dec/2010' WHERE
           EMPDETID = 5;
         UPDATE MAS_EMPLOYEE SET SEX = 'F', PFYN = 1, DOJ = '01/Jun/2005';
         INSERT INTO MAS_EXTCAPTION (Masterid, Caption, Transfered, EXPEDITORYN) VALUES (3, 'Wing', 0, 0),
           (5, 'Band', 1, 1), (6, 'Cost Centre', 0, 1), (7, 'Shift', 0, 0);
         INSERT INTO MAS_EMPLOYEEEXTDET (EMPEXTID, EMPID, EFFFROMDATE, EXTCLASS05, EXTCLASS06) VALUES (1, 17,
           '01/Jan/2010', 'B1', 'CC-1'), (2, 17, '30/Apr/2010', 'B2', 'CC-2'), (3, 17, '01/May/2010', 'B3',
           'CC-3');
         INSERT INTO MAS_EMPCUSCAPTION (COLID, COLNAME, EXPRYN) VALUES (1, 'Quarter', 1), (2, 'Rank', 0);
         INSERT INTO MAS_EMPLOYEECUSTOM (EMPID, FIELD1, FIELD2) VALUES (17, '12', '5');
         INSERT INTO MAS_SALARYHEAD (PAYTYPEYN, SALHEADROWID, SALHEADING, CALCFLDTYPE) VALUES (0, 0, 'Basic',
           NULL), (0, 1, 'HRA', NULL), (0, 12, 'Night', 'C'), (0, 100, 'OT1', NULL), (0, 101, 'OT2', NULL),
           (0, 102, 'Gratuity', NULL), (1, 1, 'PF', NULL), (1, 30, 'Club', NULL);
         INSERT INTO SLC_SALARYRATE_E (SALRATEID, EMPID, EMPDETID, MONTHYEAR, TOTALENTERED, BASIC, OT1, OT2,
           GRATUITYPROV, ECOMP01, ECOMP12) VALUES (1, 17, 5, 24100, 900, 800, 1, 1, 1, 1, 1), (2, 17, 5,
           24124, 1500, 1000, 11, 12, 13, 400, NULL), (3, 17, 5, 24125, 9999, 9999, 1, 1, 1, 1, 1);
         INSERT INTO SLC_SALARYRATE_D (SALRATEID, DCOMP01, DCOMP30) VALUES (2, 120, 7);
         INSERT INTO SLC_SALARYCALC_E (SALID, EMPID, EMPDETID, MONTHYEAR, ETOTAL, BASIC, ECOMP01, NOD, NDP,
           SALCALDAYS) VALUES (1, 17, 5, 24124, 1300, 900, 360, 27, 26.5, 30), (2, 17, 6, 24124, 1, 1, 1, 2,
           1.5, 30), (3, 17, NULL, 24124, 1, 1, 1, 9, 9, 30);
         INSERT INTO SLC_SALARYCALC_D (SALID, DCOMP01) VALUES (1, 108), (2, 1), (3, 1);
         INSERT INTO MAS_ARREARS (ARREARID, ARRCALCTYPE) VALUES (1, 0), (2, 1);
         INSERT INTO SLC_ARREARS_E (ARREARTRANID, ARREARID, EMPID, EMPDETID, PAIDFOR, BASIC) VALUES (1, 1,
           17, 5, 24124, 50), (2, 2, 17, 5, 24124, 7000), (3, 1, 17, 5, 24123, 7000);
         INSERT INTO SLC_ARREARS_D (ARREARTRANID, DCOMP01) VALUES (1, 6), (2, 700);
         INSERT INTO RMB_MASTER (RMBID, RMBNAME) VALUES (1, 'Medical'), (2, 'Fuel');
         INSERT INTO RMB_ALLOT (RMBALLOTID, EMPID, RMBID) VALUES (0, 18, 1), (1, 17, 1), (2, 17, 2);
         INSERT INTO RMB_ALLOTDET (RMBALLOTID, MONTHYEAR, ALLOTAMT) VALUES (0, 24124, 7), (1, 24123, 7), (1,
           24124, 1250), (2, 24124, 100);
         INSERT INTO RMB_CLAIM (EMPID, RMBID, CLAIMDATE, SALARYMONTH, CLAIMAMT) VALUES (17, 1, '02/May/2010',
           24124, 500), (17, 1, '02/Apr/2010', 0, 200), (18, 1, '02/Apr/2010', 0, 7), (18, 1, '02/Apr/2010',
           24124, 7), (17, 1, '02/May/2010', 0, 7), (17, 1, '02/Apr/2010', 24125, 9000), (17, 2,
           '05/Apr/2010', 0, 160);
         INSERT INTO LEV_MONTHDET (EMPID, EMPDETID, MONTHYEAR, ADJHRS) VALUES (17, 5, 24123, 7), (17, 6,
           24124, 7), (18, 5, 24124, 7), (17, 5, 24124, 4);
         INSERT INTO ATT_DETAIL (EMPID, LEVDATE, LEVID, FIRSTHALFYN, SECONDHALFYN) VALUES (17, '06/Apr/2010',
           4, 1, 1), (17, '07/Apr/2010', 4, 0, 1), (17, '31/Mar/2010', 4, 1, 1), (17, '01/May/2010', 4, 1,
           1), (18, '06/Apr/2010', 4, 1, 1);
         INSERT INTO SLC_COMPCALCDET (EMPID, MONTHYEAR, STRUCTID, PAYTYPEYN, SALHEADROWID, UNIT) VALUES (17,
           24123, 1, 0, 12, 7), (17, 24124, 1, 1, 12, 7), (17, 24124, 2, 0, 12, 7), (18, 24124, 1, 0, 12, 7),
           (17, 24124, 1, 0, 12, 6);
         INSERT INTO MAS_FORMULACUSTOM (MODULEID, FNAME, FQUERY) VALUES (1, 'Rows', 'SELECT COUNT(*) FROM
           MAS_EMPLOYEEDET WHERE EMPID = $EMPID$ AND EMPDETID = $EMPDETID$'), (1, 'Month', 'SELECT
           $MONTHYEAR$'), (1, 'Host', 'SELECT ''$HOSTNAME$$hostname$'''), (1, 'Nothing', 'SELECT EMPID FROM
           MAS_EMPLOYEE WHERE EMPID = -1');)");
  }

  double Amount(const std::string& formula, bool arrears = false, const char* gross = "",
                const char* month = "Apr/2010", long detail = 5, long employee = 17) {
    company.Execute("DELETE FROM MAS_FORMULA WHERE FORMULAID = 4");
    company.Row("MAS_FORMULA").With("FORMULAID", 4).With("FORMULA", formula);
    Office office(company.ConnectionString());
    const DayRange days = MonthOf(month);
    const double amount =
        clsEvalFormula(office.session)
            .FnDblEvalFormula(4, employee, detail, Month(month), days.first, days.last, arrears, gross);
    boxes = office.desk.TakeTexts();
    return amount;
  }

  std::vector<std::string> boxes;
};

TEST_F(Tokens, EveryFamily) {
  const std::tuple<const char*, double> cases[] = {
      {"Component{BASIC} + Component{hra} + Component{Night}", 1400},
      {"Component{OT1} * 10000 + Component{OT2} * 100 + Component{GRATUITY}", 111213},
      {"Component{PF} * 10 + Component{CLUB}", 1207},
      {"(GrossSalary) + (grosssalary)", 3000},
      {"CV{BASIC} + CV{HRA} + CV{PF}", 1368},
      {R"(KLIF((PTGroup) = "MAHARASHTRA", 200, 0))", 200},
      {R"(KLIF(empdet{department} = "Finance", 1, 2))", 1},
      {R"(KLIF(EmpDet{Branch} & EmpDet{Attendance} & EmpDet{Sal Structure} = "PuneGeneralStaff", 1, 2))", 1},
      {R"(KLIF(EmpDet{Band} & EmpDet{Cost Centre} = "B2CC-2", 1, 2))",
       1},  // the last row up to the end of the month
      {"EmpCustDet{Quarter} * 2", 24},
      {"CustQry{Rows} * 10 + CustQry{Nothing}", 10},
      {"CustQry{Month} + (SalaryMonth)", 48248},
      {R"(KLIF(CustQry{Host} = "PC1$HOSTNAME$", 1, 2))", 1},
      {R"(KLDayDiff(Emp{DOJ}, CDate("03/Jun/2005")))", 2},
      {"Year(Emp{DOL}) + Year(Emp{DORes}) + Year(Emp{doconf})", 6297},
      {R"(KLIF(Emp{DOB} = "", Year(Emp{SALCALCFROM}), 0) + KLIF(Emp{SEX} = "f", 1, 2))", 2009},
      {R"(KLIF((pfyn) & (RESPFYN) & (ESIYN) = "YNN", 1, 2))", 1},
      {"OT1UNIT + OT2UNIT + 3", 3},
      {"ReimAllot{MEDICAL} + ReimClaim{MEDICAL} + ReimUnclaim{MEDICAL} + ReimUnclaim{FUEL}", 2500},
      {"Leave{CL} * 100 + Leave{lop}", 150},
      {"(AdjHours) + 0 * Leave{CL}", 4},
      {"ReimClaim{MEDICAL} + 0 * ReimAllot{FUEL}", 700},
      {"Days{Salary Calendar Days} * 10000 + Days{Pay Days} * 100 + Days{Present Days}", 303028.5},
      {"Days{Total Pay Days} * 100 + Days{Total Present Days}", 2928},
      {"leave{CL} + 0 * Days{Pay Days}", 1.5},  // opened by the other token, replaced in any case
  };
  for (const auto& [formula, amount] : cases) {
    EXPECT_DOUBLE_EQ(Amount(formula), amount) << formula;
    EXPECT_TRUE(boxes.empty()) << formula;
  }
}

// What cannot be evaluated is 0 in silence.
TEST_F(Tokens, NothingForWhatHasNoToken) {
  // A field that an extended one replaces and one that is not for formulas; two that do not open the
  // attendance and the claims; units and holidays while no formula of the structure asks for them.
  for (const char* formula :
       {"EmpDet{Grade}", "EmpCustDet{Rank}", "(AdjHours)", "ReimClaim{MEDICAL}", "UNIT{NIGHT}",
        "(GenHoliday) + 0 * Days{Pay Days}", "days{Pay Days}", "component{BASIC}", "Component{BONUS}",
        "NoSuch{TOKEN}", "", "1 +", "SALARY * 2", "NoSuch(2)", "1 / 0", "1 = 1"}) {
    EXPECT_DOUBLE_EQ(Amount(formula), 0) << formula;
    EXPECT_TRUE(boxes.empty()) << formula;
  }
}

TEST_F(Tokens, ArrearsGrossAndStructureFormulas) {
  Run("UPDATE MAS_EMPLOYEEDET SET EFFTODATE = '29/Apr/2010'");
  EXPECT_DOUBLE_EQ(Amount(R"(KLIF(EmpDet{Band} = "B1", 1, 2))"), 1) << "up to the end of the detail row";
  EXPECT_DOUBLE_EQ(Amount("CV{BASIC} + CV{PF}", true), 900 + 50 + 108 + 6) << "of that month, not of type 1";
  EXPECT_DOUBLE_EQ(Amount("(GrossSalary)", false, "Y"), 1300);
  EXPECT_DOUBLE_EQ(Amount("(GrossSalary) + Component{BASIC}", false, "Y"), 2300);
  Run("INSERT INTO MAS_FORMULA (FORMULAID, FORMULA) VALUES (8, 'UNIT{NIGHT}'), (9, '(GenHoliday) + "
      "(WeekHoliday)'); "
      "INSERT INTO SLC_SALSTRUCTDET (STRUCTID, FORMULAID) VALUES (1, 8), (1, 9); "
      "INSERT INTO ATT_HOLIDAY (HOLIDAYID, HOLIDAYDATE) VALUES (1, '14/Apr/2010'); "
      "INSERT INTO LEV_WEEKLYHLD (ATTHEADID, WEEKID, EFFFROM, FH2YN, SH2YN, FH3YN) VALUES (1, 1, 24000, 1, "
      "1, 1)");
  EXPECT_DOUBLE_EQ(Amount("unit{Night} * 150 + OT1UNIT"), 900);
  EXPECT_DOUBLE_EQ(Amount("(GenHoliday) * 10 + (weekholiday) + 0 * Days{Pay Days}"), 11.5);
  EXPECT_DOUBLE_EQ(Amount("(TotalGenHoliday) + 0 * Days{Pay Days}"), 0)
      << "mentioned by no formula of the structure";
  Run("UPDATE MAS_FORMULA SET FORMULA = '(TotalGenHoliday) * 1000 + (TotalWeekHoliday) * 100 + (GenHoliday) "
      "* 10 + "
      "(WeekHoliday) + 0 * Days{Pay Days}' WHERE FORMULAID = 9");
  Office office(company.ConnectionString());
  EXPECT_DOUBLE_EQ(clsEvalFormula(office.session)
                       .FnDblEvalFormula(9, 17, 5, 24124, Day("15/Apr/2010"), Day("30/Apr/2010")),
                   1150.5)
      << "of the month the 14th, the 11th and half the 18th; of the period only that half";
}

TEST_F(Tokens, FamiliesAreCountedOnceForEachEngine) {
  Run("INSERT INTO MAS_FORMULA (FORMULAID, FORMULA) VALUES (4, 'EmpCustDet{Quarter} * 2'); UPDATE "
      "MAS_EMPCUSCAPTION "
      "SET EXPRYN = 0 WHERE COLID = 1");
  Office office(company.ConnectionString());
  const DayRange april = MonthOf("Apr/2010");
  clsEvalFormula engine(office.session);
  clsEvalFormula another(office.session);
  const auto amount = [&](clsEvalFormula& by) {
    return by.FnDblEvalFormula(4, 17, 5, 24124, april.first, april.last);
  };
  EXPECT_DOUBLE_EQ(amount(engine), 0);
  Run("UPDATE MAS_EMPCUSCAPTION SET EXPRYN = 1 WHERE COLID = 1");
  EXPECT_DOUBLE_EQ(amount(engine), 0);
  EXPECT_DOUBLE_EQ(amount(another), 24);
}

TEST_F(Tokens, WhatTheDaysAreTakenFrom) {
  constexpr const char* kDays =
      "Days{Salary Calendar Days} * 10000 + Days{Pay Days} * 100 + Days{Present Days}";
  const std::tuple<const char*, double, double> cases[] = {
      {"MAS_ATTHEAD SET ATTNTIGHTYN = 1", 303028.5, 0},
      {"MAS_OPTSETFEATURE SET ADVLEAVEYN = 1, LVSTARTMNYEAR = 24124; UPDATE ATT_DEFINITION SET "
       "AFFECTSALARYYN = 1 WHERE LEVID = 7",
       302929, 1},
      {"MAS_OPTSETFEATURE SET ADVLEAVEYN = 1, LVSTARTMNYEAR = 24125", 303028.5, 0},
      {"MAS_ATTHEAD SET ATTNTIGHTYN = 0", 302726.5, 0},
      {"MAS_ATTHEAD SET ATTNTIGHTYN = NULL", 302726.5, 0},
      {"MAS_ATTHEAD SET ATTNTYPE = 4", 303027, 3},
  };
  Run(R"(INSERT INTO LEV_DETAILS (EMPID, EMPDETID, LEVID, LEAVEDATE, FIRSTHALFYN, SECONDHALFYN)
        VALUES (17, 5, 7, '08/Apr/2010', 1, 1);
      INSERT INTO ATT_MONTH (ATTSLNO, EMPID, EMPDETID, MONTHYEAR) VALUES (1, 17, 5, 24124);
      INSERT INTO ATT_MONTHLEV (ATTSLNO, LEVID, LEVVALUE) VALUES (1, 7, 3))");
  for (const auto& [set, days, leave] : cases) {
    Run("UPDATE MAS_ATTHEAD SET ATTNTIGHTYN = 1, ATTNTYPE = 2; UPDATE ATT_DEFINITION SET AFFECTSALARYYN = 0 "
        "WHERE LEVID = 7; UPDATE MAS_OPTSETFEATURE SET ADVLEAVEYN = 0, LVSTARTMNYEAR = 0; UPDATE " +
        std::string(set));
    EXPECT_DOUBLE_EQ(Amount(kDays), days) << set;
    EXPECT_DOUBLE_EQ(Amount("Leave{ML}"), leave) << set;
  }
}

TEST_F(Tokens, FundsByMonth) {
  Run("UPDATE MAS_EMPLOYEE SET PFYN = 0, PFRESTRICTYN = 0, ESIYN = 0");
  constexpr const char* kFormula =
      R"(KLIF((PFYN) = "Y", 100, 0) + KLIF((RESPFYN) = "Y", 10, 0) + KLIF((ESIYN) = "Y", 1, 0))";
  const std::tuple<const char*, double, double> cases[] = {
      {"", 0, 0},
      {"UPDATE MAS_EMPLOYEE SET PFYN = 1, ESIYN = 1", 101, 101},
      {"INSERT INTO MAS_EMPLOYEEEXT (EMPID, PFYN, PFEFFFROM) VALUES (17, 1, '15/May/2010')", 0, 100},
      {"INSERT INTO MAS_EMPLOYEEEXT (EMPID, PFRESTRICTYN, PFRESTRICTEFFFROM) VALUES (17, 1, 24125)", 0, 10},
      {"INSERT INTO MAS_EMPLOYEEEXT (EMPID, ESIYN, ESIEFFFROM) VALUES (17, 1, 24124)", 1, 1},
      {"INSERT INTO MAS_EMPLOYEEEXT (EMPID, ESIYN, ESIEFFFROM) VALUES (17, 0, 24124)", 0, 0},
      {"INSERT INTO MAS_PFEFFFROMEXT (EMPID, PFEFFFROM, PFYN) VALUES (17, 24100, 1), (17, 24125, 0)", 100, 0},
      {"INSERT INTO MAS_PFRESTRICTEFFFROMEXT (EMPID, PFRESTRICTEFFFROM, PFRESTRICTYN) VALUES (17, 24125, 1)",
       0, 10},
      {"INSERT INTO MAS_ESIEFFFROMEXT (EMPID, ESIEFFFROM, ESIYN) VALUES (17, 24120, 0), (18, 24120, 1); "
       "UPDATE MAS_EMPLOYEE SET ESIYN = 1",
       0, 0},
  };
  for (const auto& [rows, april, may] : cases) {
    Run(rows);
    EXPECT_DOUBLE_EQ(Amount(kFormula), april) << rows;
    EXPECT_DOUBLE_EQ(Amount(kFormula, false, "", "May/2010"), may) << rows;
    Run("UPDATE MAS_EMPLOYEE SET PFYN = 0, PFRESTRICTYN = 0, ESIYN = 0; DELETE FROM MAS_EMPLOYEEEXT; "
        "DELETE FROM MAS_PFEFFFROMEXT; DELETE FROM MAS_PFRESTRICTEFFFROMEXT; DELETE FROM MAS_ESIEFFFROMEXT");
  }
}

// What cannot be read is told; the cases build on one another.
TEST_F(Tokens, Failures) {
  const std::tuple<const char*, const char*, double, const char*> cases[] = {
      {"1 / 40000", "", 0.000025, nullptr},
      {"CDate(\"15/Aug/2010\")", "", 15, nullptr},
      {"\"12ab\"", "", 12, nullptr},
      {"EmpDet{Department} = \"X\"", "UPDATE MAS_EMPLOYEEDET SET DEPARTMENT = 'The \"A\" team'", 0, nullptr},
      {"CV{D'Souza} + 1",
       "UPDATE MAS_SALARYHEAD SET SALHEADING = 'D''Souza' WHERE SALHEADROWID = 1 AND PAYTYPEYN = 0", 361,
       nullptr},
      {"Component{BASIC}", "DELETE FROM SLC_SALARYRATE_E", 0, nullptr},
      {"(GrossSalary) + 1",  // TOTALENTERED is null
       "INSERT INTO SLC_SALARYRATE_E (SALRATEID, EMPID, EMPDETID, MONTHYEAR, BASIC) VALUES (9, 17, 5, 24000, "
       "1)",
       1, nullptr},
      {"CustQry{Rows}",
       "UPDATE MAS_FORMULACUSTOM SET FQUERY = 'SELECT NOTHING FROM NOWHERE' WHERE FNAME = 'Host'", 1, ""},
      {"EmpDet{Department} = 1", "DELETE FROM MAS_EMPLOYEEEXTDET", 0, ""},
      {"Component{BASIC}",
       "INSERT INTO MAS_SALARYHEAD (PAYTYPEYN, SALHEADROWID, SALHEADING) VALUES (0, 31, 'ZZ')", 0,
       "Subscript out of range"},
  };
  for (const auto& [formula, change, amount, box] : cases) {
    SCOPED_TRACE(testing::Message() << formula << " | " << change);
    Run(change);
    EXPECT_DOUBLE_EQ(Amount(formula), amount);
    ASSERT_EQ(boxes.size(), box == nullptr ? 0U : 1U);
    if (box != nullptr) {
      EXPECT_EQ(boxes[0].substr(0, std::strlen(box)), box);
    }
  }
  EXPECT_DOUBLE_EQ(Amount("Emp{DOJ} = 1", false, "", "Apr/2010", 5, 99), 0) << "nobody has that number";
  EXPECT_DOUBLE_EQ(Amount("(PTGroup) & Days{Pay Days}", false, "", "Apr/2010", 77), 0)
      << "no such detail row";
  Office office(company.ConnectionString());
  clsEvalFormula engine(office.session);
  const DayRange april = MonthOf("Apr/2010");
  EXPECT_DOUBLE_EQ(engine.FnDblEvalFormula(77, 17, 5, 24124, april.first, april.last), 0)
      << "no such formula";
  EXPECT_DOUBLE_EQ(engine.FnDblEvalSalFormula(77, 18, 24124), 0);
}

TEST(SalaryField, ByKindAndNumber) {
  const std::tuple<bool, long, long, const char*> cases[] = {
      {true, 0, 30, "BASIC"},    {true, 100, 30, "OT1"},          {true, 101, 30, "OT2"},
      {true, 9, 30, "ECOMP09"},  {true, 102, 30, "GRATUITYPROV"}, {true, 30, 30, "ECOMP30"},
      {true, 31, 30, ""},        {true, 31, 60, "ECOMP31"},       {true, 103, 90, ""},
      {true, -1, 30, ""},        {false, 0, 30, "DCOMP00"},       {false, 100, 90, ""},
      {false, 90, 90, "DCOMP90"}};
  for (const auto& [earning, number, highest, field] : cases)
    EXPECT_EQ(SalaryField(earning, number, highest), field) << number;
}

// The company has no columns for them; but a head that may be there fails at the column, not before.
TEST_F(Tokens, WiderHeads) {
  const std::tuple<long, long, bool> cases[] = {{31, 0, false}, {31, 1, true}, {60, 1, true},
                                                {61, 1, false}, {61, 2, true}, {91, 2, false}};
  for (const auto& [head, row, allowed] : cases) {
    Run("DELETE FROM MAS_PULLDOWNVALUES WHERE REFID = 2000; DELETE FROM MAS_SALARYHEAD WHERE SALHEADING = "
        "'WIDE'");
    if (row > 0) company.Row("MAS_PULLDOWNVALUES").With("REFID", 2000).With("PDID", row);
    company.Row("MAS_SALARYHEAD").With("PAYTYPEYN", 0).With("SALHEADROWID", head).With("SALHEADING", "WIDE");
    EXPECT_DOUBLE_EQ(Amount("Component{BASIC}"), 0);
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0] != "Subscript out of range", allowed) << head << ": " << boxes[0];
  }
}

// The salary was calculated for two detail rows; the formula takes the higher one.
TEST_F(Tokens, FormulaOfACalculatedSalary) {
  Run("INSERT INTO MAS_FORMULA (FORMULAID, FORMULA) VALUES (4, 'CV{HRA} + 100')");
  Office office(company.ConnectionString());
  clsEvalFormula engine(office.session);
  EXPECT_DOUBLE_EQ(engine.FnDblEvalSalFormula(4, 17, 24124), 101);
  EXPECT_DOUBLE_EQ(engine.FnDblEvalSalFormula(4, 17, 24125), 0);
  EXPECT_EQ(DetailRowOfMonth(office.session, 17, 24124), 5);
  EXPECT_EQ(DetailRowOfMonth(office.session, 17, 24099), std::nullopt) << "it takes effect in Apr/2008";
  TokenTable table;
  engine.FillOtherData(table, {17, 5, 24124, 1, MonthOf("Apr/2010")}, {30, 29, 28}, true);
  std::string leave;
  for (const TokenRow& row : table)
    if (row.token.starts_with("Leave{") || row.token.starts_with("Days{Pr"))
      leave += row.token + "=" + row.text + " ";
  EXPECT_EQ(
      leave,
      "Leave{CL}=0 Leave{LOP}=0 Leave{ML}=0 Leave{OD}=0 Leave{TR}=0 Leave{WFH}=0 Days{Present Days}=28 ");
}

}  // namespace
}  // namespace ktl::test
