#include "sample_company.h"

namespace ktl {
namespace {

// One company for all questions: what is asked does not change it.
class Sample : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = std::make_unique<Folder>();
    CreateCompany(Options(File(), 400));
    SqliteDatabase(File(), SqliteDatabase::Mode::Existing)
        .RunScript(
            "CREATE VIEW SALARY AS SELECT * FROM SLC_SALARYCALC_E JOIN SLC_SALARYCALC_D USING (SALID)");
  }
  static void TearDownTestSuite() { folder_.reset(); }
  static std::filesystem::path File() { return *folder_ / "sample.kldb"; }

 private:
  static inline std::unique_ptr<Folder> folder_;
};

TEST_F(Sample, NoRowBreaksARule) {
  const std::pair<const char*, const char*> cases[] = {
      {"every name is known",
       "SELECT SITYPE || SINAME FROM INS_ADVLOAN UNION SELECT SITYPE || OTHNAME FROM INS_OTHER EXCEPT SELECT "
       "SITYPE || SINAME FROM INS_MASTER"},
      {"lenders lend, insurers insure",
       "SELECT EMPID FROM INS_EMIDETAIL D WHERE INSTID <> 0 AND SITYPE <> (SELECT TYPEID FROM "
       "MAS_INSTITUTION I WHERE I.INSTID = D.INSTID)"},
      {"a month comes once",
       "SELECT EMPID FROM INS_EMIDETAIL GROUP BY EMPID, SITYPE, SERIALNO, MONTHYEAR HAVING COUNT(*) > 1"},
      {"counters run in month order",
       "SELECT A.EMPID FROM INS_EMIDETAIL A JOIN INS_EMIDETAIL B USING (EMPID, SITYPE, SERIALNO) WHERE "
       "A.COUNTER < B.COUNTER AND A.MONTHYEAR >= B.MONTHYEAR"},
      {"what is scheduled is what was given, with flat interest",
       "SELECT A.EMPID FROM INS_ADVLOAN A JOIN INS_EMIDETAIL D USING (EMPID, SITYPE, SERIALNO) GROUP BY "
       "A.EMPID, A.SITYPE, A.SERIALNO HAVING ABS(SUM(EMIAMT) - ACTAMT - IFNULL(A.INTAMT, 0)) > 0.005"},
      {"putting off keeps the total",
       "SELECT EMPID FROM INS_EMIDETAIL WHERE EMPID <> 24 GROUP BY EMPID, SITYPE, SERIALNO HAVING "
       "ABS(SUM(EMIAMT) - SUM(MDFYAMT)) > 0.005"},
      {"principal and interest make the instalment",
       "SELECT EMPID FROM INS_EMIDETAIL WHERE MDFINTAMT IS NOT NULL AND ABS(MDFPRNAMT + MDFINTAMT - MDFYAMT) "
       "> 0.005"},
      {"refreshing the total interest changes nothing",
       "SELECT A.EMPID FROM INS_ADVLOAN A JOIN INS_MASTER USING (SITYPE, SINAME) JOIN INS_EMIDETAIL D USING "
       "(EMPID, SITYPE, SERIALNO) WHERE REDUCINGBALYN = 1 GROUP BY A.EMPID, A.SITYPE, A.SERIALNO HAVING "
       "SUM(D.INTAMT) <> A.INTAMT"},
      {"salaries take the instalments and pay the incentives",
       "SELECT EMPID FROM SALARY E, (SELECT 1 AS T UNION SELECT 2 UNION SELECT 3 UNION SELECT 4 UNION SELECT "
       "5 UNION SELECT 7) WHERE NOT (T = 2 AND EMPID IN (29, 32)) AND NOT (T > 2 AND EMPID IN (7, 8, 32)) "
       "AND CASE T WHEN 1 THEN ADVANCE WHEN 2 THEN LOAN WHEN 3 THEN INSURANCE WHEN 4 THEN SSS WHEN 5 THEN "
       "GRPINSURANCE ELSE SIEARNING END IS NOT (SELECT SUM(MDFYAMT) FROM INS_EMIDETAIL I WHERE I.EMPID = "
       "E.EMPID AND I.MONTHYEAR = E.MONTHYEAR AND SITYPE = T)"},
      {"premium schedules lie between start and end",
       "SELECT EMPID FROM INS_OTHER JOIN INS_EMIDETAIL USING (EMPID, SITYPE, SERIALNO) GROUP BY EMPID, "
       "SITYPE, SERIALNO HAVING MIN(MONTHYEAR) <> STARTMY OR MAX(MONTHYEAR) > ENDMY"},
      {"net pay adds up",
       "SELECT EMPID FROM SALARY WHERE EMPID <> 29 AND ABS(ETOTAL - IFNULL(ADVANCE, 0) - IFNULL(LOAN, 0) - "
       "IFNULL(INSURANCE, 0) - IFNULL(SSS, 0) - IFNULL(GRPINSURANCE, 0) - DCOMP01 - DCOMP02 - DCOMP03 - "
       "DCOMP04 - NETAMOUNT) > 0.005"},
      {"nobody is paid before he joins or after he left",
       "SELECT EMPID FROM SLC_SALARYCALC_E JOIN MAS_EMPLOYEE USING (EMPID) WHERE MONTHYEAR < STRFTIME('%Y', "
       "SALCALCFROM) * 12 + STRFTIME('%m', SALCALCFROM) OR MONTHYEAR > STRFTIME('%Y', DOL) * 12 + "
       "STRFTIME('%m', DOL)"},
      {"nothing is given before joining",
       "SELECT EMPID FROM INS_ADVLOAN JOIN MAS_EMPLOYEE USING (EMPID) WHERE SIDATE < DOJ"},
      {"receipts follow the loan",
       "SELECT R.EMPID FROM INS_RECEIPTS R JOIN INS_ADVLOAN USING (EMPID, SITYPE, SERIALNO) WHERE RCPTDATE < "
       "SIDATE"},
      {"everyone but 22 has a rate",
       "SELECT EMPID FROM MAS_EMPLOYEE WHERE (EMPID NOT IN (SELECT EMPID FROM SLC_SALARYRATE_E)) <> (EMPID = "
       "22)"},
      {"everyone but 46 has extended details",
       "SELECT EMPID FROM MAS_EMPLOYEE WHERE (EMPID NOT IN (SELECT EMPID FROM MAS_EMPLOYEEEXTDET WHERE "
       "EFFFROMDATE < '2024-04-01')) <> (EMPID = 46)"},
      {"reference numbers are unique", "SELECT REFNO FROM MAS_EMPLOYEE GROUP BY REFNO HAVING COUNT(*) > 1"},
      {"detail rows of salaries exist",
       "SELECT EMPID FROM SLC_SALARYCALC_E WHERE EMPDETID NOT IN (SELECT EMPDETID FROM MAS_EMPLOYEEDET)"},
      {"present days are pay days less leave",
       "SELECT EMPID FROM SLC_SALARYCALC_E E JOIN MAS_EMPLOYEEDET USING (EMPDETID, EMPID) WHERE EMPID > 60 "
       "AND MONTHYEAR >= 24310 AND ATTHEADID <> 3 AND NDP > 0 AND NOD - NDP <> IFNULL((SELECT SUM(TAKEN) "
       "FROM LEV_DETAILS L WHERE L.EMPID = E.EMPID AND STRFTIME('%Y', LEAVEDATE) * 12 + STRFTIME('%m', "
       "LEAVEDATE) = E.MONTHYEAR), 0)"},
      {"taxed employees but every fiftieth and employee 50 have assessments",
       "SELECT EMPID FROM MAS_EMPLOYEE WHERE (SELECT COUNT(*) FROM COM_CLIENTDET JOIN INC_MAIN USING "
       "(ASSTRANID) WHERE CLIENTID = EMPID) <> CASE WHEN TDSYN = 1 AND EMPID % 50 <> 33 AND EMPID <> 50 THEN 3 ELSE 0 END"},
      {"texts are there or null",
       "SELECT EMPID FROM INS_ADVLOAN WHERE LOANACNO = '' OR REMARKS = '' UNION ALL SELECT EMPID FROM "
       "INS_EMIDETAIL WHERE REMARKS = ''"},
      {"formula texts are unique but for one pair",
       "SELECT FORMULA FROM MAS_FORMULA WHERE FORMULAID NOT IN (1, 27) GROUP BY FORMULA HAVING COUNT(*) > 1"},
  };
  for (const auto& [rule, offenders] : cases) EXPECT_EQ(Ask(File(), offenders), "") << rule;
}

// Figures worked out by hand from amounts, rates and months.
TEST_F(Sample, AnchorsHoldTheirFigures) {
  const std::string schedule = "SELECT MONTHYEAR || ':' || MDFYAMT FROM INS_EMIDETAIL WHERE EMPID = ";
  const struct {
    std::string what, question, answer;
  } cases[] = {
      {"1: near one rupee leaves a fourth month", schedule + "1 AND SERIALNO = 1",
       "24316:3333.0; 24317:3333.0; 24318:3333.0; 24319:1.0"},
      {"1: leave of Sep/2026",
       "SELECT NOD || '-' || NDP FROM SLC_SALARYCALC_E WHERE EMPID = 1 AND MONTHYEAR = 24321", "30.0-28.5"},
      {"1: reimbursements of Sep/2026",
       "SELECT RMBNAME || ' ' || ALLOTAMT || '-' || (SELECT SUM(CLAIMAMT) FROM RMB_CLAIM C WHERE C.EMPID = 1 "
       "AND C.RMBID = A.RMBID) FROM RMB_ALLOT A JOIN RMB_ALLOTDET USING (RMBALLOTID) JOIN RMB_MASTER USING "
       "(RMBID) WHERE EMPID = 1 AND MONTHYEAR = 24321 AND RMBID < 3",
       "MEDICAL 1250.0-700.0; FUEL 1000.0-1600.0"},
      {"2: flat interest",
       "SELECT COUNT(*) || ' x ' || MIN(MDFYAMT) || ' from ' || MIN(MONTHYEAR) FROM INS_EMIDETAIL WHERE "
       "EMPID = 2",
       "6 x 2100.0 from 24320"},
      {"3: reducing balance",
       "SELECT INTAMT || '+' || EMIAMT FROM INS_EMIDETAIL WHERE EMPID = 3 AND MDFPRNAMT IS NULL",
       "120.0+3120.0; 90.0+3090.0; 60.0+3060.0; 30.0+3030.0"},
      {"4: interest editor",
       "SELECT group_concat(CAST(MDFINTAMT AS INTEGER), ' ') FROM INS_EMIDETAIL WHERE EMPID = 4",
       "1200 1100 1000 900 800 700 600 500 400 300 200 100"},
      {"5: loans that overlap and enclose",
       "SELECT SERIALNO || ':' || MIN(MONTHYEAR) || '-' || MAX(MONTHYEAR) FROM INS_EMIDETAIL WHERE EMPID = 5 "
       "GROUP BY SERIALNO",
       "1:24305-24424; 2:24306-24353; 3:24304-24435"},
      {"6: two months recovered, four left",
       "SELECT SUM(ADVANCE) || '+' || (SELECT SUM(MDFYAMT) FROM INS_EMIDETAIL WHERE EMPID = 6 AND MONTHYEAR "
       "> 24314) FROM SALARY WHERE EMPID = 6",
       "2000.0+4000.0"},
      {"7 to 10, 37, 47: short net pay",
       "SELECT EMPID || ':' || NETAMOUNT FROM SLC_SALARYCALC_E WHERE MONTHYEAR = 24321 AND EMPID IN (7, 8, "
       "9, 10, 37, 47)",
       "7:-1500.0; 8:9000.0; 9:-500.0; 10:-800.0; 37:-5000.0; 47:-700.0"},
      {"7: preference order",
       "SELECT group_concat(CAST(MDFYAMT AS INTEGER)) FROM (SELECT MDFYAMT FROM INS_EMIDETAIL JOIN "
       "INS_ADVLOAN USING (EMPID, SITYPE, SERIALNO) JOIN INS_MASTER USING (SITYPE, SINAME) WHERE EMPID = 7 "
       "AND MONTHYEAR = 24321 ORDER BY SIPREF)",
       "1000,800,600"},
      {"17: recovered and received",
       "SELECT (SELECT SUM(ADVANCE) FROM SALARY WHERE EMPID = 17) || '+' || SUM(RCPTAMT) FROM INS_RECEIPTS "
       "WHERE EMPID = 17",
       "6000.0+3500.0"},
      {"18: by hand before the first salary",
       "SELECT group_concat(MONTHYEAR || ':' || EMIRECVYN) FROM INS_EMIDETAIL WHERE EMPID = 18",
       "24301:1,24302:1,24303:1,24304:0,24305:0,24306:0"},
      {"23: no recovery",
       "SELECT SINAME || ' ' || (SELECT COUNT(*) FROM INS_EMIDETAIL WHERE EMPID = 23) FROM INS_ADVLOAN WHERE "
       "EMPID = 23",
       "Tour Advance 0"},
      {"24: a month entered anew",
       "SELECT group_concat(EMIAMT || '/' || MDFYAMT) FROM INS_EMIDETAIL WHERE EMPID = 24 AND SERIALNO = 2",
       "6000.0/6000.0,0.0/500.0"},
      {"24 to 27: premiums",
       "SELECT EMPID || ' ' || OTHNAME || ' ' || (SELECT COUNT(*) FROM INS_EMIDETAIL D WHERE D.EMPID = "
       "O.EMPID AND D.SERIALNO = O.SERIALNO) FROM INS_OTHER O WHERE EMPID BETWEEN 24 AND 27",
       "24 Life Cover Policy 24; 24 Endowment Policy 2; 25 SSS Contribution 36; 26 Group Term Cover 8; 27 "
       "Quarterly Incentive 8"},
      {"48: all types in one month",
       "SELECT group_concat(SITYPE) FROM (SELECT SITYPE FROM INS_EMIDETAIL WHERE EMPID = 48 AND MONTHYEAR = "
       "24321 ORDER BY SITYPE)",
       "1,2,3,4,5,7"},
      {"29: marks of the salary",
       "SELECT IFNULL(LOAN, 'null') FROM SALARY WHERE EMPID = 29 AND MONTHYEAR >= 24319", "-1; null; 400"},
      {"31: the later row has the lower id",
       "SELECT EFFFROMDATE FROM MAS_EMPLOYEEDET WHERE EMPID = 31 ORDER BY EMPDETID",
       "2025-04-01; 2018-06-01"},
      {"32: two salaries of a month",
       "SELECT COUNT(*) || ' ' || COUNT(EMPDETID) FROM SLC_SALARYCALC_E WHERE EMPID = 32 AND MONTHYEAR = "
       "24319",
       "2 1"},
      {"35: uneven months", schedule + "35",
       "24322:1000.0; 24323:1000.0; 24324:200.0; 24325:200.0; 24326:200.0"},
      {"40: lenders change half-way", "SELECT group_concat(INSTID) FROM INS_EMIDETAIL WHERE EMPID = 40",
       "1,1,1,1,1,1,2,2,2,2,2,2"},
      {"43: batch form",
       "SELECT group_concat(CAST(EMIAMT AS INTEGER)) || ' ' || COUNT(ACTPRNAMT) || ' ' || COUNT(INTAMT) FROM "
       "INS_EMIDETAIL WHERE EMPID = 43",
       "1050,1050,1050,1050,1050 0 0"},
      {"44: gaps", "SELECT group_concat(COUNTER) FROM INS_EMIDETAIL WHERE EMPID = 44", "1,3,4,7"},
  };
  for (const auto& c : cases) EXPECT_EQ(Ask(File(), c.question), c.answer) << c.what;
}

// Of a financial year: principal, opening balance, benchmark interest, interest charged, benefit.
std::string Benefit(int year, const std::string& filter) {
  const std::string y = std::to_string(year);
  const std::string months = std::to_string(year * 12 + 4) + " AND " + std::to_string(year * 12 + 15);
  return R"sql(
WITH RATED AS (SELECT M.SINAME, M.SITYPE, IFNULL(
    (SELECT INTEREST FROM MAS_LOANINT WHERE FINANCIALYEAR = ')sql" +
         y + R"sql(' AND INSTR(LOANNAME, '#$#' || M.SINAME || '#$#') > 0),
    (SELECT INTEREST FROM MAS_LOANINT WHERE FINANCIALYEAR = ')sql" +
         y + R"sql(' AND LOANNAME = '')) / 1200 AS RATE
  FROM INS_MASTER M WHERE SEPPIYN = 1 AND SBIIFBYN = 1),
MONTHS AS (SELECT D.EMPID, D.SERIALNO, MDFPRNAMT AS PRINCIPAL, IFNULL(MDFINTAMT, 0) AS CHARGED, RATE,
    (SELECT SUM(MDFPRNAMT) FROM INS_EMIDETAIL L WHERE L.EMPID = D.EMPID AND L.SITYPE = D.SITYPE AND L.SERIALNO = D.SERIALNO AND L.MONTHYEAR >= D.MONTHYEAR)
    - IFNULL((SELECT SUM(RCPTAMT) FROM INS_RECEIPTS R WHERE R.EMPID = D.EMPID AND R.SERIALNO = D.SERIALNO
        AND STRFTIME('%Y', RCPTDATE) * 12 + STRFTIME('%m', RCPTDATE) <= D.MONTHYEAR), 0) AS BALANCE
  FROM INS_EMIDETAIL D JOIN INS_ADVLOAN USING (EMPID, SITYPE, SERIALNO) JOIN RATED USING (SITYPE, SINAME) JOIN MAS_EMPLOYEE E USING (EMPID)
  WHERE EMPID <= 60 AND E.TDSYN = 1 AND D.MONTHYEAR BETWEEN )sql" +
         months + R"sql(),
LOANS AS (SELECT EMPID, SUM(PRINCIPAL) AS PAID, MAX(BALANCE) AS OPENING, SUM(ROUND(BALANCE * RATE, 2)) AS BENCHMARK, SUM(CHARGED) AS CHARGED
  FROM MONTHS WHERE ROUND(BALANCE * RATE, 2) > CHARGED GROUP BY EMPID, SERIALNO)
SELECT PRINTF('%d: %.0f %.0f %.2f %.2f %.2f', EMPID, SUM(PAID), SUM(OPENING), SUM(BENCHMARK), SUM(CHARGED), SUM(BENCHMARK) - SUM(CHARGED))
FROM LOANS )sql" +
         filter + " GROUP BY EMPID";
}

TEST_F(Sample, AnchorsHoldTheirInterestBenefit) {
  EXPECT_EQ(
      Ask(File(), Benefit(2026, "")),
      "11: 48000 100500 6192.71 0.00 6192.71; 12: 60000 545000 43987.50 25875.00 18112.50; 13: 20000 38000 "
      "2989.58 0.00 2989.58; 14: 30000 30000 896.88 0.00 896.88; 15: 3000 36000 270.00 0.00 270.00; "
      "50: 33000 33000 1485.00 0.00 1485.00");
  EXPECT_EQ(Ask(File(), Benefit(2026, "WHERE PAID <> OPENING AND PAID > 20000")),
            "11: 30000 52500 3117.71 0.00 3117.71; 12: 60000 545000 43987.50 25875.00 18112.50");
  EXPECT_EQ(Ask(File(), Benefit(2025, "WHERE EMPID = 12")), "12: 55000 600000 45329.17 26354.17 18975.00");
}

TEST_F(Sample, UsersHaveTheirRights) {
  EXPECT_EQ(Ask(File(),
                "SELECT USERNAME || ' ' || GROUPID || ' ' || IFNULL(READONLYYN, 'null') || ' ' || MULTILOGIN "
                "FROM SEC_USERLIST"),
            "ADMIN 1 0 1; PAYCLERK 2 0 0; VIEWER 3 1 0; BRANCH1 2 null 0");
  EXPECT_EQ(Ask(File(),
                "SELECT BUTID || ':' || FORMID || ':' || BUTNAME FROM SEC_BUTDET JOIN SEC_BUTPER USING "
                "(BUTID) WHERE BUTALLOWYN = 0"),
            "201:48:Delete; 226:54:Delete; 612:79:Summary");
  EXPECT_EQ(Ask(File(), "SELECT COUNT(*) FROM SEC_MONTHLOCKHISTORY JOIN SEC_USERLIST ON UserID = KTLUSERID"),
            "14");
  EXPECT_EQ(
      Ask(File(), "SELECT group_concat(MONTHYEAR) FROM MAS_MONTHYEAR WHERE LOCKEDYN = 1 AND ATTLOCKYN = 0"),
      "24301");
}

}  // namespace
}  // namespace ktl
